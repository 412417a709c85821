#pragma once
// The commands of the real-time database editor. Each runs the whole flow: checks
// the selected node, asks its dialog, tests duplicates after OK, shows messages and
// questions, pushes the change as one step on the project's history (RtdbEdits.h),
// and reports what changed so that the shell refreshes the tree and the list.
//
// A command given with the wrong kind of node selected does nothing and says
// nothing. Cancel leaves everything unchanged. A name refused as a duplicate after
// OK opens the dialog again with what was typed. One verb-noun file per command.

#include "core/MessageSink.h"
#include "core/UndoHistory.h"
#include "sections/rtdb/RtdbDialogHost.h"
#include "sections/rtdb/RtdbReferences.h"
#include "sections/rtdb/RtdbSection.h"

#include <cstddef>
#include <string>
#include <vector>

namespace rq {

struct RtdbEditor {
    RtdbSection& rtdb;
    RtdbDialogHost& dialogs;
    MessageSink& sink;
    UndoHistory& history;
    // The uses of the data in other sections; null: none are looked at.
    RtdbReferences* refs = nullptr;
};

struct RtdbEditResult {
    bool changed = false;      // the model changed: refresh and mark modified
    DataNode* added = nullptr; // the node added (add database, add data group)
};

// The database or group dialog until OK gives a form that passes its validator: a
// refused form is shown through the sink and the dialog opens again with what was
// typed. False on Cancel.
bool askDatabaseForm(const RtdbEditor& ed, DatabaseForm& form);
bool askDataGroupForm(const RtdbEditor& ed, DataGroupForm& form);

// Add database (any node of the section selected, or none): appended as the last
// database. The shell selects `added` and expands the section's node.
RtdbEditResult addDatabase(const RtdbEditor& ed);

// Add data group, below a selected database or group, as its last child.
RtdbEditResult addDataGroup(const RtdbEditor& ed, DataNode* selected);

// Properties of the selected database (name and sync flag) or group (name). A name
// that another database (for a group: anything in its database) has is refused
// with the add command's message; an empty name changes nothing.
RtdbEditResult editNodeProperties(const RtdbEditor& ed, DataNode* selected);

// Whether the node may take the new label: a database name used by another
// database gives "The database already exist!", a group name used anywhere in its
// database gives "The data already exist!"; the root is never renamed. A name that
// rtdb.xml could not store is refused with the validator's message.
bool checkNodeLabel(const RtdbEditor& ed, const DataNode& node, const std::string& newName);
// The label edit ended: checks the name and, when accepted, renames the node.
// True when the tree keeps the new text.
bool renameNodeLabel(const RtdbEditor& ed, DataNode& node, const std::string& newName);

// Delete database / delete data group, after the OK/Cancel question. The node is
// destroyed: the shell removes its tree item by the pointer it passed in.
RtdbEditResult deleteDatabase(const RtdbEditor& ed, DataNode* selected);
RtdbEditResult deleteDataGroup(const RtdbEditor& ed, DataNode* selected);

// Deleting used data, a used group or database: the uses are listed first and the
// user asked whether to delete anyway (No, default: nothing is deleted and the
// delete question is not asked). True when nothing is used or the user agrees.
bool confirmDeleteUses(const RtdbEditor& ed, const std::vector<DataUse>& uses);

// Renaming used data (Modify) or a used database (Modify, label edit): `change`
// is the rename itself; when the old name is used, the uses are listed and the
// user asked whether to update them. Yes pushes the rename, the aliases standing
// for renamed data and every reference as one step named like `change`; No
// pushes `change` alone.
void pushDataRename(const RtdbEditor& ed, DataNode& node, const std::string& oldName,
                    const std::string& newName, std::unique_ptr<EditCommand> change);
void pushDatabaseRename(const RtdbEditor& ed, const std::string& oldName,
                        const std::string& newName, std::unique_ptr<EditCommand> change);

// Items of the selected database or group. `rows` are the selected list rows
// (row i shows item i of the node), in any order.
RtdbEditResult addData(const RtdbEditor& ed, DataNode* selected);
RtdbEditResult batchAddData(const RtdbEditor& ed, DataNode* selected);
// Modify refuses a new name that the database uses for something else with "The
// data already exist!".
RtdbEditResult modifyData(const RtdbEditor& ed, DataNode* selected,
                          const std::vector<std::size_t>& rows);
RtdbEditResult deleteData(const RtdbEditor& ed, DataNode* selected,
                          const std::vector<std::size_t>& rows);

} // namespace rq

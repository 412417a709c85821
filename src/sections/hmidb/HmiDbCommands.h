#pragma once
// The commands of the HMI database editor. Each runs the whole flow: checks the
// selected node, asks its dialog, shows the delete question, pushes the change as
// one step on the project's history (HmiDbEdits.h). A command given on a node
// where it has no meaning (add data on the section's own node, delete or modify a
// fixed group) does nothing and says nothing; Cancel leaves everything unchanged.
// Names are never tested for duplicates in this section. One verb-noun file per
// command.

#include "core/MessageSink.h"
#include "core/UndoHistory.h"
#include "sections/hmidb/HmiDbEdits.h"
#include "sections/hmidb/HmiDbForms.h"

#include <cstddef>
#include <string>
#include <vector>

namespace rq {

// The dialogs as the commands see them: each is shown modally with the form's
// values and returns false on Cancel. The two data dialogs run their validator on
// OK and, while it returns a message, show it (stop icon) and stay open; the group
// dialog has no check of its own (askHmiGroupForm makes it).
class HmiDbDialogHost {
public:
    virtual ~HmiDbDialogHost() = default;
    // "Setting Data Group".
    virtual bool groupDialog(HmiGroupForm& form) = 0;
    // "IO Data Setting".
    virtual bool ioDataDialog(IoDataForm& form) = 0;
    // "Memory Data Setting".
    virtual bool memoryDataDialog(MemoryDataForm& form) = 0;
};

// Where a node of the section lies: under which fixed group (its node kind) and
// the path to it. Kind 0 is the section's own node.
struct HmiPlace {
    int kind = 0;
    HmiGroupPath path;

    bool fixedOrNested() const { return kind != 0; }
    bool nested() const { return kind != 0 && !path.empty(); }
    bool operator==(const HmiPlace&) const = default;
};

struct HmiDbEditor {
    HmiDbSection& section;
    HmiDbDialogHost& dialogs;
    MessageSink& sink;
    UndoHistory& history;
};

// The group dialog until OK gives a name that hmidb.xml can store; a refused name
// is shown and the dialog opens again with what was typed. False on Cancel.
bool askHmiGroupForm(const HmiDbEditor& ed, HmiGroupForm& form);

// "New Data Group": a group appended below the selected fixed or nested group; OK
// with an empty name adds nothing.
bool addHmiGroup(const HmiDbEditor& ed, const HmiPlace& at);
// "Modify": the selected nested group's name in "Setting Data Group"; nothing on
// the fixed groups; an empty or unchanged name changes nothing.
bool modifyHmiGroup(const HmiDbEditor& ed, const HmiPlace& at);
// A label edit on a nested group: true when the tree keeps the new text (not
// empty, storable).
bool renameHmiGroup(const HmiDbEditor& ed, const HmiPlace& at, const std::string& text);
// "Delete Data Group": the selected nested group with all it holds, after the
// question.
bool deleteHmiGroup(const HmiDbEditor& ed, const HmiPlace& at);

// "New Data(&N)": "IO Data Setting" below "Real-time related data", "Memory Data
// Setting" below "custom data"; the item is appended to the selected group.
bool addHmiData(const HmiDbEditor& ed, const HmiPlace& at);
// "Modify(&P)": the dialog filled from the first selected row's item, which OK
// overwrites in place.
bool modifyHmiData(const HmiDbEditor& ed, const HmiPlace& at, const std::vector<std::size_t>& rows);
// "Delete Data(&D)": with at least one row selected, the question, then the items
// of all selected rows.
bool deleteHmiData(const HmiDbEditor& ed, const HmiPlace& at, const std::vector<std::size_t>& rows);

} // namespace rq

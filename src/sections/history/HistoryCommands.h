#pragma once
// The commands of the history records editor: history records are the nodes
// below "History data record", the variables of the selected record the rows of
// the list. Each command runs the whole flow (the right node kind, the dialog, the
// duplicate test after OK that opens the dialog again with what was typed, the
// delete question) and pushes its change as one step on the project's history of
// edits (HistoryEdits.h).

#include "core/MessageSink.h"
#include "core/UndoHistory.h"
#include "sections/history/HistoryForms.h"

#include <cstddef>
#include <string>
#include <vector>

namespace rq {

// The two dialogs as the commands see them. Each shows its dialog modally with
// the form's values and returns false on Cancel; on OK it runs the form's
// validator and, while that returns a message, shows it (stop icon) and stays
// open.
class HistoryDialogHost {
public:
    virtual ~HistoryDialogHost() = default;
    virtual bool recordDialog(HistoryRecordForm& form) = 0; // "History Data Configuration"
    virtual bool dataDialog(HistoryDataForm& form) = 0;     // "History Data Record"
};

struct HistoryEditor {
    HistorySection& section;
    HistoryDialogHost& dialogs;
    MessageSink& sink;
    UndoHistory& history;
};

// The command's outcome; `select` is the record to select afterwards (-1: the
// section's node).
struct HistoryEditResult {
    bool changed = false;
    int select = -1;
};

// `record` is the selected history record, -1 for the section's node.
// Appends a record (from any node); an empty name adds nothing and says nothing,
// a name another record has is refused ("The data record already exist!").
HistoryEditResult addHistoryRecord(const HistoryEditor& ed);
HistoryEditResult deleteHistoryRecord(const HistoryEditor& ed, int record);
// The record's settings; a name another record has is refused, an empty name
// changes nothing.
HistoryEditResult modifyHistoryRecord(const HistoryEditor& ed, int record);
// A label edited in the tree: false (label restored) for an empty name, a value
// the file cannot store or a name another record has (with its message).
bool renameHistoryRecord(const HistoryEditor& ed, int record, const std::string& name);

// Variables of the selected record; `rows` are the selected list rows.
// Appends one; a variable whose pair the record holds is refused ("The data
// already exist!").
HistoryEditResult addHistoryData(const HistoryEditor& ed, int record);
HistoryEditResult deleteHistoryData(const HistoryEditor& ed, int record,
                                    const std::vector<std::size_t>& rows);
// The variable of the first selected row, overwritten in place.
HistoryEditResult modifyHistoryData(const HistoryEditor& ed, int record,
                                    const std::vector<std::size_t>& rows);

} // namespace rq

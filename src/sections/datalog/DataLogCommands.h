#pragma once
// The commands of the data log editor: logs are the nodes below "Real-time data
// record", the variables of a log of chosen variables the rows of its list. Each
// command runs the whole flow (the dialog, the duplicate test after OK that opens
// the dialog again with what was typed, the delete question) and pushes its change
// as one step on the project's history (DataLogEdits.h).
//
// Logs are addressed by position (-1: the section's own node, or none of its
// nodes). A command given with the wrong kind of node does nothing and says
// nothing. Log names are unique within the section, a variable within its log.

#include "core/MessageSink.h"
#include "core/UndoHistory.h"
#include "sections/datalog/DataLogForms.h"

#include <cstddef>
#include <string>
#include <vector>

namespace rq {

// The two "Realtime Data Record" dialogs as the commands see them: shown modally
// with the form's values, false on Cancel; on OK each runs its validator and,
// while that returns a message, shows it (stop icon) and stays open.
class DataLogDialogHost {
public:
    virtual ~DataLogDialogHost() = default;
    // A log; "Realtime Database:" is shown for a whole-database form only.
    virtual bool logDialog(DataLogForm& form) = 0;
    // A variable of a log.
    virtual bool logDataDialog(LogDataForm& form) = 0;
};

struct DataLogEditor {
    DataLogSection& section;
    DataLogDialogHost& dialogs;
    MessageSink& sink;
    UndoHistory& history;
};

struct DataLogEditResult {
    bool changed = false;
    int select = -1; // the log to select after the nodes are rebuilt (-1: the section's node)
};

// "New Data Record" (Variables) and "New All Database Record" (Database), with any
// node of the section selected: the log is appended as the last one.
DataLogEditResult addDataLog(const DataLogEditor& ed, DataLogKind kind);
// "Modify" of the selected log: its dialog filled in; OK stores the fields back (a
// name another log has is refused).
DataLogEditResult modifyDataLog(const DataLogEditor& ed, int log);
// "Delete Data Record", after the OK/Cancel question.
DataLogEditResult deleteDataLog(const DataLogEditor& ed, int log);
// A label edit of a log's node: true when the node keeps the new text. An empty
// name is refused silently; a name the file cannot store or another log has is
// refused with its message.
bool renameDataLog(const DataLogEditor& ed, int log, const std::string& name);

// The variables of the selected log of chosen variables; `rows` are the selected
// list rows (row i shows variable i), in any order. Add and modify refuse a
// variable that the log lists already ("The data already exist!"); modify takes
// the first selected row; delete asks once and removes every selected row.
bool addLogData(const DataLogEditor& ed, int log);
bool modifyLogData(const DataLogEditor& ed, int log, const std::vector<std::size_t>& rows);
bool deleteLogData(const DataLogEditor& ed, int log, const std::vector<std::size_t>& rows);

} // namespace rq

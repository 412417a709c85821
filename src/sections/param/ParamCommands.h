#pragma once
// The commands of the parameter editor: the records of param.xml are the rows of
// the list below the "Parameter" node. Each command runs the whole flow (the
// dialog, the duplicate test after OK that opens the dialog again with what was
// typed, the delete question) and pushes its change as one step on the project's
// history (ParamEdits.h). Records are found by their database and data name pair,
// as the list shows them.

#include "core/MessageSink.h"
#include "core/UndoHistory.h"
#include "sections/param/ParamForms.h"

#include <cstddef>
#include <vector>

namespace rq {

// "Parameter Setting" as the commands see it: shown modally with the form's
// values, false on Cancel; on OK it runs validateParamForm and, while that
// returns a message, shows it (stop icon) and stays open.
class ParamDialogHost {
public:
    virtual ~ParamDialogHost() = default;
    virtual bool paramDialog(ParamForm& form) = 0;
};

struct ParamEditor {
    ParamSection& section;
    ParamDialogHost& dialogs;
    MessageSink& sink;
    UndoHistory& history;
};

// Appends a record; a pair that the list holds is refused ("The data already
// exist!").
bool addParam(const ParamEditor& ed);
// Opens the dialog with the record of the first selected row's pair (its first
// record) and stores it back. A pair that another record holds is refused with
// the add command's message (keeping the record's own pair is accepted).
bool modifyParam(const ParamEditor& ed, const std::vector<std::size_t>& rows);
// After the question, removes the record of each selected row's pair: for a pair
// selected n times, its first n records.
bool deleteParams(const ParamEditor& ed, const std::vector<std::size_t>& rows);

} // namespace rq

#include "sections/rtdb/RtdbCommands.h"

namespace rq {

namespace {

template <class Form, class Open, class Check>
bool askUntilValid(const RtdbEditor& ed, Form& form, Open open, Check check) {
    for (;;) {
        if (!open(form))
            return false;
        std::optional<std::string> message = check(form);
        if (!message)
            return true;
        ed.sink.showMessage(*message, MessageIcon::Stop);
    }
}

} // namespace

bool askDatabaseForm(const RtdbEditor& ed, DatabaseForm& form) {
    return askUntilValid(
        ed, form, [&](DatabaseForm& f) { return ed.dialogs.databaseDialog(f); },
        validateDatabaseForm);
}

bool askDataGroupForm(const RtdbEditor& ed, DataGroupForm& form) {
    return askUntilValid(
        ed, form, [&](DataGroupForm& f) { return ed.dialogs.dataGroupDialog(f); },
        validateDataGroupForm);
}

} // namespace rq

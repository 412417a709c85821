#include "core/SectionEditor.h"
#include "sections/param/ParamCommands.h"
#include "sections/param/ParamEdits.h"

namespace rq {

bool addParam(const ParamEditor& ed) {
    ParamForm form;
    const bool ok = askUntilAccepted(
        ed.sink, form, [&](ParamForm& f) { return ed.dialogs.paramDialog(f); },
        [&](const ParamForm& f) -> std::optional<std::string> {
            if (ed.section.findItem(f.dbname, f.dataname) >= 0)
                return std::string(paramtext::kDataExists);
            return std::nullopt;
        });
    if (!ok)
        return false;
    ed.history.push(
        std::make_unique<AppendParam>("Add Parameter", ed.section, paramFromForm(form)));
    return true;
}

} // namespace rq

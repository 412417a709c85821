#include "core/SectionEditor.h"
#include "sections/param/ParamCommands.h"
#include "sections/param/ParamEdits.h"

namespace rq {

bool modifyParam(const ParamEditor& ed, const std::vector<std::size_t>& rows) {
    const auto& items = ed.section.items;
    std::optional<std::size_t> row = firstSelectedRow(rows, items.size());
    if (!row)
        return false;
    const int found = ed.section.findItem(items[*row].dbname, items[*row].dataname);
    const std::size_t index = static_cast<std::size_t>(found);
    ParamForm form = paramFormFromRecord(items[index]);
    const bool ok = askUntilAccepted(
        ed.sink, form, [&](ParamForm& f) { return ed.dialogs.paramDialog(f); },
        [&](const ParamForm& f) -> std::optional<std::string> {
            // Keeping the pair is no new duplicate, also when a file held it twice.
            if (f.dbname == items[index].dbname && f.dataname == items[index].dataname)
                return std::nullopt;
            for (std::size_t i = 0; i < items.size(); ++i)
                if (i != index && items[i].dbname == f.dbname && items[i].dataname == f.dataname)
                    return std::string(paramtext::kDataExists);
            return std::nullopt;
        });
    if (!ok)
        return false;
    const ParamItem& old = items[index];
    if (old.dbname == form.dbname && old.dataname == form.dataname && old.value == form.value)
        return false;
    ed.history.push(
        std::make_unique<ReplaceParam>("Modify Parameter", ed.section, index, paramFromForm(form)));
    return true;
}

} // namespace rq

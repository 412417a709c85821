#include "core/SectionEditor.h"
#include "sections/modules/ModulesCommands.h"
#include "sections/modules/ModulesEdits.h"

#include <algorithm>

namespace rq {

bool deleteModules(const ModulesEditor& ed, const std::vector<std::size_t>& rows) {
    std::vector<std::size_t> selected;
    for (std::size_t r : rows)
        if (r < ed.section.modules().size())
            selected.push_back(r);
    std::sort(selected.begin(), selected.end());
    selected.erase(std::unique(selected.begin(), selected.end()), selected.end());
    if (selected.empty())
        return false;
    if (!confirmDelete(ed.sink, moduletext::kDeleteModule))
        return false;
    ed.history.push(
        std::make_unique<RemoveModules>("Delete Module", ed.section, std::move(selected)));
    return true;
}

} // namespace rq

#include "core/SectionEditor.h"
#include "sections/hmiwindow/HmiWindowCommands.h"
#include "sections/hmiwindow/HmiWindowEdits.h"

namespace rq {

bool deleteWindows(const HmiWindowEditor& ed, const std::vector<std::size_t>& rows) {
    std::vector<std::size_t> selected = selectedWindowRows(rows, ed.section.windows.size());
    if (selected.empty())
        return false;
    if (!confirmDelete(ed.sink, windowtext::kDeleteWindow))
        return false;
    ed.history.push(
        std::make_unique<RemoveWindows>("Delete Window", ed.section, std::move(selected)));
    return true;
}

} // namespace rq

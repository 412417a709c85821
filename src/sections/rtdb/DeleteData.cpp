#include "core/SectionEditor.h"
#include "sections/rtdb/RtdbCommands.h"
#include "sections/rtdb/RtdbEdits.h"

namespace rq {

RtdbEditResult deleteData(const RtdbEditor& ed, DataNode* selected,
                          const std::vector<std::size_t>& rows) {
    if (!selected || !(selected->isDatabase() || selected->isGroup()) || rows.empty())
        return {};
    std::vector<std::string> names;
    names.reserve(rows.size());
    for (std::size_t row : rows)
        if (row < selected->itemCount())
            names.push_back(selected->item(row).name.str());
    if (ed.refs && !confirmDeleteUses(ed, usesOfItems(*ed.refs, *selected, names)))
        return {};
    if (!confirmDelete(ed.sink, rtdbtext::kDeleteData))
        return {};
    if (names.empty())
        return {};
    ed.history.push(std::make_unique<RemoveDataItems>("Delete Data", *selected, std::move(names)));
    return {true, nullptr};
}

} // namespace rq

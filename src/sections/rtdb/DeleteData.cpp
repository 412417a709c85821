#include "sections/rtdb/RtdbCommands.h"

namespace rq {

RtdbEditResult deleteData(const RtdbEditor& ed, DataNode* selected,
                          const std::vector<std::size_t>& rows) {
    if (!selected || !(selected->isDatabase() || selected->isGroup()) || rows.empty())
        return {};
    if (!ed.sink.askOkCancel(rtdbtext::kDeleteData))
        return {};
    std::vector<std::string> names;
    names.reserve(rows.size());
    for (std::size_t row : rows)
        if (row < selected->itemCount())
            names.push_back(selected->item(row).name);
    return {selected->removeItemsNamed(names) > 0, nullptr};
}

} // namespace rq

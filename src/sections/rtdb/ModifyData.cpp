#include "sections/rtdb/RtdbCommands.h"

#include "core/DataTypes.h"

#include <algorithm>

namespace rq {

RtdbEditResult modifyData(const RtdbEditor& ed, DataNode* selected,
                          const std::vector<std::size_t>& rows) {
    if (!selected || !(selected->isDatabase() || selected->isGroup()) || rows.empty())
        return {};
    std::size_t row = *std::min_element(rows.begin(), rows.end());
    if (row >= selected->itemCount())
        return {};
    // The item is found by the name that the row shows.
    int index = selected->findItem(selected->item(row).name);
    if (index < 0)
        return {};
    DataForm form = dataFormFromItem(selected->item(row));
    if (!ed.dialogs.dataDialog(form))
        return {};
    DataItem item = selected->item(static_cast<std::size_t>(index));
    item.name = form.name;
    if (form.alias) {
        item.kind = DataItemKind::Alias;
        item.target = form.aliasText;
    } else {
        item.kind = DataItemKind::Data;
        item.type = DataTypeTable::keywordAt(form.typeIndex);
        item.length = std::to_string(form.length);
        item.init = form.init;
        item.description = form.description;
    }
    bool changed = !(item == selected->item(static_cast<std::size_t>(index)));
    selected->setItem(static_cast<std::size_t>(index), std::move(item));
    return {changed, nullptr};
}

} // namespace rq

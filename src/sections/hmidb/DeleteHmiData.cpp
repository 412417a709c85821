#include "core/SectionEditor.h"
#include "sections/hmidb/HmiDbCommands.h"

#include <algorithm>

namespace rq {

namespace {

template <class Item>
bool removeRows(const HmiDbEditor& ed, const HmiPlace& at, const std::vector<std::size_t>& rows) {
    const std::size_t count = groupAt<Item>(ed.section, at.path).items.size();
    std::vector<std::size_t> selected;
    for (std::size_t r : rows)
        if (r < count)
            selected.push_back(r);
    std::sort(selected.begin(), selected.end());
    selected.erase(std::unique(selected.begin(), selected.end()), selected.end());
    if (selected.empty() || !confirmDelete(ed.sink, hmidbtext::kDeleteData))
        return false;
    ed.history.push(std::make_unique<RemoveHmiData<Item>>("Delete Data", ed.section, at.path,
                                                          std::move(selected)));
    return true;
}

} // namespace

bool deleteHmiData(const HmiDbEditor& ed, const HmiPlace& at,
                   const std::vector<std::size_t>& rows) {
    if (at.kind == HmiDbSection::kIoKind)
        return removeRows<HmiIoItem>(ed, at, rows);
    if (at.kind == HmiDbSection::kMemoryKind)
        return removeRows<HmiMemoryItem>(ed, at, rows);
    return false;
}

} // namespace rq

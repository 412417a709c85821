#include "core/RowPositions.h"
#include "sections/hmidb/HmiDbEdits.h"

namespace rq {

template <class Item>
RemoveHmiData<Item>::RemoveHmiData(std::string name, HmiDbSection& s, HmiGroupPath group,
                                   std::vector<std::size_t> rows)
    : EditCommand(std::move(name), kHmiDbSectionIndex), s_(s), group_(std::move(group)),
      rows_(std::move(rows)) {}

template <class Item> void RemoveHmiData<Item>::redo() {
    auto& items = groupAt<Item>(s_, group_).items;
    removed_ = takeRows(items, rows_);
}

template <class Item> void RemoveHmiData<Item>::undo() {
    auto& items = groupAt<Item>(s_, group_).items;
    putRowsBack(items, rows_, removed_);
}

template class RemoveHmiData<HmiIoItem>;
template class RemoveHmiData<HmiMemoryItem>;

} // namespace rq

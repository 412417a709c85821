#include "sections/hmidb/HmiDbEdits.h"

namespace rq {

template <class Item>
ReplaceHmiData<Item>::ReplaceHmiData(std::string name, HmiDbSection& s, HmiGroupPath group,
                                     std::size_t index, Item item)
    : EditCommand(std::move(name), kHmiDbSectionIndex), s_(s), group_(std::move(group)),
      index_(index), other_(std::move(item)) {}

template <class Item> void ReplaceHmiData<Item>::redo() {
    std::swap(groupAt<Item>(s_, group_).items[index_], other_);
}

template <class Item> void ReplaceHmiData<Item>::undo() {
    std::swap(groupAt<Item>(s_, group_).items[index_], other_);
}

template class ReplaceHmiData<HmiIoItem>;
template class ReplaceHmiData<HmiMemoryItem>;

} // namespace rq

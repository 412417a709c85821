#include "sections/hmidb/HmiDbEdits.h"

namespace rq {

template <class Item>
AppendHmiData<Item>::AppendHmiData(std::string name, HmiDbSection& s, HmiGroupPath group, Item item)
    : EditCommand(std::move(name), kHmiDbSectionIndex), s_(s), group_(std::move(group)),
      item_(std::move(item)) {}

template <class Item> void AppendHmiData<Item>::redo() {
    groupAt<Item>(s_, group_).items.push_back(item_);
}

template <class Item> void AppendHmiData<Item>::undo() {
    groupAt<Item>(s_, group_).items.pop_back();
}

template class AppendHmiData<HmiIoItem>;
template class AppendHmiData<HmiMemoryItem>;

} // namespace rq

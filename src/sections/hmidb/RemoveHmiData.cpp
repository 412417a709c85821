#include "sections/hmidb/HmiDbEdits.h"

namespace rq {

template <class Item>
RemoveHmiData<Item>::RemoveHmiData(std::string name, HmiDbSection& s, HmiGroupPath group,
                                   std::vector<std::size_t> rows)
    : EditCommand(std::move(name), kHmiDbSectionIndex), s_(s), group_(std::move(group)),
      rows_(std::move(rows)) {}

template <class Item> void RemoveHmiData<Item>::redo() {
    auto& items = groupAt<Item>(s_, group_).items;
    removed_.clear();
    removed_.reserve(rows_.size());
    std::vector<Item> kept;
    kept.reserve(items.size() - rows_.size());
    std::size_t next = 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (next < rows_.size() && rows_[next] == i) {
            removed_.push_back(std::move(items[i]));
            ++next;
        } else {
            kept.push_back(std::move(items[i]));
        }
    }
    items = std::move(kept);
}

template <class Item> void RemoveHmiData<Item>::undo() {
    auto& items = groupAt<Item>(s_, group_).items;
    std::vector<Item> merged;
    merged.reserve(items.size() + removed_.size());
    std::size_t kept = 0, next = 0;
    while (kept < items.size() || next < removed_.size()) {
        if (next < removed_.size() && rows_[next] == merged.size())
            merged.push_back(std::move(removed_[next++]));
        else
            merged.push_back(std::move(items[kept++]));
    }
    items = std::move(merged);
    removed_.clear();
}

template class RemoveHmiData<HmiIoItem>;
template class RemoveHmiData<HmiMemoryItem>;

} // namespace rq

#include "sections/hmidb/HmiDbEdits.h"

namespace rq {

template <class Item>
RemoveHmiGroup<Item>::RemoveHmiGroup(std::string name, HmiDbSection& s, HmiGroupPath path)
    : EditCommand(std::move(name), kHmiDbSectionIndex), s_(s), path_(std::move(path)) {}

template <class Item> void RemoveHmiGroup<Item>::redo() {
    HmiGroupPath parent(path_.begin(), path_.end() - 1);
    auto& groups = groupAt<Item>(s_, parent).groups;
    const auto at = groups.begin() + static_cast<std::ptrdiff_t>(path_.back());
    held_ = std::move(*at);
    groups.erase(at);
}

template <class Item> void RemoveHmiGroup<Item>::undo() {
    HmiGroupPath parent(path_.begin(), path_.end() - 1);
    auto& groups = groupAt<Item>(s_, parent).groups;
    groups.insert(groups.begin() + static_cast<std::ptrdiff_t>(path_.back()), std::move(held_));
    held_ = {};
}

template class RemoveHmiGroup<HmiIoItem>;
template class RemoveHmiGroup<HmiMemoryItem>;

} // namespace rq

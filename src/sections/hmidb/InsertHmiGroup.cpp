#include "sections/hmidb/HmiDbEdits.h"

namespace rq {

template <class Item>
InsertHmiGroup<Item>::InsertHmiGroup(std::string name, HmiDbSection& s, HmiGroupPath parent,
                                     std::string groupName)
    : EditCommand(std::move(name), kHmiDbSectionIndex), s_(s), parent_(std::move(parent)),
      index_(groupAt<Item>(s, parent_).groups.size()), held_{std::move(groupName), {}, {}} {}

template <class Item> void InsertHmiGroup<Item>::redo() {
    auto& groups = groupAt<Item>(s_, parent_).groups;
    groups.insert(groups.begin() + static_cast<std::ptrdiff_t>(index_), std::move(held_));
}

template <class Item> void InsertHmiGroup<Item>::undo() {
    auto& groups = groupAt<Item>(s_, parent_).groups;
    held_ = std::move(groups[index_]);
    groups.erase(groups.begin() + static_cast<std::ptrdiff_t>(index_));
}

template <class Item> HmiGroupPath InsertHmiGroup<Item>::path() const {
    HmiGroupPath p = parent_;
    p.push_back(index_);
    return p;
}

template class InsertHmiGroup<HmiIoItem>;
template class InsertHmiGroup<HmiMemoryItem>;

} // namespace rq

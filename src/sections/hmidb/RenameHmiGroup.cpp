#include "sections/hmidb/HmiDbEdits.h"

namespace rq {

template <class Item>
RenameHmiGroup<Item>::RenameHmiGroup(std::string name, HmiDbSection& s, HmiGroupPath path,
                                     std::string newName)
    : EditCommand(std::move(name), kHmiDbSectionIndex), s_(s), path_(std::move(path)),
      other_(std::move(newName)) {}

template <class Item> void RenameHmiGroup<Item>::redo() {
    std::swap(groupAt<Item>(s_, path_).name, other_);
}

template <class Item> void RenameHmiGroup<Item>::undo() {
    std::swap(groupAt<Item>(s_, path_).name, other_);
}

template class RenameHmiGroup<HmiIoItem>;
template class RenameHmiGroup<HmiMemoryItem>;

} // namespace rq

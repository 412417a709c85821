#include "sections/device/DeviceEdits.h"

namespace rq {

InsertLink::InsertLink(std::string name, DeviceSection& s, std::size_t index, LinkItem link)
    : EditCommand(std::move(name), kDeviceSectionIndex), s_(s), index_(index),
      held_(std::move(link)) {}

void InsertLink::redo() {
    s_.links().insert(s_.links().begin() + static_cast<std::ptrdiff_t>(index_), std::move(held_));
}

void InsertLink::undo() {
    auto at = s_.links().begin() + static_cast<std::ptrdiff_t>(index_);
    held_ = std::move(*at);
    s_.links().erase(at);
}

RemoveLink::RemoveLink(std::string name, DeviceSection& s, std::size_t index)
    : EditCommand(std::move(name), kDeviceSectionIndex), s_(s), index_(index) {}

void RemoveLink::redo() {
    auto at = s_.links().begin() + static_cast<std::ptrdiff_t>(index_);
    held_ = std::move(*at);
    s_.links().erase(at);
}

void RemoveLink::undo() {
    s_.links().insert(s_.links().begin() + static_cast<std::ptrdiff_t>(index_), std::move(held_));
}

ReplaceLink::ReplaceLink(std::string name, DeviceSection& s, std::size_t index,
                         const LinkItem& fields)
    : EditCommand(std::move(name), kDeviceSectionIndex), s_(s), index_(index), common_(fields),
      kind_(fields) {}

void ReplaceLink::redo() {
    LinkItem& link = s_.links()[index_];
    std::swap(static_cast<LinkCommonFields&>(link), common_);
    std::swap(static_cast<LinkKindFields&>(link), kind_);
}

void ReplaceLink::undo() {
    redo(); // the same exchange takes the old fields back
}

} // namespace rq

#include "sections/fbd/FbdEdits.h"

#include <utility>

namespace rq {

ChangeBlockSettings::ChangeBlockSettings(FbdSection& s, std::size_t index, std::string name,
                                         std::string memberKind)
    : EditCommand("FBD Configuration", kFbdSectionIndex), s_(s), index_(index),
      name_(std::move(name)), memberKind_(std::move(memberKind)) {}

void ChangeBlockSettings::redo() {
    FbdItem& item = s_.blocks()[index_];
    std::swap(item.name, name_);
    std::swap(item.memberKind, memberKind_);
}

void ChangeBlockSettings::undo() {
    redo();
}

} // namespace rq

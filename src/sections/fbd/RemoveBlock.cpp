#include "sections/fbd/FbdEdits.h"

namespace rq {

RemoveBlock::RemoveBlock(FbdSection& s, std::size_t index)
    : EditCommand("Delete FBD", kFbdSectionIndex), s_(s), index_(index) {}

void RemoveBlock::redo() {
    auto& blocks = s_.blocks();
    removed_ = std::move(blocks[index_]);
    blocks.erase(blocks.begin() + static_cast<std::ptrdiff_t>(index_));
}

void RemoveBlock::undo() {
    auto& blocks = s_.blocks();
    blocks.insert(blocks.begin() + static_cast<std::ptrdiff_t>(index_), std::move(removed_));
    removed_ = {};
}

} // namespace rq

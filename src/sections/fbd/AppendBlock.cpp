#include "sections/fbd/FbdEdits.h"

namespace rq {

AppendBlock::AppendBlock(FbdSection& s, FbdItem item)
    : EditCommand("Add FBD", kFbdSectionIndex), s_(s), item_(std::move(item)) {}

void AppendBlock::redo() {
    s_.blocks().push_back(item_);
}

void AppendBlock::undo() {
    s_.blocks().pop_back();
}

} // namespace rq

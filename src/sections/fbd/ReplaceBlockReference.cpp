#include "sections/fbd/FbdEdits.h"

#include <utility>

namespace rq {

ReplaceBlockReference::ReplaceBlockReference(FbdSection& s, std::size_t block, std::size_t row,
                                             DataRef ref)
    : EditCommand("Modify FBD Parameter", kFbdSectionIndex), s_(s), block_(block), row_(row),
      other_(std::move(ref)) {}

void ReplaceBlockReference::redo() {
    FbdItem& item = s_.blocks()[block_];
    if (row_ == 0) {
        std::swap(item.enable, other_);
        return;
    }
    FbdParam& p = item.params[row_ - 1];
    std::swap(p.dbname, other_.dbname);
    std::swap(p.varname, other_.dataname);
}

void ReplaceBlockReference::undo() {
    redo();
}

} // namespace rq

#include "sections/param/ParamEdits.h"

#include <utility>

namespace rq {

ReplaceParam::ReplaceParam(std::string name, ParamSection& s, std::size_t index, ParamItem item)
    : EditCommand(std::move(name), kParamSectionIndex), s_(s), index_(index),
      other_(std::move(item)) {}

void ReplaceParam::redo() {
    std::swap(s_.items[index_], other_);
}

void ReplaceParam::undo() {
    redo();
}

} // namespace rq

#include "sections/param/ParamEdits.h"

namespace rq {

AppendParam::AppendParam(std::string name, ParamSection& s, ParamItem item)
    : EditCommand(std::move(name), kParamSectionIndex), s_(s), item_(std::move(item)) {}

void AppendParam::redo() {
    s_.items.push_back(item_);
}

void AppendParam::undo() {
    s_.items.pop_back();
}

} // namespace rq

#include "core/RowPositions.h"
#include "sections/param/ParamEdits.h"

namespace rq {

RemoveParams::RemoveParams(std::string name, ParamSection& s, std::vector<std::size_t> rows)
    : EditCommand(std::move(name), kParamSectionIndex), s_(s), rows_(std::move(rows)) {}

void RemoveParams::redo() {
    auto& items = s_.items;
    removed_ = takeRows(items, rows_);
}

void RemoveParams::undo() {
    auto& items = s_.items;
    putRowsBack(items, rows_, removed_);
}

} // namespace rq

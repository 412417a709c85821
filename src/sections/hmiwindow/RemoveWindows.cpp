#include "core/RowPositions.h"
#include "sections/hmiwindow/HmiWindowEdits.h"

namespace rq {

RemoveWindows::RemoveWindows(std::string name, HmiWindowSection& s, std::vector<std::size_t> rows)
    : EditCommand(std::move(name), kHmiWindowSectionIndex), s_(s), rows_(std::move(rows)) {}

void RemoveWindows::redo() {
    auto& items = s_.windows;
    removed_ = takeRows(items, rows_);
}

void RemoveWindows::undo() {
    auto& items = s_.windows;
    putRowsBack(items, rows_, removed_);
}

} // namespace rq

#include "core/RowPositions.h"
#include "sections/datalog/DataLogEdits.h"

namespace rq {

RemoveLogData::RemoveLogData(std::string name, DataLogSection& s, std::size_t log,
                             std::vector<std::size_t> rows)
    : EditCommand(std::move(name), kDataLogSectionIndex), s_(s), log_(log), rows_(std::move(rows)) {
}

void RemoveLogData::redo() {
    auto& data = s_.logs[log_].data;
    removed_ = takeRows(data, rows_);
}

void RemoveLogData::undo() {
    auto& data = s_.logs[log_].data;
    putRowsBack(data, rows_, removed_);
}

} // namespace rq

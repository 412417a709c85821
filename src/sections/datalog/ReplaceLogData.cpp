#include "sections/datalog/DataLogEdits.h"

#include <utility>

namespace rq {

ReplaceLogData::ReplaceLogData(std::string name, DataLogSection& s, std::size_t log,
                               std::size_t row, DataRef ref)
    : EditCommand(std::move(name), kDataLogSectionIndex), s_(s), log_(log), row_(row),
      other_(std::move(ref)) {}

void ReplaceLogData::redo() {
    std::swap(s_.logs[log_].data[row_], other_);
}

void ReplaceLogData::undo() {
    redo();
}

} // namespace rq

#include "sections/datalog/DataLogEdits.h"

namespace rq {

AppendLogData::AppendLogData(std::string name, DataLogSection& s, std::size_t log, DataRef ref)
    : EditCommand(std::move(name), kDataLogSectionIndex), s_(s), log_(log), ref_(std::move(ref)) {}

void AppendLogData::redo() {
    s_.logs[log_].data.push_back(ref_);
}

void AppendLogData::undo() {
    s_.logs[log_].data.pop_back();
}

} // namespace rq

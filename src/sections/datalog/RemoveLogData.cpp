#include "sections/datalog/DataLogEdits.h"

namespace rq {

RemoveLogData::RemoveLogData(std::string name, DataLogSection& s, std::size_t log,
                             std::vector<std::size_t> rows)
    : EditCommand(std::move(name), kDataLogSectionIndex), s_(s), log_(log), rows_(std::move(rows)) {
}

void RemoveLogData::redo() {
    auto& data = s_.logs[log_].data;
    removed_.clear();
    removed_.reserve(rows_.size());
    std::vector<DataRef> kept;
    kept.reserve(data.size() - rows_.size());
    std::size_t next = 0;
    for (std::size_t i = 0; i < data.size(); ++i) {
        if (next < rows_.size() && rows_[next] == i) {
            removed_.push_back(std::move(data[i]));
            ++next;
        } else {
            kept.push_back(std::move(data[i]));
        }
    }
    data = std::move(kept);
}

void RemoveLogData::undo() {
    auto& data = s_.logs[log_].data;
    std::vector<DataRef> merged;
    merged.reserve(data.size() + removed_.size());
    std::size_t kept = 0, next = 0;
    while (kept < data.size() || next < removed_.size()) {
        if (next < removed_.size() && rows_[next] == merged.size())
            merged.push_back(std::move(removed_[next++]));
        else
            merged.push_back(std::move(data[kept++]));
    }
    data = std::move(merged);
    removed_.clear();
}

} // namespace rq

#include "sections/history/HistoryEdits.h"

#include <utility>

namespace rq {

AppendHistoryData::AppendHistoryData(std::string name, HistorySection& s, std::size_t record,
                                     HistoryData data)
    : EditCommand(std::move(name), kHistorySectionIndex), s_(s), record_(record),
      data_(std::move(data)) {}

void AppendHistoryData::redo() {
    s_.records()[record_].data.push_back(data_);
}

void AppendHistoryData::undo() {
    s_.records()[record_].data.pop_back();
}

RemoveHistoryData::RemoveHistoryData(std::string name, HistorySection& s, std::size_t record,
                                     std::vector<std::size_t> rows)
    : EditCommand(std::move(name), kHistorySectionIndex), s_(s), record_(record),
      rows_(std::move(rows)) {}

void RemoveHistoryData::redo() {
    auto& data = s_.records()[record_].data;
    removed_.clear();
    std::vector<HistoryData> kept;
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

void RemoveHistoryData::undo() {
    auto& data = s_.records()[record_].data;
    std::vector<HistoryData> merged;
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

ReplaceHistoryData::ReplaceHistoryData(std::string name, HistorySection& s, std::size_t record,
                                       std::size_t index, HistoryData data)
    : EditCommand(std::move(name), kHistorySectionIndex), s_(s), record_(record), index_(index),
      other_(std::move(data)) {}

void ReplaceHistoryData::redo() {
    std::swap(s_.records()[record_].data[index_], other_);
}

void ReplaceHistoryData::undo() {
    redo();
}

} // namespace rq

#include "core/RowPositions.h"
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
    removed_ = takeRows(data, rows_);
}

void RemoveHistoryData::undo() {
    auto& data = s_.records()[record_].data;
    putRowsBack(data, rows_, removed_);
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

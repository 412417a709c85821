#include "sections/history/HistoryEdits.h"

#include <utility>

namespace rq {

namespace {
void swapSettings(HistoryRecord& a, HistoryRecord& b) {
    std::swap(a.name, b.name);
    std::swap(a.period, b.period);
    std::swap(a.path, b.path);
    std::swap(a.remaindays, b.remaindays);
    std::swap(a.indexperiod, b.indexperiod);
}
} // namespace

InsertHistoryRecord::InsertHistoryRecord(std::string name, HistorySection& s, std::size_t index,
                                         HistoryRecord record)
    : EditCommand(std::move(name), kHistorySectionIndex), s_(s), index_(index),
      held_(std::move(record)) {}

void InsertHistoryRecord::redo() {
    auto& records = s_.records();
    records.insert(records.begin() + static_cast<std::ptrdiff_t>(index_), std::move(held_));
}

void InsertHistoryRecord::undo() {
    auto& records = s_.records();
    auto at = records.begin() + static_cast<std::ptrdiff_t>(index_);
    held_ = std::move(*at);
    records.erase(at);
}

RemoveHistoryRecord::RemoveHistoryRecord(std::string name, HistorySection& s, std::size_t index)
    : EditCommand(std::move(name), kHistorySectionIndex), s_(s), index_(index) {}

void RemoveHistoryRecord::redo() {
    auto& records = s_.records();
    auto at = records.begin() + static_cast<std::ptrdiff_t>(index_);
    held_ = std::move(*at);
    records.erase(at);
}

void RemoveHistoryRecord::undo() {
    auto& records = s_.records();
    records.insert(records.begin() + static_cast<std::ptrdiff_t>(index_), std::move(held_));
}

ReplaceHistoryRecord::ReplaceHistoryRecord(std::string name, HistorySection& s, std::size_t index,
                                           const HistoryRecord& settings)
    : EditCommand(std::move(name), kHistorySectionIndex), s_(s), index_(index) {
    other_.name = settings.name;
    other_.period = settings.period;
    other_.path = settings.path;
    other_.remaindays = settings.remaindays;
    other_.indexperiod = settings.indexperiod;
}

void ReplaceHistoryRecord::redo() {
    swapSettings(s_.records()[index_], other_);
}

void ReplaceHistoryRecord::undo() {
    redo();
}

} // namespace rq

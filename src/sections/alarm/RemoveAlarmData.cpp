#include "sections/alarm/AlarmEdits.h"

#include <utility>

namespace rq {

RemoveAlarmData::RemoveAlarmData(std::string name, AlarmSection& s, std::size_t group,
                                 std::vector<std::size_t> rows)
    : EditCommand(std::move(name), kAlarmSectionIndex), s_(s), group_(group),
      rows_(std::move(rows)) {}

void RemoveAlarmData::redo() {
    auto& data = s_.groups()[group_].data;
    removed_.clear();
    removed_.reserve(rows_.size());
    std::vector<AlarmDataItem> kept;
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

void RemoveAlarmData::undo() {
    auto& data = s_.groups()[group_].data;
    std::vector<AlarmDataItem> merged;
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

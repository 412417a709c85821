#include "core/RowPositions.h"
#include "sections/alarm/AlarmEdits.h"

#include <utility>

namespace rq {

RemoveAlarmData::RemoveAlarmData(std::string name, AlarmSection& s, std::size_t group,
                                 std::vector<std::size_t> rows)
    : EditCommand(std::move(name), kAlarmSectionIndex), s_(s), group_(group),
      rows_(std::move(rows)) {}

void RemoveAlarmData::redo() {
    auto& data = s_.groups()[group_].data;
    removed_ = takeRows(data, rows_);
}

void RemoveAlarmData::undo() {
    auto& data = s_.groups()[group_].data;
    putRowsBack(data, rows_, removed_);
}

} // namespace rq

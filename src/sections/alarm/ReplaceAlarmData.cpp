#include "sections/alarm/AlarmEdits.h"

#include <utility>

namespace rq {

ReplaceAlarmData::ReplaceAlarmData(std::string name, AlarmSection& s, std::size_t group,
                                   std::size_t row, AlarmDataItem item)
    : EditCommand(std::move(name), kAlarmSectionIndex), s_(s), group_(group), row_(row),
      other_(std::move(item)) {}

void ReplaceAlarmData::redo() {
    std::swap(s_.groups()[group_].data[row_], other_);
}

void ReplaceAlarmData::undo() {
    redo();
}

} // namespace rq

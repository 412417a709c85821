#include "sections/alarm/AlarmEdits.h"

#include <utility>

namespace rq {

AppendAlarmData::AppendAlarmData(std::string name, AlarmSection& s, std::size_t group,
                                 AlarmDataItem item)
    : EditCommand(std::move(name), kAlarmSectionIndex), s_(s), group_(group),
      item_(std::move(item)) {}

void AppendAlarmData::redo() {
    s_.groups()[group_].data.push_back(item_);
}

void AppendAlarmData::undo() {
    s_.groups()[group_].data.pop_back();
}

} // namespace rq

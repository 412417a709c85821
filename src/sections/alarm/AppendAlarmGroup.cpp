#include "sections/alarm/AlarmEdits.h"

#include <utility>

namespace rq {

AppendAlarmGroup::AppendAlarmGroup(std::string name, AlarmSection& s, AlarmGroup group)
    : EditCommand(std::move(name), kAlarmSectionIndex), s_(s), group_(std::move(group)) {}

void AppendAlarmGroup::redo() {
    s_.groups().push_back(std::move(group_));
}

void AppendAlarmGroup::undo() {
    group_ = std::move(s_.groups().back());
    s_.groups().pop_back();
}

} // namespace rq

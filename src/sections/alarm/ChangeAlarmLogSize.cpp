#include "sections/alarm/AlarmEdits.h"
#include "sections/alarm/AlarmForms.h"

#include <utility>

namespace rq {

ChangeAlarmLogSize::ChangeAlarmLogSize(AlarmSection& s, std::string size)
    : EditCommand(alarmtext::kConfigStepName, kAlarmSectionIndex), s_(s), other_(std::move(size)) {}

void ChangeAlarmLogSize::redo() {
    std::swap(s_.logSize(), other_);
}

void ChangeAlarmLogSize::undo() {
    std::swap(s_.logSize(), other_);
}

} // namespace rq

#include "sections/alarm/AlarmEdits.h"

#include <utility>

namespace rq {

RenameAlarmGroup::RenameAlarmGroup(std::string name, AlarmSection& s, std::size_t index,
                                   std::string newName)
    : EditCommand(std::move(name), kAlarmSectionIndex), s_(s), index_(index),
      other_(std::move(newName)) {}

void RenameAlarmGroup::redo() {
    std::swap(s_.groups()[index_].name, other_);
}

void RenameAlarmGroup::undo() {
    redo();
}

} // namespace rq

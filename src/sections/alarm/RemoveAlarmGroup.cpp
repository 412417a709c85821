#include "sections/alarm/AlarmEdits.h"

#include <iterator>
#include <utility>

namespace rq {

RemoveAlarmGroup::RemoveAlarmGroup(std::string name, AlarmSection& s, std::size_t index)
    : EditCommand(std::move(name), kAlarmSectionIndex), s_(s), index_(index) {}

void RemoveAlarmGroup::redo() {
    auto& groups = s_.groups();
    const auto at = std::next(groups.begin(), static_cast<std::ptrdiff_t>(index_));
    held_ = std::move(*at);
    groups.erase(at);
}

void RemoveAlarmGroup::undo() {
    auto& groups = s_.groups();
    groups.insert(std::next(groups.begin(), static_cast<std::ptrdiff_t>(index_)), std::move(held_));
    held_ = {};
}

} // namespace rq

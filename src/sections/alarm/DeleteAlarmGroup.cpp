#include "core/SectionEditor.h"
#include "sections/alarm/AlarmCommands.h"
#include "sections/alarm/AlarmEdits.h"

namespace rq {

bool deleteAlarmGroup(const AlarmEditor& ed, std::size_t group) {
    if (group >= ed.section.groups().size())
        return false;
    if (!confirmDelete(ed.sink, alarmtext::kDeleteGroup))
        return false;
    ed.history.push(std::make_unique<RemoveAlarmGroup>("Delete Alarm Group", ed.section, group));
    return true;
}

} // namespace rq

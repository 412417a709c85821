#include "sections/alarm/AlarmCommands.h"
#include "sections/alarm/AlarmEdits.h"

namespace rq {

bool configureAlarmBuffer(const AlarmEditor& ed) {
    AlarmConfigForm form{ed.section.logSize()};
    if (!ed.dialogs.configDialog(form) || form.bufferSize == ed.section.logSize())
        return false;
    ed.history.push(std::make_unique<ChangeAlarmLogSize>(ed.section, std::move(form.bufferSize)));
    return true;
}

} // namespace rq

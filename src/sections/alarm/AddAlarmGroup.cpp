#include "core/SectionEditor.h"
#include "sections/alarm/AlarmCommands.h"
#include "sections/alarm/AlarmEdits.h"

namespace rq {

std::optional<std::size_t> alarmGroupIndex(const AlarmSection& s, const void* group) {
    const auto& groups = s.groups();
    for (std::size_t i = 0; i < groups.size(); ++i)
        if (&groups[i] == group)
            return i;
    return std::nullopt;
}

std::optional<std::size_t> addAlarmGroup(const AlarmEditor& ed) {
    AlarmGroupForm form;
    const bool ok = askUntilAccepted(
        ed.sink, form, [&](AlarmGroupForm& f) { return ed.dialogs.groupDialog(f); },
        [&](const AlarmGroupForm& f) -> std::optional<std::string> {
            if (ed.section.groupNameExists(f.name))
                return std::string(alarmtext::kGroupExists);
            return std::nullopt;
        });
    if (!ok || form.name.empty())
        return std::nullopt;
    AlarmGroup group;
    group.name = std::move(form.name);
    ed.history.push(
        std::make_unique<AppendAlarmGroup>("Add Alarm Group", ed.section, std::move(group)));
    return ed.section.groups().size() - 1;
}

} // namespace rq

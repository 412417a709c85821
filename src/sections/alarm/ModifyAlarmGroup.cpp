#include "core/SectionEditor.h"
#include "sections/alarm/AlarmCommands.h"
#include "sections/alarm/AlarmEdits.h"

namespace rq {

namespace {

// Another group of this name (the group's own name is no duplicate).
bool usedByAnother(const AlarmSection& s, std::size_t group, const std::string& name) {
    const auto& groups = s.groups();
    for (std::size_t i = 0; i < groups.size(); ++i)
        if (i != group && groups[i].name == name)
            return true;
    return false;
}

} // namespace

bool modifyAlarmGroup(const AlarmEditor& ed, std::size_t group) {
    if (group >= ed.section.groups().size())
        return false;
    AlarmGroupForm form{ed.section.groups()[group].name};
    const bool ok = askUntilAccepted(
        ed.sink, form, [&](AlarmGroupForm& f) { return ed.dialogs.groupDialog(f); },
        [&](const AlarmGroupForm& f) -> std::optional<std::string> {
            if (usedByAnother(ed.section, group, f.name))
                return std::string(alarmtext::kGroupExists);
            return std::nullopt;
        });
    if (!ok || form.name.empty() || form.name == ed.section.groups()[group].name)
        return false;
    ed.history.push(std::make_unique<RenameAlarmGroup>("Modify Alarm Group", ed.section, group,
                                                       std::move(form.name)));
    return true;
}

bool renameAlarmGroupLabel(const AlarmEditor& ed, std::size_t group, const std::string& label) {
    if (group >= ed.section.groups().size() || label.empty())
        return false;
    std::optional<std::string> message = validateAlarmGroupForm({label});
    if (!message && usedByAnother(ed.section, group, label))
        message = alarmtext::kGroupExists;
    if (message) {
        ed.sink.showMessage(*message, MessageIcon::Stop);
        return false;
    }
    if (label != ed.section.groups()[group].name)
        ed.history.push(
            std::make_unique<RenameAlarmGroup>("Rename Alarm Group", ed.section, group, label));
    return true;
}

} // namespace rq

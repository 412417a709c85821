#include "core/SectionEditor.h"
#include "sections/alarm/AlarmCommands.h"
#include "sections/alarm/AlarmEdits.h"

namespace rq {

bool addAlarmData(const AlarmEditor& ed, std::size_t group) {
    if (group >= ed.section.groups().size())
        return false;
    const auto& data = ed.section.groups()[group].data;
    AlarmDataForm form;
    const bool ok = askUntilAccepted(
        ed.sink, form, [&](AlarmDataForm& f) { return ed.dialogs.dataDialog(f); },
        [&](const AlarmDataForm& f) -> std::optional<std::string> {
            for (const AlarmDataItem& d : data)
                if (d.dbname == f.dbname && d.dataname == f.dataname)
                    return std::string(alarmtext::kDataExists);
            return std::nullopt;
        });
    if (!ok)
        return false;
    ed.history.push(std::make_unique<AppendAlarmData>("Add Alarm Data", ed.section, group,
                                                      alarmDataFromForm(form)));
    return true;
}

} // namespace rq

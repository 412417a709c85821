#include "core/SectionEditor.h"
#include "sections/alarm/AlarmCommands.h"
#include "sections/alarm/AlarmEdits.h"

#include <algorithm>

namespace rq {

bool deleteAlarmData(const AlarmEditor& ed, std::size_t group,
                     const std::vector<std::size_t>& rows) {
    if (group >= ed.section.groups().size())
        return false;
    const std::size_t count = ed.section.groups()[group].data.size();
    std::vector<std::size_t> selected;
    for (std::size_t r : rows)
        if (r < count)
            selected.push_back(r);
    std::sort(selected.begin(), selected.end());
    selected.erase(std::unique(selected.begin(), selected.end()), selected.end());
    if (selected.empty() || !confirmDelete(ed.sink, alarmtext::kDeleteData))
        return false;
    ed.history.push(std::make_unique<RemoveAlarmData>("Delete Alarm Data", ed.section, group,
                                                      std::move(selected)));
    return true;
}

} // namespace rq

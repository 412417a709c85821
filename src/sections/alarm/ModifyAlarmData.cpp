#include "core/SectionEditor.h"
#include "sections/alarm/AlarmCommands.h"
#include "sections/alarm/AlarmEdits.h"

namespace rq {

namespace {

bool samePair(const AlarmDataItem& d, const std::string& dbname, const std::string& dataname) {
    return d.dbname == dbname && d.dataname == dataname;
}

} // namespace

bool modifyAlarmData(const AlarmEditor& ed, std::size_t group,
                     const std::vector<std::size_t>& rows) {
    if (group >= ed.section.groups().size())
        return false;
    const auto& data = ed.section.groups()[group].data;
    std::optional<std::size_t> row = firstSelectedRow(rows, data.size());
    if (!row)
        return false;
    // The row stands for its pair: the pair's first record is the one edited.
    std::size_t index = *row;
    for (std::size_t i = 0; i < *row; ++i)
        if (samePair(data[i], data[*row].dbname, data[*row].dataname)) {
            index = i;
            break;
        }
    AlarmDataForm form = alarmDataFormFromRecord(data[index]);
    const bool ok = askUntilAccepted(
        ed.sink, form, [&](AlarmDataForm& f) { return ed.dialogs.dataDialog(f); },
        [&](const AlarmDataForm& f) -> std::optional<std::string> {
            // Keeping the pair is no new duplicate, also when a file held it twice.
            if (samePair(data[index], f.dbname, f.dataname))
                return std::nullopt;
            for (const AlarmDataItem& d : data)
                if (samePair(d, f.dbname, f.dataname))
                    return std::string(alarmtext::kDataExists);
            return std::nullopt;
        });
    if (!ok)
        return false;
    AlarmDataItem item = alarmDataFromForm(form);
    if (item == data[index])
        return false;
    ed.history.push(std::make_unique<ReplaceAlarmData>("Modify Alarm Data", ed.section, group,
                                                       index, std::move(item)));
    return true;
}

} // namespace rq

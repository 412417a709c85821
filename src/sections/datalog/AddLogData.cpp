#include "core/SectionEditor.h"
#include "sections/datalog/DataLogCommands.h"
#include "sections/datalog/DataLogEdits.h"

#include <algorithm>

namespace rq {

bool addLogData(const DataLogEditor& ed, int log) {
    auto& logs = ed.section.logs;
    if (log < 0 || static_cast<std::size_t>(log) >= logs.size() ||
        logs[static_cast<std::size_t>(log)].kind != DataLogKind::Variables)
        return false;
    const std::size_t index = static_cast<std::size_t>(log);
    LogDataForm form;
    const bool ok = askUntilAccepted(
        ed.sink, form, [&](LogDataForm& f) { return ed.dialogs.logDataDialog(f); },
        [&](const LogDataForm& f) -> std::optional<std::string> {
            const auto& data = logs[index].data;
            if (std::find(data.begin(), data.end(), logDataFromForm(f)) != data.end())
                return std::string(datalogtext::kDataExists);
            return std::nullopt;
        });
    if (!ok)
        return false;
    ed.history.push(
        std::make_unique<AppendLogData>("Add Data", ed.section, index, logDataFromForm(form)));
    return true;
}

} // namespace rq

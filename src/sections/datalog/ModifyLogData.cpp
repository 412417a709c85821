#include "core/SectionEditor.h"
#include "sections/datalog/DataLogCommands.h"
#include "sections/datalog/DataLogEdits.h"

namespace rq {

bool modifyLogData(const DataLogEditor& ed, int log, const std::vector<std::size_t>& rows) {
    auto& logs = ed.section.logs;
    if (log < 0 || static_cast<std::size_t>(log) >= logs.size() ||
        logs[static_cast<std::size_t>(log)].kind != DataLogKind::Variables)
        return false;
    const std::size_t index = static_cast<std::size_t>(log);
    const auto& data = logs[index].data;
    std::optional<std::size_t> row = firstSelectedRow(rows, data.size());
    if (!row)
        return false;
    LogDataForm form = logDataFormFromRef(data[*row]);
    const bool ok = askUntilAccepted(
        ed.sink, form, [&](LogDataForm& f) { return ed.dialogs.logDataDialog(f); },
        [&](const LogDataForm& f) -> std::optional<std::string> {
            const DataRef ref = logDataFromForm(f);
            for (std::size_t i = 0; i < data.size(); ++i)
                if (i != *row && data[i] == ref)
                    return std::string(datalogtext::kDataExists);
            return std::nullopt;
        });
    if (!ok || logDataFromForm(form) == data[*row])
        return false;
    ed.history.push(std::make_unique<ReplaceLogData>("Modify Data", ed.section, index, *row,
                                                     logDataFromForm(form)));
    return true;
}

} // namespace rq

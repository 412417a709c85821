#include "core/SectionEditor.h"
#include "sections/datalog/DataLogCommands.h"
#include "sections/datalog/DataLogEdits.h"

namespace rq {

namespace {

bool sameSettings(const DataLog& a, const DataLog& b) {
    return a.name == b.name && a.period == b.period && a.period_var == b.period_var &&
           a.control_var == b.control_var && a.size == b.size && a.dbname == b.dbname;
}

} // namespace

DataLogEditResult modifyDataLog(const DataLogEditor& ed, int log) {
    auto& logs = ed.section.logs;
    if (log < 0 || static_cast<std::size_t>(log) >= logs.size())
        return {};
    const std::size_t index = static_cast<std::size_t>(log);
    DataLogForm form = dataLogFormFromRecord(logs[index]);
    const bool ok = askUntilAccepted(
        ed.sink, form, [&](DataLogForm& f) { return ed.dialogs.logDialog(f); },
        [&](const DataLogForm& f) -> std::optional<std::string> {
            for (std::size_t i = 0; i < logs.size(); ++i)
                if (i != index && logs[i].name == f.name)
                    return std::string(datalogtext::kLogExists);
            return std::nullopt;
        });
    if (!ok)
        return {};
    DataLog settings = dataLogFromForm(form);
    if (sameSettings(settings, logs[index]))
        return {};
    ed.history.push(std::make_unique<ChangeDataLogSettings>("Modify Data Record", ed.section, index,
                                                            std::move(settings)));
    return {true, log};
}

} // namespace rq

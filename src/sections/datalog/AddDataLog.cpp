#include "core/SectionEditor.h"
#include "sections/datalog/DataLogCommands.h"
#include "sections/datalog/DataLogEdits.h"

namespace rq {

DataLogEditResult addDataLog(const DataLogEditor& ed, DataLogKind kind) {
    DataLogForm form;
    form.kind = kind;
    const bool ok = askUntilAccepted(
        ed.sink, form, [&](DataLogForm& f) { return ed.dialogs.logDialog(f); },
        [&](const DataLogForm& f) -> std::optional<std::string> {
            if (ed.section.findLog(f.name) >= 0)
                return std::string(datalogtext::kLogExists);
            return std::nullopt;
        });
    if (!ok)
        return {};
    const std::size_t index = ed.section.logs.size();
    ed.history.push(std::make_unique<InsertDataLog>(
        kind == DataLogKind::Database ? "Add All Database Record" : "Add Data Record", ed.section,
        index, dataLogFromForm(form)));
    return {true, static_cast<int>(index)};
}

} // namespace rq

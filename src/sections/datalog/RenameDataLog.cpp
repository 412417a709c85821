#include "core/StorableValue.h"
#include "sections/datalog/DataLogCommands.h"
#include "sections/datalog/DataLogEdits.h"

namespace rq {

bool renameDataLog(const DataLogEditor& ed, int log, const std::string& name) {
    auto& logs = ed.section.logs;
    if (log < 0 || static_cast<std::size_t>(log) >= logs.size() || name.empty())
        return false;
    const std::size_t index = static_cast<std::size_t>(log);
    if (name == logs[index].name)
        return true;
    if (auto message = checkStorableValue("Record Name", name)) {
        ed.sink.showMessage(*message, MessageIcon::Stop);
        return false;
    }
    if (ed.section.findLog(name) >= 0) {
        ed.sink.showMessage(datalogtext::kLogExists, MessageIcon::Stop);
        return false;
    }
    DataLogForm form = dataLogFormFromRecord(logs[index]);
    form.name = name;
    ed.history.push(std::make_unique<ChangeDataLogSettings>("Rename Data Record", ed.section, index,
                                                            dataLogFromForm(form)));
    return true;
}

} // namespace rq

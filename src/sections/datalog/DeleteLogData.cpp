#include "core/SectionEditor.h"
#include "sections/datalog/DataLogCommands.h"
#include "sections/datalog/DataLogEdits.h"

#include <algorithm>

namespace rq {

bool deleteLogData(const DataLogEditor& ed, int log, const std::vector<std::size_t>& rows) {
    auto& logs = ed.section.logs;
    if (log < 0 || static_cast<std::size_t>(log) >= logs.size() ||
        logs[static_cast<std::size_t>(log)].kind != DataLogKind::Variables)
        return false;
    const std::size_t index = static_cast<std::size_t>(log);
    std::vector<std::size_t> selected;
    for (std::size_t r : rows)
        if (r < logs[index].data.size())
            selected.push_back(r);
    std::sort(selected.begin(), selected.end());
    selected.erase(std::unique(selected.begin(), selected.end()), selected.end());
    if (selected.empty() || !confirmDelete(ed.sink, datalogtext::kDeleteData))
        return false;
    ed.history.push(
        std::make_unique<RemoveLogData>("Delete Data", ed.section, index, std::move(selected)));
    return true;
}

} // namespace rq

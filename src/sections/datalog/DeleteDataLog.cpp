#include "core/SectionEditor.h"
#include "sections/datalog/DataLogCommands.h"
#include "sections/datalog/DataLogEdits.h"

namespace rq {

DataLogEditResult deleteDataLog(const DataLogEditor& ed, int log) {
    if (log < 0 || static_cast<std::size_t>(log) >= ed.section.logs.size())
        return {};
    if (!confirmDelete(ed.sink, datalogtext::kDeleteLog))
        return {};
    ed.history.push(std::make_unique<RemoveDataLog>("Delete Data Record", ed.section,
                                                    static_cast<std::size_t>(log)));
    return {true, -1};
}

} // namespace rq

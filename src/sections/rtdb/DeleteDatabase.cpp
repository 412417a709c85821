#include "core/SectionEditor.h"
#include "sections/rtdb/RtdbCommands.h"
#include "sections/rtdb/RtdbEdits.h"

namespace rq {

RtdbEditResult deleteDatabase(const RtdbEditor& ed, DataNode* selected) {
    if (!selected || !selected->isDatabase())
        return {};
    if (ed.refs && !confirmDeleteUses(ed, usesOfNode(*ed.refs, *selected)))
        return {};
    if (!confirmDelete(ed.sink, rtdbtext::kDeleteDatabase))
        return {};
    ed.history.push(std::make_unique<RemoveDataNode>("Delete Database", *selected));
    return {true, nullptr};
}

} // namespace rq

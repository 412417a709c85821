#include "core/SectionEditor.h"
#include "sections/rtdb/RtdbCommands.h"
#include "sections/rtdb/RtdbEdits.h"

namespace rq {

RtdbEditResult deleteDataGroup(const RtdbEditor& ed, DataNode* selected) {
    if (!selected || !selected->isGroup() || !selected->parent())
        return {};
    if (ed.refs && !confirmDeleteUses(ed, usesOfNode(*ed.refs, *selected)))
        return {};
    if (!confirmDelete(ed.sink, rtdbtext::kDeleteGroup))
        return {};
    ed.history.push(std::make_unique<RemoveDataNode>("Delete Data Group", *selected));
    return {true, nullptr};
}

} // namespace rq

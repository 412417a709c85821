#include "sections/rtdb/RtdbCommands.h"

namespace rq {

RtdbEditResult deleteDataGroup(const RtdbEditor& ed, DataNode* selected) {
    if (!selected || !selected->isGroup() || !selected->parent())
        return {};
    if (!ed.sink.askOkCancel(rtdbtext::kDeleteGroup))
        return {};
    selected->parent()->removeChild(selected);
    return {true, nullptr};
}

} // namespace rq

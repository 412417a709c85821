#include "sections/rtdb/RtdbCommands.h"

namespace rq {

RtdbEditResult deleteDatabase(const RtdbEditor& ed, DataNode* selected) {
    if (!selected || !selected->isDatabase())
        return {};
    if (!ed.sink.askOkCancel(rtdbtext::kDeleteDatabase))
        return {};
    ed.rtdb.root().removeChild(selected);
    return {true, nullptr};
}

} // namespace rq

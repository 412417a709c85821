#include "sections/rtdb/RtdbCommands.h"

namespace rq {

RtdbEditResult addDataGroup(const RtdbEditor& ed, DataNode* selected) {
    if (!selected || !(selected->isDatabase() || selected->isGroup()))
        return {};
    DataGroupForm form;
    if (!askDataGroupForm(ed, form) || form.name.empty())
        return {};
    if (selected->nameInUse(form.name)) {
        ed.sink.showMessage(rtdbtext::kGroupExists, MessageIcon::Stop);
        return {};
    }
    DataNode& group = selected->addGroup(std::move(form.name));
    return {true, &group};
}

} // namespace rq

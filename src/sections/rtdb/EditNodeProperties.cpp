#include "sections/rtdb/RtdbCommands.h"

namespace rq {

RtdbEditResult editNodeProperties(const RtdbEditor& ed, DataNode* selected) {
    if (!selected)
        return {};
    if (selected->isDatabase()) {
        DatabaseForm form{selected->name(), selected->sync()};
        if (!askDatabaseForm(ed, form) || form.name.empty())
            return {};
        bool changed = form.name != selected->name() || form.sync != selected->sync();
        selected->setName(std::move(form.name));
        selected->setSync(form.sync);
        return {changed, nullptr};
    }
    if (selected->isGroup()) {
        DataGroupForm form{selected->name()};
        if (!askDataGroupForm(ed, form) || form.name.empty())
            return {};
        bool changed = form.name != selected->name();
        if (changed)
            selected->setName(std::move(form.name));
        return {changed, nullptr};
    }
    return {};
}

} // namespace rq

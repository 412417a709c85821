#include "core/SectionEditor.h"
#include "sections/rtdb/RtdbCommands.h"
#include "sections/rtdb/RtdbEdits.h"

namespace rq {

RtdbEditResult addDataGroup(const RtdbEditor& ed, DataNode* selected) {
    if (!selected || !(selected->isDatabase() || selected->isGroup()))
        return {};
    DataGroupForm form;
    auto show = [&](DataGroupForm& f) { return askDataGroupForm(ed, f); };
    auto refuse = [&](const DataGroupForm& f) -> std::optional<std::string> {
        if (!f.name.empty() && selected->nameInUse(f.name))
            return std::string(rtdbtext::kGroupExists);
        return std::nullopt;
    };
    if (!askUntilAccepted(ed.sink, form, show, refuse) || form.name.empty())
        return {};
    auto& step = static_cast<InsertDataNode&>(ed.history.push(
        std::make_unique<InsertDataNode>("Add Data Group", *selected, selected->childCount(),
                                         DataNode::makeGroup(std::move(form.name)))));
    return {true, step.node()};
}

} // namespace rq

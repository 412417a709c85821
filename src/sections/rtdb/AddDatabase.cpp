#include "core/SectionEditor.h"
#include "sections/rtdb/RtdbCommands.h"
#include "sections/rtdb/RtdbEdits.h"

namespace rq {

RtdbEditResult addDatabase(const RtdbEditor& ed) {
    DatabaseForm form;
    auto show = [&](DatabaseForm& f) { return askDatabaseForm(ed, f); };
    auto refuse = [&](const DatabaseForm& f) -> std::optional<std::string> {
        if (!f.name.empty() && ed.rtdb.findDatabase(f.name))
            return std::string(rtdbtext::kDatabaseExists);
        return std::nullopt;
    };
    if (!askUntilAccepted(ed.sink, form, show, refuse) || form.name.empty())
        return {};
    DataNode& root = ed.rtdb.root();
    auto& step = static_cast<InsertDataNode&>(ed.history.push(
        std::make_unique<InsertDataNode>("Add Database", root, root.childCount(),
                                         DataNode::makeDatabase(std::move(form.name), form.sync))));
    return {true, step.node()};
}

} // namespace rq

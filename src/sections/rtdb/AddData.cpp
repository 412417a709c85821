#include "core/SectionEditor.h"
#include "sections/rtdb/RtdbCommands.h"
#include "sections/rtdb/RtdbEdits.h"

namespace rq {

RtdbEditResult addData(const RtdbEditor& ed, DataNode* selected) {
    if (!selected || !(selected->isDatabase() || selected->isGroup()))
        return {};
    DataForm form = newDataForm();
    auto show = [&](DataForm& f) { return ed.dialogs.dataDialog(f); };
    auto refuse = [&](const DataForm& f) -> std::optional<std::string> {
        if (selected->nameInUse(f.name))
            return std::string(rtdbtext::kDataExists);
        return std::nullopt;
    };
    if (!askUntilAccepted(ed.sink, form, show, refuse))
        return {};
    ed.history.push(std::make_unique<AppendDataItems>("Add Data", *selected,
                                                      std::vector<DataItem>{itemFromForm(form)}));
    return {true, nullptr};
}

} // namespace rq

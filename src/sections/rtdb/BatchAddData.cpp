#include "core/SectionEditor.h"
#include "sections/rtdb/RtdbCommands.h"
#include "sections/rtdb/RtdbEdits.h"

#include <cstdint>

namespace rq {

namespace {

// The first name of the batch that the database uses already, as the message.
std::optional<std::string> firstUsedName(const DataNode& node, const BatchDataForm& form) {
    // 64-bit counting, so that To at the top of the int range ends the loop.
    const std::int64_t from = form.from, to = form.to;
    for (std::int64_t i = from; i <= to; ++i) {
        std::string name = form.data.name + std::to_string(i);
        if (node.nameInUse(name))
            return "data" + name + "already exist!";
    }
    return std::nullopt;
}

} // namespace

RtdbEditResult batchAddData(const RtdbEditor& ed, DataNode* selected) {
    if (!selected || !(selected->isDatabase() || selected->isGroup()))
        return {};
    BatchDataForm form;
    form.data = newDataForm();
    auto show = [&](BatchDataForm& f) { return ed.dialogs.batchDataDialog(f); };
    auto refuse = [&](const BatchDataForm& f) { return firstUsedName(*selected, f); };
    if (!askUntilAccepted(ed.sink, form, show, refuse))
        return {};
    if (form.from > form.to)
        return {};
    const std::int64_t from = form.from, to = form.to;
    std::vector<DataItem> items;
    items.reserve(static_cast<std::size_t>(to - from + 1));
    DataForm one = form.data;
    for (std::int64_t i = from; i <= to; ++i) {
        one.name = form.data.name + std::to_string(i);
        if (one.alias)
            one.aliasText = form.data.aliasText + std::to_string(i);
        items.push_back(itemFromForm(one));
    }
    ed.history.push(std::make_unique<AppendDataItems>("Batch Data", *selected, std::move(items)));
    return {true, nullptr};
}

} // namespace rq

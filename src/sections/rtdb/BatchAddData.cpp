#include "sections/rtdb/RtdbCommands.h"

#include <cstdint>

namespace rq {

RtdbEditResult batchAddData(const RtdbEditor& ed, DataNode* selected) {
    if (!selected || !(selected->isDatabase() || selected->isGroup()))
        return {};
    BatchDataForm form;
    form.data = newDataForm();
    if (!ed.dialogs.batchDataDialog(form))
        return {};
    if (form.from > form.to)
        return {};
    // 64-bit counting, so that To at the top of the int range ends the loop.
    const std::int64_t from = form.from, to = form.to;
    for (std::int64_t i = from; i <= to; ++i) {
        std::string name = form.data.name + std::to_string(i);
        if (selected->nameInUse(name)) {
            ed.sink.showMessage("data" + name + "already exist!", MessageIcon::Stop);
            return {};
        }
    }
    selected->reserveItems(selected->itemCount() + static_cast<std::size_t>(to - from + 1));
    DataForm one = form.data;
    for (std::int64_t i = from; i <= to; ++i) {
        one.name = form.data.name + std::to_string(i);
        if (one.alias)
            one.aliasText = form.data.aliasText + std::to_string(i);
        selected->addItem(itemFromForm(one));
    }
    return {true, nullptr};
}

} // namespace rq

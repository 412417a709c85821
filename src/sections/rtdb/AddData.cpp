#include "sections/rtdb/RtdbCommands.h"

namespace rq {

RtdbEditResult addData(const RtdbEditor& ed, DataNode* selected) {
    if (!selected || !(selected->isDatabase() || selected->isGroup()))
        return {};
    DataForm form = newDataForm();
    if (!ed.dialogs.dataDialog(form))
        return {};
    if (selected->nameInUse(form.name)) {
        ed.sink.showMessage(rtdbtext::kDataExists, MessageIcon::Stop);
        return {};
    }
    selected->addItem(itemFromForm(form));
    return {true, nullptr};
}

} // namespace rq

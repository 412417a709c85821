#include "sections/hmidb/HmiDbCommands.h"

namespace rq {

bool addHmiData(const HmiDbEditor& ed, const HmiPlace& at) {
    if (at.kind == HmiDbSection::kIoKind) {
        IoDataForm form;
        if (!ed.dialogs.ioDataDialog(form))
            return false;
        ed.history.push(std::make_unique<AppendHmiData<HmiIoItem>>("Add Data", ed.section, at.path,
                                                                   ioItemFromForm(form)));
        return true;
    }
    if (at.kind == HmiDbSection::kMemoryKind) {
        MemoryDataForm form;
        if (!ed.dialogs.memoryDataDialog(form))
            return false;
        ed.history.push(std::make_unique<AppendHmiData<HmiMemoryItem>>(
            "Add Data", ed.section, at.path, memoryItemFromForm(form)));
        return true;
    }
    return false;
}

} // namespace rq

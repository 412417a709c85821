#include "core/SectionEditor.h"
#include "sections/hmidb/HmiDbCommands.h"

namespace rq {

bool askHmiGroupForm(const HmiDbEditor& ed, HmiGroupForm& form) {
    for (;;) {
        if (!ed.dialogs.groupDialog(form))
            return false;
        std::optional<std::string> message = validateHmiGroupForm(form);
        if (!message)
            return true;
        ed.sink.showMessage(*message, MessageIcon::Stop);
    }
}

bool addHmiGroup(const HmiDbEditor& ed, const HmiPlace& at) {
    if (!at.fixedOrNested())
        return false;
    HmiGroupForm form;
    if (!askHmiGroupForm(ed, form) || form.name.empty())
        return false;
    if (at.kind == HmiDbSection::kIoKind)
        ed.history.push(std::make_unique<InsertHmiGroup<HmiIoItem>>("Add Data Group", ed.section,
                                                                    at.path, std::move(form.name)));
    else
        ed.history.push(std::make_unique<InsertHmiGroup<HmiMemoryItem>>(
            "Add Data Group", ed.section, at.path, std::move(form.name)));
    return true;
}

} // namespace rq

#include "sections/hmidb/HmiDbCommands.h"

namespace rq {

namespace {

const std::string& groupName(HmiDbSection& s, const HmiPlace& at) {
    return at.kind == HmiDbSection::kIoKind ? groupAt<HmiIoItem>(s, at.path).name
                                            : groupAt<HmiMemoryItem>(s, at.path).name;
}

void pushRename(const HmiDbEditor& ed, const char* step, const HmiPlace& at, std::string name) {
    if (at.kind == HmiDbSection::kIoKind)
        ed.history.push(std::make_unique<RenameHmiGroup<HmiIoItem>>(step, ed.section, at.path,
                                                                    std::move(name)));
    else
        ed.history.push(std::make_unique<RenameHmiGroup<HmiMemoryItem>>(step, ed.section, at.path,
                                                                        std::move(name)));
}

} // namespace

bool modifyHmiGroup(const HmiDbEditor& ed, const HmiPlace& at) {
    if (!at.nested())
        return false;
    HmiGroupForm form{groupName(ed.section, at)};
    if (!askHmiGroupForm(ed, form) || form.name.empty() || form.name == groupName(ed.section, at))
        return false;
    pushRename(ed, "Modify Data Group", at, std::move(form.name));
    return true;
}

bool renameHmiGroup(const HmiDbEditor& ed, const HmiPlace& at, const std::string& text) {
    if (!at.nested() || text.empty())
        return false;
    if (auto message = validateHmiGroupForm({text})) {
        ed.sink.showMessage(*message, MessageIcon::Stop);
        return false;
    }
    if (text != groupName(ed.section, at))
        pushRename(ed, "Rename Data Group", at, text);
    return true;
}

} // namespace rq

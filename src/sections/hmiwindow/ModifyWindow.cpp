#include "core/SectionEditor.h"
#include "sections/hmiwindow/HmiWindowCommands.h"
#include "sections/hmiwindow/HmiWindowEdits.h"
#include "sections/hmiwindow/WindowFiles.h"

namespace rq {

namespace {

bool sameWindow(const HmiWindow& a, const HmiWindow& b) {
    return a.name == b.name && a.caption == b.caption && a.filename == b.filename &&
           a.displayOnStartup == b.displayOnStartup && a.enable == b.enable;
}

} // namespace

bool modifyWindow(const HmiWindowEditor& ed, const std::vector<std::size_t>& rows) {
    const auto& windows = ed.section.windows;
    const std::optional<std::size_t> row = firstSelectedRow(rows, windows.size());
    if (!row)
        return false;
    const std::size_t index = *row;
    WindowForm form = windowFormFromRecord(windows[index]);
    std::optional<NewLayoutFile> file;
    const bool ok = askUntilAccepted(
        ed.sink, form, [&](WindowForm& f) { return ed.dialogs.windowDialog(f); },
        [&](const WindowForm& f) -> std::optional<std::string> {
            if (isReservedWindowFileName(f.filename))
                return std::string(windowtext::kReserved);
            if (f.createFile) {
                if (ed.project.projectDirectory.empty())
                    return std::string(windowtext::kSaveFirst);
                std::string message;
                file = makeLayoutFile(ed, windowFileNameWithXml(f.filename), "", &message);
                if (!message.empty())
                    return message;
            }
            return std::nullopt;
        });
    if (!ok)
        return false;
    HmiWindow changed = windowFromForm(form, &windows[index]);
    if (!file && sameWindow(changed, windows[index]))
        return false;
    ed.history.push(std::make_unique<ReplaceWindow>("Modify Window", ed.section, index,
                                                    std::move(changed), std::move(file)));
    return true;
}

} // namespace rq

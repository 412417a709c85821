#include "core/FileUtil.h"
#include "core/HmiDeviceCatalog.h"
#include "core/SectionEditor.h"
#include "sections/hmiwindow/HmiWindowCommands.h"
#include "sections/hmiwindow/HmiWindowEdits.h"
#include "sections/hmiwindow/WindowFiles.h"

namespace rq {

std::optional<NewLayoutFile> makeLayoutFile(const HmiWindowEditor& ed, const std::string& fileName,
                                            const std::string& content, std::string* message) {
    const std::string& dir = ed.project.projectDirectory;
    std::string error;
    switch (createWindowFileIfMissing(dir, fileName, content, &error)) {
    case WindowFileResult::Created:
        return NewLayoutFile(joinPath(dir, fileName), content, ed.sink);
    case WindowFileResult::Exists:
        return std::nullopt;
    case WindowFileResult::Failed:
        break;
    }
    *message = "Cannot create " + joinPath(dir, fileName) + ": " + error;
    return std::nullopt;
}

bool addWindow(const HmiWindowEditor& ed) {
    if (ed.project.projectDirectory.empty()) {
        ed.sink.showMessage(windowtext::kSaveFirst, MessageIcon::Stop);
        return false;
    }
    WindowForm form;
    std::optional<NewLayoutFile> file;
    const bool ok = askUntilAccepted(
        ed.sink, form, [&](WindowForm& f) { return ed.dialogs.windowDialog(f); },
        [&](const WindowForm& f) -> std::optional<std::string> {
            if (isReservedWindowFileName(f.filename))
                return std::string(windowtext::kReserved);
            if (ed.section.findWindow(f.name) >= 0)
                return std::string(windowtext::kWindowExists);
            // The last test: once the file is made, the window is added.
            if (f.createFile) {
                const ScreenSize size = windowScreenSize(ed.project.hmiType);
                std::string message;
                file = makeLayoutFile(ed, windowFileNameWithXml(f.filename),
                                      windowTemplateText(size.width, size.height), &message);
                if (!message.empty())
                    return message;
            }
            return std::nullopt;
        });
    if (!ok)
        return false;
    ed.history.push(std::make_unique<AppendWindow>("Add Window", ed.section,
                                                   windowFromForm(form, nullptr), std::move(file)));
    return true;
}

} // namespace rq

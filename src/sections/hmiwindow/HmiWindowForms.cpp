#include "sections/hmiwindow/HmiWindowForms.h"

#include "core/StorableValue.h"
#include "sections/hmiwindow/WindowFiles.h"

namespace rq {

WindowForm windowFormFromRecord(const HmiWindow& w) {
    WindowForm f;
    f.name = w.name;
    f.caption = w.caption;
    f.filename = w.filename;
    f.createFile = false;
    f.startupShowing = w.displayOnStartup != 0;
    f.disableShowing = w.enable != "1";
    return f;
}

HmiWindow windowFromForm(const WindowForm& form, const HmiWindow* old) {
    const bool keepEnable = old && (old->enable != "1") == form.disableShowing;
    return HmiWindow{form.name, form.caption, windowFileNameWithXml(form.filename),
                     form.startupShowing ? 1 : 0,
                     keepEnable ? old->enable : std::string(form.disableShowing ? "0" : "1")};
}

std::optional<std::string> validateWindowForm(const WindowForm& form) {
    if (form.name.empty() || form.filename.empty())
        return std::string(windowtext::kInputNameAndFile);
    if (auto m = checkStorableValue("Name", form.name))
        return m;
    if (auto m = checkStorableValue("Title", form.caption))
        return m;
    return checkStorableValue("File Name", form.filename);
}

std::string_view windowCell(const HmiWindow& w, int column) {
    switch (column) {
    case 0:
        return w.name;
    case 1:
        return w.caption;
    case 2:
        return w.filename;
    case 3:
        return w.displayOnStartup ? windowtext::kShow : windowtext::kHide;
    case 4:
        return w.enable == "1" ? windowtext::kEnable : windowtext::kDisable;
    default:
        return {};
    }
}

std::string designerCommandLine(const std::string& projectDir, const std::string& fileName) {
    return "RQDev *\"" + projectDir + "\"*" + fileName;
}

} // namespace rq

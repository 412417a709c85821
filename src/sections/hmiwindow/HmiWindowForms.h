#pragma once
// The "Window Setting" dialog's fields as a plain record, the texts of the dialog
// and of the window commands, the list's columns and the check its OK button makes.

#include "sections/hmiwindow/HmiWindowSection.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace rq {

// Texts of the dialog and the commands, exactly as shown.
namespace windowtext {
inline constexpr const char* kCaption = "Window Setting";
inline constexpr const char* kBox = "Window Information";
inline constexpr const char* kNameLabel = "Name:";
inline constexpr const char* kTitleLabel = "Title:";
inline constexpr const char* kFileLabel = "File Name:";
inline constexpr const char* kCreateFile = "Create File Auto";
inline constexpr const char* kStartupShowing = "Startup Showing";
inline constexpr const char* kDisableShowing = "Disable Showing";

inline constexpr const char* kInputNameAndFile = "Please input the window name and file name!";
inline constexpr const char* kSaveFirst =
    "Do not choose project directory, please save project before!";
inline constexpr const char* kReserved =
    "window file name is reserved by HMI, please select other name!";
inline constexpr const char* kWindowExists = "The window already exist!";
inline constexpr const char* kDeleteWindow = "Are you sure to delete current window?";

// The list's flag cells.
inline constexpr const char* kShow = "Show";
inline constexpr const char* kHide = "Hide";
inline constexpr const char* kEnable = "Enable";
inline constexpr const char* kDisable = "Disable";
} // namespace windowtext

struct WindowColumn {
    const char* title;
    int width;
};
inline constexpr std::array<WindowColumn, 5> kWindowColumns = {{
    {"HMI window name", 100},
    {"HMI window title", 100},
    {"File name", 200},
    {"Startup show", 200},
    {"availability", 200},
}};

// "Window Setting".
struct WindowForm {
    std::string name;
    std::string caption;
    std::string filename;
    bool createFile = true; // "Create File Auto"
    bool startupShowing = false;
    bool disableShowing = false;
};

// The dialog filled from a window; "Create File Auto" starts unchecked, so that
// modifying a window creates no file unless asked to.
WindowForm windowFormFromRecord(const HmiWindow& w);
// The window the form describes. The typed file name gets ".xml" when it holds
// "xml" nowhere. `old` is the window being modified (null when adding): an enable
// text other than "1" and "0" that a file held is kept while "Disable Showing"
// still says disabled.
HmiWindow windowFromForm(const WindowForm& form, const HmiWindow* old);

// The first failing check of OK: name and file name are required, then the three
// texts must be storable.
std::optional<std::string> validateWindowForm(const WindowForm& form);

// The text of a list cell (column 0..4).
std::string_view windowCell(const HmiWindow& w, int column);

// The designer's command line for one window: RQDev *"DIR"*FILE.
std::string designerCommandLine(const std::string& projectDir, const std::string& fileName);

} // namespace rq

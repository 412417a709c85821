#pragma once
// The window layout files: names a window's file may not take, the ".xml" rule for
// typed names, and the template a new window's file starts from.

#include <array>
#include <string>
#include <string_view>

namespace rq {

struct HmiDeviceType;

// The section files of a project, which a window's layout file may not be named
// like (the project file itself is not among them).
inline constexpr std::array<const char*, 14> kReservedWindowFileNames = {
    "rtdb.xml",    "param.xml",   "hmidb.xml",   "hmiwindow.xml", "fbd.xml",
    "opcda.xml",   "datalog.xml", "history.xml", "alarm.xml",     "redundancy.xml",
    "modules.xml", "device.xml",  "ladder.xml",  "printer.xml",
};

// Exact, case-sensitive comparison with the reserved names.
bool isReservedWindowFileName(std::string_view fileName);

// A typed file name that holds "xml" nowhere gets ".xml" appended; any other name
// is kept as it is ("main" -> "main.xml", "myxmlscreen" unchanged).
std::string windowFileNameWithXml(std::string_view typed);

// Screen size a new window's layout takes: the HMI type's, or 1024 x 768 without
// an HMI type.
struct ScreenSize {
    int width = 1024;
    int height = 768;
};
ScreenSize windowScreenSize(const HmiDeviceType* hmiType);

// The layout-file template for a screen of width x height, CR LF line ends.
std::string windowTemplateText(int width, int height);

enum class WindowFileResult {
    Created, // the file was written
    Exists,  // a file of that name can be opened; it was left untouched
    Failed,  // the file could not be written (reason in *error)
};

// Creates DIR/FILE with `content` only when no file of that name can be opened.
// The file is written whole or not at all.
WindowFileResult createWindowFileIfMissing(const std::string& projectDirectory,
                                           const std::string& fileName, std::string_view content,
                                           std::string* error);

} // namespace rq

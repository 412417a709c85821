#pragma once
// The thirteen files of a project, in the order in which they are loaded and
// saved. Index 0 is the project file itself.

#include <array>
#include <string_view>

namespace rq {

inline constexpr int kSectionCount = 13;
inline constexpr int kRequiredSections = 4; // indexes 0..3 must load

inline constexpr std::array<const char*, kSectionCount> kSectionFiles = {
    "rqrun.xml",      "rtdb.xml",    "hmidb.xml",   "hmiwindow.xml", "device.xml",
    "param.xml",      "datalog.xml", "history.xml", "alarm.xml",     "modules.xml",
    "redundancy.xml", "fbd.xml",     "printer.xml",
};

// The index of a section file in the table, worked out when compiling: an editor
// names its file instead of writing the number, so the two cannot drift apart. A
// name not in the table does not compile.
consteval int sectionIndexOf(std::string_view file) {
    for (int i = 0; i < kSectionCount; ++i)
        if (std::string_view(kSectionFiles[i]) == file)
            return i;
    throw "not a section file";
}

} // namespace rq

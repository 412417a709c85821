#pragma once
// The thirteen files of a project, in the order in which they are loaded and
// saved. Index 0 is the project file itself.

#include <array>

namespace rq {

inline constexpr int kSectionCount = 13;
inline constexpr int kRequiredSections = 4; // indexes 0..3 must load

inline constexpr std::array<const char*, kSectionCount> kSectionFiles = {
    "rqrun.xml",      "rtdb.xml",    "hmidb.xml",   "hmiwindow.xml", "device.xml",
    "param.xml",      "datalog.xml", "history.xml", "alarm.xml",     "modules.xml",
    "redundancy.xml", "fbd.xml",     "printer.xml",
};

} // namespace rq

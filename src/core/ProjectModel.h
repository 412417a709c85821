#pragma once
// The open project's own fields (the content of rqrun.xml), its directory and
// its modified flag.

#include <string>

namespace rq {

struct HmiDeviceType;

struct ProjectModel {
    std::string name;
    std::string description;
    std::string downloadPassword;           // plain text in memory; empty = no password
    const HmiDeviceType* hmiType = nullptr; // an entry of the HMI device catalog
    int currentSection = 0;
    std::string slaveIp;
    std::string defines;
    std::string libs;
    std::string include;
    std::string libs_linux;
    std::string projectDirectory; // no trailing separator; empty until created/opened
    bool modified = false;
};

} // namespace rq

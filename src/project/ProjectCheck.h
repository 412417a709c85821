#pragma once
// What would keep an opened project from reopening or from working on the device,
// or would be lost by the next save: optional files that could not be read, records
// that the readers left out under their reading rules, values written unescaped that hold '"', '<'
// or '&', references to real-time data that no database holds, duplicate names that the editors
// would refuse, and an HMI type that the catalog does not know.

#include <string>
#include <vector>

namespace rq {

class Project;
class RtdbSection;

// `systemDatabase` may be null (no system database beside the program).
std::vector<std::string> checkProject(const Project& project, const RtdbSection* systemDatabase);

} // namespace rq

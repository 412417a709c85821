#pragma once
// The project file rqrun.xml.

#include "core/ProjectModel.h"

#include <string>

namespace rq {

class HmiDeviceCatalog;

// Appends the five lines of rqrun.xml. The password is scrambled anew each time.
void writeProjectFile(const ProjectModel& project, std::string& out);

// Reads rqrun.xml into the project's fields (see the reading rules); false with a
// reason in *error when it does not parse or its root is not rqrun.
bool readProjectFile(const std::string& path, ProjectModel& project,
                     const HmiDeviceCatalog& catalog, std::string* error);

} // namespace rq

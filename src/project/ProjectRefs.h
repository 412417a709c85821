#pragma once
// The sections of a project that refer to real-time data, for the reference index.

#include "project/Project.h"
#include "refs/RefIndex.h"

namespace rq {

inline RefSections refSectionsOf(Project& p) {
    return {&p.hmidb, &p.device, &p.param, &p.datalog, &p.history, &p.alarm, &p.fbd};
}

// For reading only: an index built from these is looked at, never passed to
// renameUses().
inline RefSections refSectionsOf(const Project& p) {
    return refSectionsOf(const_cast<Project&>(p));
}

} // namespace rq

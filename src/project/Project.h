#pragma once
// A whole project: the project document with every section of the table.

#include "core/Catalogs.h"
#include "core/MessageSink.h"
#include "core/ProjectDocument.h"
#include "project/ProjectReferences.h"
#include "sections/alarm/AlarmSection.h"
#include "sections/datalog/DataLogSection.h"
#include "sections/device/DeviceSection.h"
#include "sections/fbd/FbdSection.h"
#include "sections/history/HistorySection.h"
#include "sections/hmidb/HmiDbSection.h"
#include "sections/hmiwindow/HmiWindowSection.h"
#include "sections/modules/ModulesSection.h"
#include "sections/param/ParamSection.h"
#include "sections/printer/PrinterSection.h"
#include "sections/redundancy/RedundancySection.h"
#include "sections/rtdb/RtdbSection.h"

namespace rq {

class Project {
public:
    Project(const Catalogs& catalogs, MessageSink& sink);
    Project(const Project&) = delete;
    Project& operator=(const Project&) = delete;

    RtdbSection rtdb;
    HmiDbSection hmidb;
    HmiWindowSection hmiwindow;
    DeviceSection device;
    ParamSection param;
    DataLogSection datalog;
    HistorySection history;
    AlarmSection alarm;
    ModulesSection modules;
    RedundancySection redundancy;
    FbdSection fbd;
    PrinterSection printer;

    ProjectDocument doc;
    // The uses of real-time data, built again after every change.
    ProjectReferences references{*this};
    ProjectModel& model() { return doc.model(); }
    const ProjectModel& model() const { return doc.model(); }
};

} // namespace rq

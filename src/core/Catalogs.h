#pragma once
// The catalogs kept beside the program, loaded once at start-up and owned by the
// application for the whole run.

#include "core/HmiDeviceCatalog.h"
#include "core/IoDriverCatalog.h"

#include <string>

namespace rq {

struct Catalogs {
    std::string programDir;
    HmiDeviceCatalog hmi;
    IoDriverCatalog io;

    // Loads hmidevice.xml then iodevdrv.xml from the directory; a missing file
    // leaves that catalog empty, without a message.
    void loadFrom(const std::string& dir);
    std::string systemDatabasePath() const; // conffile/rtdb.xml
};

} // namespace rq

#include "core/Catalogs.h"

#include "core/FileUtil.h"

namespace rq {

void Catalogs::loadFrom(const std::string& dir) {
    programDir = dir;
    hmi.clear();
    io.clear();
    hmi.LoadHmiDeviceCatalog(joinPath(dir, "hmidevice.xml"));
    io.load(joinPath(dir, "iodevdrv.xml"));
}

std::string Catalogs::systemDatabasePath() const {
    return joinPath(joinPath(programDir, "conffile"), "rtdb.xml");
}

} // namespace rq

#include "project/Project.h"

namespace rq {

Project::Project(const Catalogs& catalogs, MessageSink& sink)
    : doc(catalogs, sink,
          {&rtdb, &hmidb, &hmiwindow, &device, &param, &datalog, &history, &alarm, &modules,
           &redundancy, &fbd, &printer}) {}

} // namespace rq

#include "sections/rtdb/RtdbCommands.h"

namespace rq {

RtdbEditResult addDatabase(const RtdbEditor& ed) {
    DatabaseForm form;
    if (!askDatabaseForm(ed, form) || form.name.empty())
        return {};
    if (ed.rtdb.findDatabase(form.name)) {
        ed.sink.showMessage(rtdbtext::kDatabaseExists, MessageIcon::Stop);
        return {};
    }
    DataNode& db = ed.rtdb.root().addDatabase(std::move(form.name), form.sync);
    return {true, &db};
}

} // namespace rq

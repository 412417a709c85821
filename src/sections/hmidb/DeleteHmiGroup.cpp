#include "core/SectionEditor.h"
#include "sections/hmidb/HmiDbCommands.h"

namespace rq {

bool deleteHmiGroup(const HmiDbEditor& ed, const HmiPlace& at) {
    if (!at.nested())
        return false;
    if (!confirmDelete(ed.sink, hmidbtext::kDeleteGroup))
        return false;
    if (at.kind == HmiDbSection::kIoKind)
        ed.history.push(
            std::make_unique<RemoveHmiGroup<HmiIoItem>>("Delete Data Group", ed.section, at.path));
    else
        ed.history.push(std::make_unique<RemoveHmiGroup<HmiMemoryItem>>("Delete Data Group",
                                                                        ed.section, at.path));
    return true;
}

} // namespace rq

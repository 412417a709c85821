#include "core/SectionEditor.h"
#include "sections/fbd/FbdCommands.h"
#include "sections/fbd/FbdEdits.h"

namespace rq {

bool deleteBlock(const FbdEditor& ed, std::size_t index) {
    if (index >= ed.section.blocks().size())
        return false;
    if (!confirmDelete(ed.sink, fbdtext::kDeleteBlock))
        return false;
    ed.history.push(std::make_unique<RemoveBlock>(ed.section, index));
    return true;
}

} // namespace rq

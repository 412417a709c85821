#include "core/SectionEditor.h"
#include "sections/fbd/FbdCommands.h"
#include "sections/fbd/FbdEdits.h"

namespace rq {

bool modifyBlockParam(const FbdEditor& ed, std::size_t block,
                      const std::vector<std::size_t>& rows) {
    if (block >= ed.section.blocks().size())
        return false;
    const FbdItem& item = ed.section.blocks()[block];
    std::optional<std::size_t> row = firstSelectedRow(rows, fbdParamRows(item));
    if (!row)
        return false;
    FbdParamForm form = fbdParamFormFromRow(item, *row);
    if (!ed.dialogs.paramDialog(form))
        return false;
    DataRef ref = fbdRowReference(*row, form);
    // Only a change of what the file holds is a step.
    FbdItem changed;
    changed.enable = ref;
    const DataRef now = fbdRowWritten(item, *row);
    const DataRef after = *row == 0 ? fbdRowWritten(changed, 0) : ref;
    if (after == now)
        return false;
    ed.history.push(
        std::make_unique<ReplaceBlockReference>(ed.section, block, *row, std::move(ref)));
    return true;
}

} // namespace rq

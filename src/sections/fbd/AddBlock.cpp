#include "core/SectionEditor.h"
#include "sections/fbd/FbdCommands.h"
#include "sections/fbd/FbdEdits.h"

namespace rq {

std::optional<std::size_t> addBlock(const FbdEditor& ed) {
    FbdBlockForm form;
    const bool ok = askUntilAccepted(
        ed.sink, form, [&](FbdBlockForm& f) { return ed.dialogs.blockDialog(f); },
        [&](const FbdBlockForm& f) { return ed.section.duplicateMessage(f.name); });
    if (!ok)
        return std::nullopt;
    ed.history.push(std::make_unique<AppendBlock>(ed.section, fbdItemFromForm(form)));
    return ed.section.blocks().size() - 1;
}

} // namespace rq

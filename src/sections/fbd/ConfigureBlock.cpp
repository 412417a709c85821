#include "core/SectionEditor.h"
#include "sections/fbd/FbdCommands.h"
#include "sections/fbd/FbdEdits.h"

namespace rq {

bool configureBlock(const FbdEditor& ed, std::size_t index) {
    const auto& blocks = ed.section.blocks();
    if (index >= blocks.size())
        return false;
    FbdBlockForm form = fbdBlockFormFromItem(blocks[index]);
    const bool ok = askUntilAccepted(
        ed.sink, form, [&](FbdBlockForm& f) { return ed.dialogs.blockDialog(f); },
        [&](const FbdBlockForm& f) -> std::optional<std::string> {
            for (std::size_t i = 0; i < blocks.size(); ++i)
                if (i != index && blocks[i].name == f.name)
                    return std::string(fbdtext::kBlockExists);
            return std::nullopt;
        });
    if (!ok)
        return false;
    const FbdItem& item = blocks[index];
    std::string memberKind = fbdMemberKindFromForm(item, form);
    if (form.name == item.name && memberKind == item.memberKind)
        return false;
    ed.history.push(
        std::make_unique<ChangeBlockSettings>(ed.section, index, form.name, std::move(memberKind)));
    return true;
}

} // namespace rq

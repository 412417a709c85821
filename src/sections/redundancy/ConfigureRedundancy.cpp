#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "sections/redundancy/RedundancyEditor.h"

namespace rq {

bool configureRedundancy(RedundancySection& s, RedundancyDialogHost& dialogs,
                         UndoHistory& history) {
    RedundancyForm form = redundancyFormFromConfig(s.config());
    if (!dialogs.configDialog(form))
        return false;
    RedundancyConfig changed = s.config();
    storeRedundancyForm(form, changed);
    if (changed == s.config())
        return false;
    history.push(std::make_unique<ReplaceRedundancyConfig>(s, std::move(changed)));
    return true;
}

int RedundancySectionEditor::treeMenu(const void*) const {
    return menuid::kRedundancyTree;
}

EditorList RedundancySectionEditor::list(const void*) const {
    EditorList l;
    l.rows = [] { return std::size_t{0}; };
    l.cell = [](std::size_t, int) { return std::string_view(); };
    return l;
}

EditorResult RedundancySectionEditor::run(int command, const EditorSelection&) {
    if (command != cmd::kRedundantConfiguration || !configureRedundancy(s_, *dialogs_, history_))
        return EditorResult::none();
    return EditorResult::rows();
}

} // namespace rq

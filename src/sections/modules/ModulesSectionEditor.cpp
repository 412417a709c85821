#include "sections/modules/ModulesSectionEditor.h"

#include "core/CommandIds.h"
#include "core/MenuIds.h"

namespace rq {

int ModulesSectionEditor::listMenu(const void*) const {
    return menuid::kModulesList;
}

EditorList ModulesSectionEditor::list(const void*) const {
    EditorList l;
    // The view compares kinds across sections: one of its own, so that its
    // columns are set when it follows another section's list.
    l.kind = 900;
    for (const char* title : kModuleColumns)
        l.columns.push_back(EditorColumn{title, kModuleColumnWidth});
    const ModulesSection* s = &section_;
    l.rows = [s] { return s->modules().size(); };
    l.cell = [s](std::size_t row, int column) { return moduleCell(s->modules()[row], column); };
    return l;
}

EditorKeys ModulesSectionEditor::keys(const void*) const {
    return EditorKeys{cmd::kAddModule, cmd::kModifyModule, cmd::kDeleteModule};
}

EditorResult ModulesSectionEditor::run(int command, const EditorSelection& sel) {
    const ModulesEditor ed{section_, *dialogs_, sink_, history_};
    bool changed = false;
    switch (command) {
    case cmd::kAddModule:
        changed = addModule(ed);
        break;
    case cmd::kModifyModule:
        changed = modifyModule(ed, sel.rows);
        break;
    case cmd::kDeleteModule:
        changed = deleteModules(ed, sel.rows);
        break;
    default:
        break;
    }
    return changed ? EditorResult::rows() : EditorResult::none();
}

} // namespace rq

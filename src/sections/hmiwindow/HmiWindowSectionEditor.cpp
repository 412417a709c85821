#include "sections/hmiwindow/HmiWindowSectionEditor.h"

#include "core/CommandIds.h"
#include "core/MenuIds.h"

namespace rq {

int HmiWindowSectionEditor::listMenu(const void*) const {
    return menuid::kWindowsList;
}

EditorList HmiWindowSectionEditor::list(const void*) const {
    EditorList l;
    // The view compares kinds across sections: one of its own, so that its
    // columns are set when it follows another section's list.
    l.kind = 300;
    for (const WindowColumn& c : kWindowColumns)
        l.columns.push_back(EditorColumn{c.title, c.width});
    const HmiWindowSection* s = &section_;
    l.rows = [s] { return s->windows.size(); };
    l.cell = [s](std::size_t row, int column) { return windowCell(s->windows[row], column); };
    return l;
}

EditorKeys HmiWindowSectionEditor::keys(const void*) const {
    return EditorKeys{cmd::kNewWindow, cmd::kModifyWindow, cmd::kDeleteWindow};
}

EditorResult HmiWindowSectionEditor::run(int command, const EditorSelection& sel) {
    const HmiWindowEditor ed{section_, *dialogs_, sink_,      history_,
                             project_, launcher_, programDir_};
    bool changed = false;
    switch (command) {
    case cmd::kNewWindow:
        changed = addWindow(ed);
        break;
    case cmd::kModifyWindow:
        changed = modifyWindow(ed, sel.rows);
        break;
    case cmd::kDeleteWindow:
        changed = deleteWindows(ed, sel.rows);
        break;
    case cmd::kEditWindow:
        editWindows(ed, sel.rows);
        break;
    default:
        break;
    }
    return changed ? EditorResult::rows() : EditorResult::none();
}

} // namespace rq

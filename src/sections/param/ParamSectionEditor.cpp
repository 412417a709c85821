#include "sections/param/ParamSectionEditor.h"

#include "core/CommandIds.h"
#include "core/MenuIds.h"

namespace rq {

int ParamSectionEditor::listMenu(const void*) const {
    return menuid::kParamList;
}

EditorList ParamSectionEditor::list(const void*) const {
    EditorList l;
    // The view compares kinds across sections: one of its own, so that its
    // columns are set when it follows another section's list.
    l.kind = 500;
    for (const char* title : kParamColumns)
        l.columns.push_back(EditorColumn{title, kParamColumnWidth});
    const ParamSection* s = &section_;
    l.rows = [s] { return s->items.size(); };
    l.cell = [s](std::size_t row, int column) { return paramCell(s->items[row], column); };
    return l;
}

EditorKeys ParamSectionEditor::keys(const void*) const {
    return EditorKeys{cmd::kNewParameter, cmd::kModifyParameter, cmd::kDeleteParameter};
}

EditorResult ParamSectionEditor::run(int command, const EditorSelection& sel) {
    const ParamEditor ed{section_, *dialogs_, sink_, history_};
    bool changed = false;
    switch (command) {
    case cmd::kNewParameter:
        changed = addParam(ed);
        break;
    case cmd::kModifyParameter:
        changed = modifyParam(ed, sel.rows);
        break;
    case cmd::kDeleteParameter:
        changed = deleteParams(ed, sel.rows);
        break;
    default:
        break;
    }
    return changed ? EditorResult::rows() : EditorResult::none();
}

} // namespace rq

#include "sections/alarm/AlarmEditor.h"

#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "core/NodeImageIds.h"

namespace rq {

std::vector<EditorNode> AlarmSectionEditor::nodes() const {
    std::vector<EditorNode> out;
    for (AlarmGroup& g : s_.groups())
        out.push_back(EditorNode{&g, g.name, image::kAlarm, {}});
    return out;
}

int AlarmSectionEditor::treeMenu(const void*) const {
    return menuid::kAlarmTree;
}

int AlarmSectionEditor::listMenu(const void* node) const {
    return alarmGroupIndex(s_, node) ? menuid::kAlarmList : 0;
}

EditorList AlarmSectionEditor::list(const void* node) const {
    EditorList l;
    std::optional<std::size_t> g = alarmGroupIndex(s_, node);
    if (!g) { // the section's own node lists nothing
        l.kind = 801;
        l.rows = [] { return std::size_t{0}; };
        l.cell = [](std::size_t, int) { return std::string_view(); };
        return l;
    }
    // A kind of its own: the columns are set when it follows another list.
    l.kind = 800;
    for (const char* title : kAlarmColumns)
        l.columns.push_back(EditorColumn{title, kAlarmColumnWidth});
    const AlarmGroup* group = &s_.groups()[*g];
    l.rows = [group] { return group->data.size(); };
    l.cell = [group](std::size_t row, int column) { return alarmCell(group->data[row], column); };
    return l;
}

EditorKeys AlarmSectionEditor::keys(const void* node) const {
    if (!alarmGroupIndex(s_, node))
        return {};
    return EditorKeys{cmd::kAddAlarmData, cmd::kModifyAlarmData, cmd::kDeleteAlarmData};
}

bool AlarmSectionEditor::canRename(const void* node) const {
    return alarmGroupIndex(s_, node).has_value();
}

bool AlarmSectionEditor::rename(void* node, const std::string& text) {
    std::optional<std::size_t> g = alarmGroupIndex(s_, node);
    return g && renameAlarmGroupLabel(editor(), *g, text);
}

bool AlarmSectionEditor::handles(int command) const {
    switch (command) {
    case cmd::kAddAlarmGroup:
    case cmd::kDeleteAlarmGroup:
    case cmd::kModifyAlarmGroup:
    case cmd::kAlarmConfiguration:
    case cmd::kAddAlarmData:
    case cmd::kDeleteAlarmData:
    case cmd::kModifyAlarmData:
        return true;
    default:
        return false;
    }
}

EditorResult AlarmSectionEditor::run(int command, const EditorSelection& sel) {
    const AlarmEditor ed = editor();
    std::optional<std::size_t> g = alarmGroupIndex(s_, sel.node); // none: the section's node
    switch (command) {
    case cmd::kAlarmConfiguration:
        return configureAlarmBuffer(ed) ? EditorResult::rows() : EditorResult::none();
    case cmd::kAddAlarmGroup:
        if (std::optional<std::size_t> added = addAlarmGroup(ed))
            return EditorResult::nodes(&s_.groups()[*added]);
        return EditorResult::none();
    case cmd::kModifyAlarmGroup:
        if (g && modifyAlarmGroup(ed, *g))
            return EditorResult::nodes(&s_.groups()[*g]);
        return EditorResult::none();
    case cmd::kDeleteAlarmGroup:
        return g && deleteAlarmGroup(ed, *g) ? EditorResult::nodes(nullptr) : EditorResult::none();
    case cmd::kAddAlarmData:
        return g && addAlarmData(ed, *g) ? EditorResult::rows() : EditorResult::none();
    case cmd::kModifyAlarmData:
        return g && modifyAlarmData(ed, *g, sel.rows) ? EditorResult::rows() : EditorResult::none();
    case cmd::kDeleteAlarmData:
        return g && deleteAlarmData(ed, *g, sel.rows) ? EditorResult::rows() : EditorResult::none();
    default:
        return EditorResult::none();
    }
}

} // namespace rq

#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "sections/alarm/AlarmEditor.h"

namespace rq {

bool configureAlarmBuffer(AlarmSection& s, AlarmDialogHost& dialogs, UndoHistory& history) {
    AlarmConfigForm form{s.logSize()};
    if (!dialogs.configDialog(form) || form.bufferSize == s.logSize())
        return false;
    history.push(std::make_unique<ChangeAlarmLogSize>(s, std::move(form.bufferSize)));
    return true;
}

int AlarmSectionEditor::treeMenu(const void*) const {
    return menuid::kAlarmTree;
}

EditorList AlarmSectionEditor::list(const void*) const {
    EditorList l;
    l.rows = [] { return std::size_t{0}; };
    l.cell = [](std::size_t, int) { return std::string_view(); };
    return l;
}

bool AlarmSectionEditor::handles(int command) const {
    return command == cmd::kAlarmConfiguration;
}

EditorResult AlarmSectionEditor::run(int command, const EditorSelection&) {
    if (command != cmd::kAlarmConfiguration || !configureAlarmBuffer(s_, *dialogs_, history_))
        return EditorResult::none();
    return EditorResult::rows();
}

} // namespace rq

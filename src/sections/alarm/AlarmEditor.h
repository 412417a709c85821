#pragma once
// The alarm editor. Built so far: "Alarm Configuration" (the alarm buffer size),
// command 32856, from the alarm node's menu and from the Configuration menu; OK
// changes the size as one step of the project's history. The group and data
// commands of the section stay disabled until they are built.

#include "core/EditCommand.h"
#include "core/SectionEditor.h"
#include "core/UndoHistory.h"
#include "sections/alarm/AlarmForms.h"
#include "sections/alarm/AlarmSection.h"

namespace rq {

inline constexpr int kAlarmSectionIndex = 8; // alarm.xml in the section table

// The buffer size replaced by another (undo puts the old one back).
class ChangeAlarmLogSize : public EditCommand {
public:
    ChangeAlarmLogSize(AlarmSection& s, std::string size);
    void redo() override;
    void undo() override;

private:
    AlarmSection& s_;
    std::string other_; // the value not in the section now
};

// The dialogs as the commands see them: modal, false on Cancel; on OK the form's
// validator runs and the dialog stays open while it refuses.
class AlarmDialogHost {
public:
    virtual ~AlarmDialogHost() = default;
    virtual bool configDialog(AlarmConfigForm& form) = 0;
};

// Opens "Alarm Configuration" on the stored size; true when OK changed it.
bool configureAlarmBuffer(AlarmSection& s, AlarmDialogHost& dialogs, UndoHistory& history);

class AlarmSectionEditor : public SectionEditor {
public:
    AlarmSectionEditor(AlarmSection& s, AlarmDialogHost& dialogs, UndoHistory& history)
        : s_(s), dialogs_(&dialogs), history_(history) {}

    std::vector<EditorNode> nodes() const override { return {}; }
    int treeMenu(const void*) const override;
    int listMenu(const void*) const override { return 0; }
    EditorList list(const void*) const override;
    EditorKeys keys(const void*) const override { return {}; }
    bool handles(int command) const override;
    EditorResult run(int command, const EditorSelection& selection) override;

private:
    AlarmSection& s_;
    AlarmDialogHost* dialogs_;
    UndoHistory& history_;
};

} // namespace rq

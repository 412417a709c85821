#pragma once
// The alarms as a section editor of the shared base: the alarm groups are the
// nodes below "alarm  configuration" (renamed by editing their label), the alarm
// data of the selected group the rows of the list. The tree menu adds, deletes
// and modifies groups and opens "Alarm Configuration" (32856, also in the
// Configuration menu); the list menu adds, deletes and modifies alarm data.

#include "core/SectionEditor.h"
#include "sections/alarm/AlarmCommands.h"

namespace rq {

class AlarmSectionEditor : public SectionEditor {
public:
    AlarmSectionEditor(AlarmSection& s, AlarmDialogHost& dialogs, MessageSink& sink,
                       UndoHistory& history)
        : s_(s), dialogs_(&dialogs), sink_(sink), history_(history) {}

    // The dialogs (tests replace them with a scripted host).
    void setDialogHost(AlarmDialogHost* dialogs) { dialogs_ = dialogs; }

    std::vector<EditorNode> nodes() const override;
    int treeMenu(const void* node) const override;
    int listMenu(const void* node) const override;
    EditorList list(const void* node) const override;
    EditorKeys keys(const void* node) const override;
    bool canRename(const void* node) const override;
    bool rename(void* node, const std::string& text) override;
    bool handles(int command) const override;
    EditorResult run(int command, const EditorSelection& selection) override;

private:
    AlarmEditor editor() const { return AlarmEditor{s_, *dialogs_, sink_, history_}; }

    AlarmSection& s_;
    AlarmDialogHost* dialogs_;
    MessageSink& sink_;
    UndoHistory& history_;
};

} // namespace rq

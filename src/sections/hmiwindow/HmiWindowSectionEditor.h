#pragma once
// The HMI windows as a section editor of the shared base: no nodes below
// "windows", whose list shows the windows of hmiwindow.xml; the list's menu adds,
// deletes and modifies them and starts the window designer on them.

#include "core/SectionEditor.h"
#include "sections/hmiwindow/HmiWindowCommands.h"

namespace rq {

class HmiWindowSectionEditor : public SectionEditor {
public:
    HmiWindowSectionEditor(HmiWindowSection& section, WindowDialogHost& dialogs, MessageSink& sink,
                           UndoHistory& history, const ProjectModel& project,
                           ProgramLauncher& launcher, std::string programDir)
        : section_(section), dialogs_(&dialogs), sink_(sink), history_(history), project_(project),
          launcher_(launcher), programDir_(std::move(programDir)) {}

    void setDialogHost(WindowDialogHost* dialogs) { dialogs_ = dialogs; }

    std::vector<EditorNode> nodes() const override { return {}; }
    int treeMenu(const void*) const override { return 0; }
    int listMenu(const void* node) const override;
    EditorList list(const void* node) const override;
    EditorKeys keys(const void* node) const override;
    EditorResult run(int command, const EditorSelection& selection) override;

private:
    HmiWindowSection& section_;
    WindowDialogHost* dialogs_;
    MessageSink& sink_;
    UndoHistory& history_;
    const ProjectModel& project_;
    ProgramLauncher& launcher_;
    std::string programDir_;
};

} // namespace rq

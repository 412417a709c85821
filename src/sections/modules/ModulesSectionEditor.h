#pragma once
// The user modules as a section editor of the shared base: no nodes below
// "module  configuration", whose list shows the modules of modules.xml in five
// columns; the list's menu adds, deletes and modifies them.

#include "core/SectionEditor.h"
#include "sections/modules/ModulesCommands.h"

namespace rq {

class ModulesSectionEditor : public SectionEditor {
public:
    ModulesSectionEditor(ModulesSection& section, ModuleDialogHost& dialogs, MessageSink& sink,
                         UndoHistory& history)
        : section_(section), dialogs_(&dialogs), sink_(sink), history_(history) {}

    void setDialogHost(ModuleDialogHost* dialogs) { dialogs_ = dialogs; }

    std::vector<EditorNode> nodes() const override { return {}; }
    int treeMenu(const void*) const override { return 0; }
    int listMenu(const void* node) const override;
    EditorList list(const void* node) const override;
    EditorKeys keys(const void* node) const override;
    EditorResult run(int command, const EditorSelection& selection) override;

private:
    ModulesSection& section_;
    ModuleDialogHost* dialogs_;
    MessageSink& sink_;
    UndoHistory& history_;
};

} // namespace rq

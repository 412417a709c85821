#pragma once
// The parameters as a section editor of the shared base: no nodes below
// "Parameter", whose list shows the records of param.xml; the list's menu adds,
// deletes and modifies them.

#include "core/SectionEditor.h"
#include "sections/param/ParamCommands.h"

namespace rq {

class ParamSectionEditor : public SectionEditor {
public:
    ParamSectionEditor(ParamSection& section, ParamDialogHost& dialogs, MessageSink& sink,
                       UndoHistory& history)
        : section_(section), dialogs_(&dialogs), sink_(sink), history_(history) {}

    void setDialogHost(ParamDialogHost* dialogs) { dialogs_ = dialogs; }

    std::vector<EditorNode> nodes() const override { return {}; }
    int treeMenu(const void*) const override { return 0; }
    int listMenu(const void* node) const override;
    EditorList list(const void* node) const override;
    EditorKeys keys(const void* node) const override;
    EditorResult run(int command, const EditorSelection& selection) override;

private:
    ParamSection& section_;
    ParamDialogHost* dialogs_;
    MessageSink& sink_;
    UndoHistory& history_;
};

} // namespace rq

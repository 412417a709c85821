#pragma once
// The function blocks as a section editor of the shared base: one node per block
// below "Function block", whose tree menu adds, deletes and configures blocks; the
// list of a block shows its enabling parameter and its bindings, each modified in
// "FBD Parameter Setting". The HMI type gates the tree menu's commands (the shell
// checks it before a command reaches the editor).

#include "core/SectionEditor.h"
#include "sections/fbd/FbdCommands.h"

namespace rq {

class FbdSectionEditor : public SectionEditor {
public:
    FbdSectionEditor(FbdSection& section, FbdDialogHost& dialogs, MessageSink& sink,
                     UndoHistory& history)
        : section_(section), dialogs_(&dialogs), sink_(sink), history_(history) {}

    void setDialogHost(FbdDialogHost* dialogs) { dialogs_ = dialogs; }

    std::vector<EditorNode> nodes() const override;
    int treeMenu(const void* node) const override;
    int listMenu(const void* node) const override;
    EditorList list(const void* node) const override;
    EditorKeys keys(const void* node) const override;
    EditorResult run(int command, const EditorSelection& selection) override;

private:
    // The position of the block a node stands for; nothing for the fixed node or a
    // node whose block is gone.
    std::optional<std::size_t> place(const void* key) const;

    FbdSection& section_;
    FbdDialogHost* dialogs_;
    MessageSink& sink_;
    UndoHistory& history_;
};

} // namespace rq

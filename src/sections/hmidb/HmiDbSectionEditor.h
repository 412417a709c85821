#pragma once
// The HMI database as a section editor of the shared base: the two fixed groups
// "Real-time related data" and "custom data" as nodes below "Window database",
// their nested groups below them, the items of the selected group as list rows in
// the layout of its fixed group, and the commands of the node's two menus.

#include "core/SectionEditor.h"
#include "sections/hmidb/HmiDbCommands.h"

namespace rq {

class HmiDbSectionEditor : public SectionEditor {
public:
    HmiDbSectionEditor(HmiDbSection& section, HmiDbDialogHost& dialogs, MessageSink& sink,
                       UndoHistory& history)
        : section_(section), dialogs_(&dialogs), sink_(sink), history_(history) {}

    // The dialogs (tests replace them with a scripted host).
    void setDialogHost(HmiDbDialogHost* dialogs) { dialogs_ = dialogs; }

    std::vector<EditorNode> nodes() const override;
    std::vector<EditorNode> fixedNodes() const override;
    int treeMenu(const void* node) const override;
    int listMenu(const void* node) const override;
    EditorList list(const void* node) const override;
    EditorKeys keys(const void* node) const override;
    bool canRename(const void* node) const override;
    bool rename(void* node, const std::string& text) override;
    bool handles(int command) const override;
    EditorResult run(int command, const EditorSelection& selection) override;

    // Where the node of a key lies (kind 0 for the section's own node or a key
    // that no node has), and the key of a place.
    HmiPlace place(const void* key) const;
    void* key(const HmiPlace& at) const;

private:
    HmiDbEditor editor() const { return HmiDbEditor{section_, *dialogs_, sink_, history_}; }

    HmiDbSection& section_;
    HmiDbDialogHost* dialogs_;
    MessageSink& sink_;
    UndoHistory& history_;
};

} // namespace rq

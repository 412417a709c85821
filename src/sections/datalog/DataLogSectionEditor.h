#pragma once
// The data logs as a section editor of the shared base: each log a node below
// "Real-time data record", the variables of a log of chosen variables the rows of
// its list, the commands of the section's two menus.

#include "core/SectionEditor.h"
#include "sections/datalog/DataLogCommands.h"

namespace rq {

class DataLogSectionEditor : public SectionEditor {
public:
    DataLogSectionEditor(DataLogSection& section, DataLogDialogHost& dialogs, MessageSink& sink,
                         UndoHistory& history)
        : section_(section), dialogs_(&dialogs), sink_(sink), history_(history) {}

    // The dialogs (tests replace them with a scripted host).
    void setDialogHost(DataLogDialogHost* dialogs) { dialogs_ = dialogs; }

    std::vector<EditorNode> nodes() const override;
    int treeMenu(const void* node) const override;
    int listMenu(const void* node) const override;
    EditorList list(const void* node) const override;
    EditorKeys keys(const void* node) const override;
    bool canRename(const void* node) const override;
    bool rename(void* node, const std::string& text) override;
    EditorResult run(int command, const EditorSelection& selection) override;

private:
    DataLogEditor editor() const { return DataLogEditor{section_, *dialogs_, sink_, history_}; }
    // The position of the log a node stands for, -1 for the section's node.
    int indexOf(const void* key) const;
    void* keyOf(int index) const;

    DataLogSection& section_;
    DataLogDialogHost* dialogs_;
    MessageSink& sink_;
    UndoHistory& history_;
};

} // namespace rq

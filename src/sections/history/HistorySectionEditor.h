#pragma once
// The history records as a section editor of the shared base: one node per
// history record below "History data record", in file order; the variables of
// the selected record as the list's rows.

#include "core/SectionEditor.h"
#include "sections/history/HistoryCommands.h"

namespace rq {

class HistorySectionEditor : public SectionEditor {
public:
    HistorySectionEditor(HistorySection& section, HistoryDialogHost& dialogs, MessageSink& sink,
                         UndoHistory& history)
        : section_(section), dialogs_(&dialogs), sink_(sink), history_(history) {}

    void setDialogHost(HistoryDialogHost* dialogs) { dialogs_ = dialogs; }

    // The record of a node's key, -1 for the section's node; and back.
    int recordOf(const void* key) const;
    void* key(int record) const;

    std::vector<EditorNode> nodes() const override;
    int treeMenu(const void* node) const override;
    int listMenu(const void* node) const override;
    EditorList list(const void* node) const override;
    EditorKeys keys(const void* node) const override;
    bool canRename(const void* node) const override;
    bool rename(void* node, const std::string& text) override;
    EditorResult run(int command, const EditorSelection& selection) override;

private:
    HistoryEditor editor() const { return HistoryEditor{section_, *dialogs_, sink_, history_}; }

    HistorySection& section_;
    HistoryDialogHost* dialogs_;
    MessageSink& sink_;
    UndoHistory& history_;
};

} // namespace rq

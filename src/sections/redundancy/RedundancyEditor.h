#pragma once
// The redundancy editor: the one dialog "Redundant Configuration", opened from the
// section's node and from the Configuration menu (command 32863); OK replaces the
// configuration as one step of the project's history.

#include "core/EditCommand.h"
#include "core/SectionEditor.h"
#include "core/SectionTable.h"
#include "core/UndoHistory.h"
#include "sections/redundancy/RedundancyForms.h"

namespace rq {

inline constexpr int kRedundancySectionIndex = sectionIndexOf("redundancy.xml");

// The configuration replaced by another (undo puts the old one back).
class ReplaceRedundancyConfig : public EditCommand {
public:
    ReplaceRedundancyConfig(RedundancySection& s, RedundancyConfig config);
    void redo() override;
    void undo() override;

private:
    RedundancySection& s_;
    RedundancyConfig other_; // the value not in the section now
};

// The dialog as the command sees it: modal, false on Cancel; on OK it runs
// validateRedundancyForm and stays open while that refuses.
class RedundancyDialogHost {
public:
    virtual ~RedundancyDialogHost() = default;
    virtual bool configDialog(RedundancyForm& form) = 0;
};

// Opens the dialog on the section's values; true when OK changed them (one step).
bool configureRedundancy(RedundancySection& s, RedundancyDialogHost& dialogs, UndoHistory& history);

class RedundancySectionEditor : public SectionEditor {
public:
    RedundancySectionEditor(RedundancySection& s, RedundancyDialogHost& dialogs,
                            UndoHistory& history)
        : s_(s), dialogs_(&dialogs), history_(history) {}
    void setDialogHost(RedundancyDialogHost* dialogs) { dialogs_ = dialogs; }

    std::vector<EditorNode> nodes() const override { return {}; }
    int treeMenu(const void* node) const override;
    int listMenu(const void*) const override { return 0; }
    EditorList list(const void*) const override;
    EditorKeys keys(const void*) const override { return {}; }
    EditorResult run(int command, const EditorSelection& selection) override;

private:
    RedundancySection& s_;
    RedundancyDialogHost* dialogs_;
    UndoHistory& history_;
};

} // namespace rq

#pragma once
// The real-time database as a section editor of the shared base: databases and
// data groups as nodes, their items as list rows, the commands of its two menus.

#include "core/SectionEditor.h"
#include "sections/rtdb/RtdbCommands.h"

namespace rq {

class RtdbSectionEditor : public SectionEditor {
public:
    RtdbSectionEditor(RtdbSection& rtdb, RtdbDialogHost& dialogs, MessageSink& sink,
                      UndoHistory& history)
        : rtdb_(rtdb), dialogs_(&dialogs), sink_(sink), history_(history) {}

    // The dialogs (tests replace them with a scripted host).
    void setDialogHost(RtdbDialogHost* dialogs) { dialogs_ = dialogs; }
    // The uses of the data in the other sections (null: none are looked at).
    void setReferences(RtdbReferences* refs) { refs_ = refs; }

    std::vector<EditorNode> nodes() const override;
    int treeMenu(const void* node) const override;
    int listMenu(const void* node) const override;
    EditorList list(const void* node) const override;
    EditorKeys keys(const void* node) const override;
    bool canRename(const void* node) const override;
    bool rename(void* node, const std::string& text) override;
    EditorResult run(int command, const EditorSelection& selection) override;

private:
    RtdbEditor editor() const { return RtdbEditor{rtdb_, *dialogs_, sink_, history_, refs_}; }

    RtdbSection& rtdb_;
    RtdbDialogHost* dialogs_;
    MessageSink& sink_;
    UndoHistory& history_;
    RtdbReferences* refs_ = nullptr;
};

} // namespace rq

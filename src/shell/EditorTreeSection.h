#pragma once
// The shared base of the section editors in the workspace: binds a toolkit-free
// section editor (core/SectionEditor.h) to its fixed node of the project tree and
// to the main list. It puts the editor's nodes below the fixed node, fills the list
// for the selected node, routes the node's menus, label edits and the list's keys
// (Insert adds, Enter modifies, Delete deletes the selected rows) and, after every
// change, rebuilds the nodes or refreshes the list and marks the project modified.
//
// Adding an editor means writing the section's editor and one registration line
// in CMainFrame (docs/editors.md).

#include "core/SectionEditor.h"
#include "shell/ProjectTree.h"
#include "shell/ShellSection.h"

#include <memory>

namespace rqshell {

class EditorTreeSection : public ShellSection {
public:
    EditorTreeSection(rq::SectionObject object, FixedNode fixed,
                      std::unique_ptr<rq::SectionEditor> editor, ShellContext ctx);
    ~EditorTreeSection() override;

    rq::SectionObject object() const override { return object_; }
    void clearNodes() override;
    void rebuildNodes() override;
    bool handles(int command) const override { return editor_->handles(command); }
    void runCommand(int command) override;
    void historyChanged() override;

    rq::SectionEditor& editor() const { return *editor_; }
    // The tree node of a record, the fixed node for null; null when none shows it.
    QTreeWidgetItem* itemOf(const void* key) const;
    // The record of the selected node when the node belongs to this section (null
    // for the fixed node); `inSection` tells whether it does.
    void* selectedKey(bool* inSection = nullptr) const;
    // Whether the tree nodes of this section carry `handler`.
    bool ownsHandler(const TreeNodeHandler* handler) const;

private:
    class NodeHandler;
    friend class NodeHandler;

    void showNode(const void* key);
    void addNodes(QTreeWidgetItem* parent, const std::vector<rq::EditorNode>& nodes);
    void rebuildAndSelect(const void* key);

    rq::SectionObject object_;
    FixedNode fixed_;
    std::unique_ptr<rq::SectionEditor> editor_;
    ShellContext ctx_;
    std::unique_ptr<NodeHandler> handler_;
};

} // namespace rqshell

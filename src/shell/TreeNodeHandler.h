#pragma once
// The object behind each node of the project tree, through which the shell reaches
// a section. The tree only routes its events to the handler of the node concerned.

class QTreeWidgetItem;
class QString;

namespace rqshell {

// The keys of the main list that the selected node's section acts on.
enum class ListKey { Add, Modify, Delete };

class TreeNodeHandler {
public:
    virtual ~TreeNodeHandler() = default;
    // Whether the node's label may be edited.
    virtual bool BeginRename(QTreeWidgetItem* item) { return false; }
    // Applies a new label to the model; true keeps the new text on the node.
    virtual bool Rename(QTreeWidgetItem* item, const QString& newText) { return false; }
    // Resource number of the node's context menu (MenuResources.h), 0 for none.
    virtual int GetMenuId() const { return 0; }
    // Resource number of the list view's context menu while the node is selected,
    // 0 for none (the view menu is shown instead).
    virtual int GetListMenuId() const { return 0; }
    // Shows the node's content in the main list view.
    virtual void OnSelect(QTreeWidgetItem* item) = 0;
    // A double-click in the main list view while the node is selected.
    virtual void OnListDoubleClick(QTreeWidgetItem* item) {}
    // Insert, Enter or Delete in the main list while the node is selected.
    virtual void OnListKey(QTreeWidgetItem* item, ListKey key) {}
};

} // namespace rqshell

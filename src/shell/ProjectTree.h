#pragma once
// The project tree (CPrjTree): the fourteen fixed section nodes, each section's
// container nodes beneath its node, and the routing of the tree's events to the
// nodes' handlers.

#include "shell/TreeNodeHandler.h"

#include <QTreeWidget>
#include <array>

namespace rqshell {

enum class FixedNode {
    Project,
    RealtimeDatabase,
    Hmi,
    WindowDatabase,
    Windows,
    FunctionBlock,
    Ladder,
    Parameter,
    RealtimeRecord,
    HistoryRecord,
    Alarm,
    Redundant,
    Device,
    Module,
};
inline constexpr int kFixedNodeCount = 14;

class CPrjTree : public QTreeWidget {
    Q_OBJECT
public:
    explicit CPrjTree(QWidget* parent = nullptr);

    QTreeWidgetItem* fixedNode(FixedNode node) const {
        return fixed_[static_cast<std::size_t>(node)];
    }

    // A new child node at the end of `parent`, with its handler and image.
    QTreeWidgetItem* addNode(QTreeWidgetItem* parent, const QString& text, int image,
                             TreeNodeHandler* handler);
    static void setHandler(QTreeWidgetItem* item, TreeNodeHandler* handler);
    static TreeNodeHandler* handler(const QTreeWidgetItem* item);
    // Section payload of a node (for example a DataNode of the real-time database).
    static void setPayload(QTreeWidgetItem* item, void* payload);
    static void* payload(const QTreeWidgetItem* item);

    // Every node expanded, depth first from the root.
    void expandEverything();

    // Handler of the selected node, null when none.
    TreeNodeHandler* selectedHandler() const;

    // The label edit's end, as the tree's delegate reports it.
    void finishRename(QTreeWidgetItem* item, const QString& newText);

Q_SIGNALS:
    // The context menu of resource number `menuId` is wanted at `globalPos`.
    void contextMenuWanted(int menuId, const QPoint& globalPos);
    // A double-click on the node "Ladder".
    void ladderActivated();
    // The selection changed to a node without handler (the main view is emptied).
    void emptySelection();

protected:
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;

private:
    void onSelectionChanged();
    void onContextMenu(const QPoint& pos);
    std::array<QTreeWidgetItem*, kFixedNodeCount> fixed_{};
};

} // namespace rqshell

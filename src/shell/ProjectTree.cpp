#include "shell/ProjectTree.h"

#include "shell/NodeImages.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QStyledItemDelegate>

namespace rqshell {

namespace {

constexpr int kHandlerRole = Qt::UserRole + 1;
constexpr int kPayloadRole = Qt::UserRole + 2;

// Hands the edited text to the tree instead of writing it into the item, so that
// the node's handler decides whether the label changes.
class RenameDelegate : public QStyledItemDelegate {
public:
    RenameDelegate(CPrjTree* tree) : QStyledItemDelegate(tree), tree_(tree) {}
    void setModelData(QWidget* editor, QAbstractItemModel*,
                      const QModelIndex& index) const override {
        auto* line = qobject_cast<QLineEdit*>(editor);
        if (!line)
            return;
        tree_->finishRename(tree_->itemFromIndex(index), line->text());
    }

private:
    CPrjTree* tree_;
};

struct FixedDef {
    const char* text;
    int parent; // index into the table, -1 = root
    int image;
};
const FixedDef kFixed[kFixedNodeCount] = {
    {"project", -1, image::kProject},
    {"real-time database", 0, image::kDatabase},
    {"HMI", 0, image::kHmi},
    {"Window database", 2, image::kDatabase},
    {"windows", 2, image::kWindows},
    {"Function block", 0, image::kFunctionBlock},
    {"Ladder", 0, image::kLadder},
    {"Parameter", 0, image::kParameter},
    {"Real-time data record", 0, image::kRecord},
    {"History data record", 0, image::kHistory},
    {"alarm  configuration", 0, image::kAlarm},
    {"redundant configuration", 0, image::kRedundant},
    {"device configuration", 0, image::kDevice},
    {"module  configuration", 0, image::kModule},
};

} // namespace

CPrjTree::CPrjTree(QWidget* parent) : QTreeWidget(parent) {
    setHeaderHidden(true);
    setColumnCount(1);
    setRootIsDecorated(true);
    setItemsExpandable(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::SelectedClicked | QAbstractItemView::EditKeyPressed);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setItemDelegate(new RenameDelegate(this));
    setIconSize(QSize(16, 16));

    QFont bold = font();
    bold.setBold(true);
    for (int i = 0; i < kFixedNodeCount; ++i) {
        const FixedDef& d = kFixed[i];
        auto* item =
            d.parent < 0 ? new QTreeWidgetItem(this) : new QTreeWidgetItem(fixed_[d.parent]);
        item->setText(0, QString::fromUtf8(d.text));
        item->setIcon(0, nodeIcon(d.image));
        item->setFont(0, bold);
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        fixed_[static_cast<std::size_t>(i)] = item;
    }

    connect(this, &QTreeWidget::itemSelectionChanged, this, &CPrjTree::onSelectionChanged);
    connect(this, &QWidget::customContextMenuRequested, this, &CPrjTree::onContextMenu);
    connect(this, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item, int) {
        if (item == fixedNode(FixedNode::Ladder))
            Q_EMIT ladderActivated();
    });
}

QTreeWidgetItem* CPrjTree::addNode(QTreeWidgetItem* parent, const QString& text, int image,
                                   TreeNodeHandler* handler) {
    auto* item = new QTreeWidgetItem(parent);
    item->setText(0, text);
    item->setIcon(0, nodeIcon(image));
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    setHandler(item, handler);
    return item;
}

void CPrjTree::setHandler(QTreeWidgetItem* item, TreeNodeHandler* handler) {
    item->setData(0, kHandlerRole, QVariant::fromValue(static_cast<void*>(handler)));
}

TreeNodeHandler* CPrjTree::handler(const QTreeWidgetItem* item) {
    return item ? static_cast<TreeNodeHandler*>(item->data(0, kHandlerRole).value<void*>())
                : nullptr;
}

void CPrjTree::setPayload(QTreeWidgetItem* item, void* payload) {
    item->setData(0, kPayloadRole, QVariant::fromValue(payload));
}

void* CPrjTree::payload(const QTreeWidgetItem* item) {
    return item ? item->data(0, kPayloadRole).value<void*>() : nullptr;
}

void CPrjTree::expandEverything() {
    // expandAll() walks the model depth first, as the original creation does.
    expandAll();
}

TreeNodeHandler* CPrjTree::selectedHandler() const {
    return handler(currentItem());
}

bool CPrjTree::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
    if (trigger & (QAbstractItemView::SelectedClicked | QAbstractItemView::EditKeyPressed |
                   QAbstractItemView::AllEditTriggers)) {
        QTreeWidgetItem* item = itemFromIndex(index);
        if (!item || item == fixedNode(FixedNode::Project))
            return false;
        TreeNodeHandler* h = handler(item);
        if (!h || !h->BeginRename(item))
            return false;
    }
    return QTreeWidget::edit(index, trigger, event);
}

void CPrjTree::finishRename(QTreeWidgetItem* item, const QString& newText) {
    if (!item || item == fixedNode(FixedNode::Project) || newText == item->text(0))
        return;
    TreeNodeHandler* h = handler(item);
    if (h && h->Rename(item, newText))
        item->setText(0, newText);
}

void CPrjTree::onSelectionChanged() {
    QTreeWidgetItem* item = currentItem();
    if (selectedItems().isEmpty())
        item = nullptr;
    if (TreeNodeHandler* h = handler(item))
        h->OnSelect(item);
    else
        Q_EMIT emptySelection();
}

void CPrjTree::onContextMenu(const QPoint& pos) {
    // The menu belongs to the node under the mouse, which becomes the selection.
    if (QTreeWidgetItem* under = itemAt(pos); under && under != currentItem())
        setCurrentItem(under);
    TreeNodeHandler* h = selectedHandler();
    if (!h || h->GetMenuId() == 0)
        return;
    Q_EMIT contextMenuWanted(h->GetMenuId(), viewport()->mapToGlobal(pos));
}

} // namespace rqshell

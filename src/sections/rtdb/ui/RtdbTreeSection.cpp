#include "sections/rtdb/ui/RtdbTreeSection.h"

#include "sections/rtdb/RtdbListModel.h"
#include "shell/ListView.h"
#include "shell/MenuResources.h"
#include "shell/NodeImages.h"
#include "shell/ProjectTree.h"

namespace rqshell {

// One handler for the section node and every database and group node; the node
// itself travels as the tree item's payload.
class RtdbTreeSection::NodeHandler : public TreeNodeHandler {
public:
    explicit NodeHandler(RtdbTreeSection& s) : s_(s) {}
    bool BeginRename(QTreeWidgetItem* item) override { return node(item) != nullptr; }
    bool Rename(QTreeWidgetItem* item, const QString& text) override {
        rq::DataNode* n = node(item);
        if (!n)
            return false;
        if (!rq::renameNodeLabel(s_.editor(), *n, text.toUtf8().toStdString()))
            return false;
        s_.ctx_.markModified();
        return true;
    }
    int GetMenuId() const override { return menuid::kRtdbTree; }
    int GetListMenuId() const override { return menuid::kRtdbList; }
    void OnSelect(QTreeWidgetItem* item) override {
        rq::DataNode* n = node(item);
        s_.showNode(n ? n : &s_.rtdb_.root());
    }
    void OnListDoubleClick(QTreeWidgetItem*) override { s_.runCommand(rq::cmd::kModifyData); }

    static rq::DataNode* node(const QTreeWidgetItem* item) {
        return static_cast<rq::DataNode*>(CPrjTree::payload(item));
    }

private:
    RtdbTreeSection& s_;
};

RtdbTreeSection::RtdbTreeSection(rq::RtdbSection& rtdb, ShellContext ctx)
    : rtdb_(rtdb), ctx_(std::move(ctx)), handler_(std::make_unique<NodeHandler>(*this)),
      qtDialogs_(ctx_.dialogParent, ctx_.sink), dialogs_(&qtDialogs_) {
    CPrjTree::setHandler(ctx_.tree.fixedNode(FixedNode::RealtimeDatabase), handler_.get());
}

RtdbTreeSection::~RtdbTreeSection() = default;

rq::RtdbEditor RtdbTreeSection::editor() {
    return rq::RtdbEditor{rtdb_, *dialogs_, ctx_.sink};
}

void RtdbTreeSection::clearNodes() {
    QTreeWidgetItem* top = ctx_.tree.fixedNode(FixedNode::RealtimeDatabase);
    const bool shown =
        ctx_.tree.currentItem() && CPrjTree::handler(ctx_.tree.currentItem()) == handler_.get();
    qDeleteAll(top->takeChildren());
    if (shown)
        ctx_.view.showEmpty();
}

void RtdbTreeSection::addChildren(QTreeWidgetItem* parent, rq::DataNode& node) {
    for (const auto& child : node.children()) {
        QTreeWidgetItem* item = ctx_.tree.addNode(
            parent, QString::fromUtf8(child->name()),
            child->isDatabase() ? image::kDatabase : image::kDataGroup, handler_.get());
        CPrjTree::setPayload(item, child.get());
        addChildren(item, *child);
    }
}

void RtdbTreeSection::rebuildNodes() {
    QTreeWidgetItem* top = ctx_.tree.fixedNode(FixedNode::RealtimeDatabase);
    QSignalBlocker block(&ctx_.tree);
    qDeleteAll(top->takeChildren());
    addChildren(top, rtdb_.root());
    top->setExpanded(true);
    for (QTreeWidgetItemIterator it(top); *it; ++it)
        (*it)->setExpanded(true);
}

QTreeWidgetItem* RtdbTreeSection::itemOf(const rq::DataNode* node) const {
    QTreeWidgetItem* top = ctx_.tree.fixedNode(FixedNode::RealtimeDatabase);
    if (!node || node->isRoot())
        return top;
    for (QTreeWidgetItemIterator it(top); *it; ++it)
        if (CPrjTree::payload(*it) == static_cast<const void*>(node))
            return *it;
    return nullptr;
}

rq::DataNode* RtdbTreeSection::selectedNode() const {
    QTreeWidgetItem* item = ctx_.tree.currentItem();
    if (!item || CPrjTree::handler(item) != handler_.get())
        return nullptr;
    rq::DataNode* n = NodeHandler::node(item);
    return n ? n : &rtdb_.root();
}

void RtdbTreeSection::showNode(const rq::DataNode* node) {
    std::vector<ListColumn> columns;
    for (const rq::RtdbColumn& c : rq::kRtdbListColumns)
        columns.push_back(ListColumn{QString::fromUtf8(c.title), c.width});
    ctx_.view.show(
        std::move(columns), [node] { return node ? node->itemCount() : 0; },
        [node](std::size_t row, int column) { return rq::rtdbListCell(node->item(row), column); });
}

void RtdbTreeSection::rebuildAndSelect(const rq::DataNode* select) {
    rebuildNodes();
    QTreeWidgetItem* item = itemOf(select);
    if (item) {
        ctx_.tree.setCurrentItem(item);
        // setCurrentItem does not signal when the item was current already.
        showNode(select ? select : &rtdb_.root());
    }
}

void RtdbTreeSection::runCommand(int command) {
    rq::DataNode* sel = selectedNode();
    rq::DataNode* node = sel && !sel->isRoot() ? sel : nullptr;
    rq::RtdbEditor ed = editor();
    rq::RtdbEditResult r;
    const rq::DataNode* after = sel; // the node to select when the tree is rebuilt
    bool structural = false;
    switch (command) {
    case rq::cmd::kNewDatabase:
        r = rq::addDatabase(ed);
        after = r.added;
        structural = true;
        break;
    case rq::cmd::kNewDataGroup:
        r = rq::addDataGroup(ed, node);
        structural = true;
        break;
    case rq::cmd::kModifyDatabase:
        r = rq::editNodeProperties(ed, node);
        structural = true;
        break;
    case rq::cmd::kDeleteDatabase:
    case rq::cmd::kDeleteDataGroup:
        after = node ? node->parent() : sel;
        r = command == rq::cmd::kDeleteDatabase ? rq::deleteDatabase(ed, node)
                                                : rq::deleteDataGroup(ed, node);
        structural = true;
        break;
    case rq::cmd::kNewData:
        r = rq::addData(ed, node);
        break;
    case rq::cmd::kBatchData:
        r = rq::batchAddData(ed, node);
        break;
    case rq::cmd::kModifyData:
        r = rq::modifyData(ed, node, ctx_.view.selectedRows());
        break;
    case rq::cmd::kDeleteData:
        r = rq::deleteData(ed, node, ctx_.view.selectedRows());
        break;
    default:
        return;
    }
    if (!r.changed)
        return;
    if (structural)
        rebuildAndSelect(after);
    else
        ctx_.view.refresh();
    ctx_.markModified();
}

} // namespace rqshell

#include "shell/EditorTreeSection.h"

#include "shell/ListView.h"
#include "shell/NodeImages.h"

#include <QSignalBlocker>

namespace rqshell {

namespace {

// The nodes below `top` (not `top` itself), depth first.
template <class Visit> void forEachBelow(QTreeWidgetItem* top, Visit visit) {
    for (int i = 0; i < top->childCount(); ++i) {
        QTreeWidgetItem* child = top->child(i);
        visit(child);
        forEachBelow(child, visit);
    }
}

} // namespace

class EditorTreeSection::NodeHandler : public TreeNodeHandler {
public:
    explicit NodeHandler(EditorTreeSection& s) : s_(s) {}

    bool BeginRename(QTreeWidgetItem* item) override {
        return s_.editor_->canRename(CPrjTree::payload(item));
    }
    bool Rename(QTreeWidgetItem* item, const QString& text) override {
        void* key = CPrjTree::payload(item);
        if (!key || !s_.editor_->rename(key, text.toUtf8().toStdString()))
            return false;
        s_.ctx_.markModified();
        return true;
    }
    int GetMenuId() const override {
        return s_.editor_->treeMenu(CPrjTree::payload(s_.ctx_.tree.currentItem()));
    }
    int GetListMenuId() const override {
        return s_.editor_->listMenu(CPrjTree::payload(s_.ctx_.tree.currentItem()));
    }
    void OnSelect(QTreeWidgetItem* item) override { s_.showNode(CPrjTree::payload(item)); }
    void OnListDoubleClick(QTreeWidgetItem* item) override { OnListKey(item, ListKey::Modify); }
    void OnListKey(QTreeWidgetItem* item, ListKey key) override {
        rq::EditorKeys keys = s_.editor_->keys(CPrjTree::payload(item));
        int command = key == ListKey::Add      ? keys.add
                      : key == ListKey::Modify ? keys.modify
                                               : keys.remove;
        if (command)
            s_.ctx_.runCommand(command);
    }

private:
    EditorTreeSection& s_;
};

EditorTreeSection::EditorTreeSection(rq::SectionObject object, FixedNode fixed,
                                     std::unique_ptr<rq::SectionEditor> editor, ShellContext ctx)
    : object_(object), fixed_(fixed), editor_(std::move(editor)), ctx_(std::move(ctx)),
      handler_(std::make_unique<NodeHandler>(*this)) {
    CPrjTree::setHandler(ctx_.tree.fixedNode(fixed_), handler_.get());
    addNodes(ctx_.tree.fixedNode(fixed_), editor_->fixedNodes());
}

EditorTreeSection::~EditorTreeSection() = default;

void EditorTreeSection::clearNodes() {
    QTreeWidgetItem* top = ctx_.tree.fixedNode(fixed_);
    bool shown = false;
    selectedKey(&shown);
    qDeleteAll(top->takeChildren());
    addNodes(top, editor_->fixedNodes());
    top->setExpanded(true);
    if (shown)
        ctx_.view.showEmpty();
}

void EditorTreeSection::addNodes(QTreeWidgetItem* parent,
                                 const std::vector<rq::EditorNode>& nodes) {
    for (const rq::EditorNode& n : nodes) {
        QTreeWidgetItem* item =
            ctx_.tree.addNode(parent, QString::fromUtf8(n.label), n.image, handler_.get());
        CPrjTree::setPayload(item, n.key);
        addNodes(item, n.children);
    }
}

void EditorTreeSection::rebuildNodes() {
    QTreeWidgetItem* top = ctx_.tree.fixedNode(fixed_);
    QSignalBlocker block(&ctx_.tree);
    qDeleteAll(top->takeChildren());
    addNodes(top, editor_->nodes());
    top->setExpanded(true);
    forEachBelow(top, [](QTreeWidgetItem* item) { item->setExpanded(true); });
}

QTreeWidgetItem* EditorTreeSection::itemOf(const void* key) const {
    QTreeWidgetItem* top = ctx_.tree.fixedNode(fixed_);
    if (!key)
        return top;
    QTreeWidgetItem* found = nullptr;
    forEachBelow(top, [&](QTreeWidgetItem* item) {
        if (!found && CPrjTree::payload(item) == key)
            found = item;
    });
    return found;
}

void* EditorTreeSection::selectedKey(bool* inSection) const {
    QTreeWidgetItem* item = ctx_.tree.currentItem();
    const bool in = item && CPrjTree::handler(item) == handler_.get();
    if (inSection)
        *inSection = in;
    return in ? CPrjTree::payload(item) : nullptr;
}

bool EditorTreeSection::ownsHandler(const TreeNodeHandler* handler) const {
    return handler && handler == handler_.get();
}

void EditorTreeSection::showNode(const void* key) {
    rq::EditorList l = editor_->list(key);
    std::vector<ListColumn> columns;
    for (const rq::EditorColumn& c : l.columns)
        columns.push_back(ListColumn{QString::fromUtf8(c.title), c.width});
    ctx_.view.show(std::move(columns), std::move(l.rows), std::move(l.cell), l.kind);
}

void EditorTreeSection::rebuildAndSelect(const void* key) {
    rebuildNodes();
    QTreeWidgetItem* item = itemOf(key);
    if (!item)
        item = ctx_.tree.fixedNode(fixed_);
    QSignalBlocker block(&ctx_.tree);
    ctx_.tree.setCurrentItem(item);
    showNode(CPrjTree::payload(item));
}

void EditorTreeSection::runCommand(int command) {
    bool in = false;
    rq::EditorSelection sel;
    sel.node = selectedKey(&in);
    if (in)
        sel.rows = ctx_.view.selectedRows();
    else
        sel.node = nullptr;
    rq::EditorResult r = editor_->run(command, sel);
    if (!r.changed)
        return;
    if (r.structural)
        rebuildAndSelect(r.reselect ? r.select : sel.node);
    else
        ctx_.view.refresh();
    ctx_.markModified();
}

void EditorTreeSection::historyChanged() {
    bool in = false;
    void* key = selectedKey(&in);
    rebuildNodes();
    if (!in)
        return;
    rebuildAndSelect(itemOf(key) ? key : nullptr);
}

} // namespace rqshell

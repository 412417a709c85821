#include "sections/rtdb/RtdbSectionEditor.h"

#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "core/NodeImageIds.h"
#include "sections/rtdb/RtdbListModel.h"

namespace rq {

namespace {

void addNodes(std::vector<EditorNode>& out, const DataNode& node) {
    for (const auto& child : node.children()) {
        EditorNode n{child.get(),
                     child->name(),
                     child->isDatabase() ? image::kDatabase : image::kDataGroup,
                     {}};
        addNodes(n.children, *child);
        out.push_back(std::move(n));
    }
}

DataNode* dataNode(void* key) {
    return static_cast<DataNode*>(key);
}

} // namespace

std::vector<EditorNode> RtdbSectionEditor::nodes() const {
    std::vector<EditorNode> out;
    addNodes(out, rtdb_.root());
    return out;
}

int RtdbSectionEditor::treeMenu(const void*) const {
    return menuid::kRtdbTree;
}

int RtdbSectionEditor::listMenu(const void*) const {
    return menuid::kRtdbList;
}

EditorList RtdbSectionEditor::list(const void* key) const {
    const DataNode* node = key ? static_cast<const DataNode*>(key) : &rtdb_.root();
    EditorList l;
    for (const RtdbColumn& c : kRtdbListColumns)
        l.columns.push_back(EditorColumn{c.title, c.width});
    l.rows = [node] { return node->itemCount(); };
    l.cell = [node](std::size_t row, int column) { return rtdbListCell(node->item(row), column); };
    return l;
}

EditorKeys RtdbSectionEditor::keys(const void*) const {
    return EditorKeys{cmd::kNewData, cmd::kModifyData, cmd::kDeleteData};
}

bool RtdbSectionEditor::canRename(const void* key) const {
    return key != nullptr;
}

bool RtdbSectionEditor::rename(void* key, const std::string& text) {
    return key && renameNodeLabel(editor(), *dataNode(key), text);
}

EditorResult RtdbSectionEditor::run(int command, const EditorSelection& sel) {
    DataNode* node = dataNode(sel.node); // null: the section's own node
    const RtdbEditor ed = editor();
    RtdbEditResult r;
    void* after = node; // the node to select when the nodes are rebuilt
    bool structural = true;
    switch (command) {
    case cmd::kNewDatabase:
        r = addDatabase(ed);
        after = r.added;
        break;
    case cmd::kNewDataGroup:
        r = addDataGroup(ed, node);
        break;
    case cmd::kModifyDatabase:
        r = editNodeProperties(ed, node);
        break;
    case cmd::kDeleteDatabase:
    case cmd::kDeleteDataGroup: {
        DataNode* parent = node ? node->parent() : nullptr;
        after = parent && !parent->isRoot() ? parent : nullptr;
        r = command == cmd::kDeleteDatabase ? deleteDatabase(ed, node) : deleteDataGroup(ed, node);
        if (!r.changed)
            after = node;
        break;
    }
    case cmd::kNewData:
        r = addData(ed, node);
        structural = false;
        break;
    case cmd::kBatchData:
        r = batchAddData(ed, node);
        structural = false;
        break;
    case cmd::kModifyData:
        r = modifyData(ed, node, sel.rows);
        structural = false;
        break;
    case cmd::kDeleteData:
        r = deleteData(ed, node, sel.rows);
        structural = false;
        break;
    default:
        return {};
    }
    if (!r.changed)
        return {};
    return structural ? EditorResult::nodes(after) : EditorResult::rows();
}

} // namespace rq

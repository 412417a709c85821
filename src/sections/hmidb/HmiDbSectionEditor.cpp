#include "sections/hmidb/HmiDbSectionEditor.h"

#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "core/NodeImageIds.h"

#include <memory>

namespace rq {

namespace {

template <class Item> EditorNode groupNode(HmiDataGroup<Item>& g, const std::string& label) {
    EditorNode n{&g, label, image::kDataGroup, {}};
    for (auto& sub : g.groups)
        n.children.push_back(groupNode(sub, sub.name));
    return n;
}

template <class Item>
bool findGroup(const HmiDataGroup<Item>& g, const void* key, HmiGroupPath& path) {
    if (&g == key)
        return true;
    for (std::size_t i = 0; i < g.groups.size(); ++i) {
        path.push_back(i);
        if (findGroup(g.groups[i], key, path))
            return true;
        path.pop_back();
    }
    return false;
}

template <class Item>
EditorList itemList(const HmiDataGroup<Item>& g, int kind,
                    const std::array<const char*, 4>& titles) {
    EditorList l;
    l.kind = kind;
    for (const char* title : titles)
        l.columns.push_back(EditorColumn{title, kHmiColumnWidth});
    const HmiDataGroup<Item>* group = &g;
    auto scratch = std::make_shared<std::string>();
    l.rows = [group] { return group->items.size(); };
    l.cell = [group, scratch](std::size_t row, int column) {
        return hmiCell(group->items[row], column, *scratch);
    };
    return l;
}

} // namespace

HmiPlace HmiDbSectionEditor::place(const void* key) const {
    HmiPlace at;
    if (!key)
        return at;
    if (findGroup(section_.io, key, at.path))
        at.kind = HmiDbSection::kIoKind;
    else if (findGroup(section_.memory, key, at.path))
        at.kind = HmiDbSection::kMemoryKind;
    else
        at.path.clear();
    return at;
}

void* HmiDbSectionEditor::key(const HmiPlace& at) const {
    if (at.kind == HmiDbSection::kIoKind)
        return &groupAt<HmiIoItem>(section_, at.path);
    if (at.kind == HmiDbSection::kMemoryKind)
        return &groupAt<HmiMemoryItem>(section_, at.path);
    return nullptr;
}

std::vector<EditorNode> HmiDbSectionEditor::nodes() const {
    return {groupNode(section_.io, HmiDbSection::kIoNodeText),
            groupNode(section_.memory, HmiDbSection::kMemoryNodeText)};
}

std::vector<EditorNode> HmiDbSectionEditor::fixedNodes() const {
    return {EditorNode{&section_.io, HmiDbSection::kIoNodeText, image::kDataGroup, {}},
            EditorNode{&section_.memory, HmiDbSection::kMemoryNodeText, image::kDataGroup, {}}};
}

int HmiDbSectionEditor::treeMenu(const void*) const {
    return menuid::kHmiDbTree;
}

int HmiDbSectionEditor::listMenu(const void*) const {
    return menuid::kHmiDbList;
}

EditorList HmiDbSectionEditor::list(const void* key) const {
    HmiPlace at = place(key);
    if (at.kind == HmiDbSection::kIoKind)
        return itemList(groupAt<HmiIoItem>(section_, at.path), at.kind, kHmiIoColumns);
    if (at.kind == HmiDbSection::kMemoryKind)
        return itemList(groupAt<HmiMemoryItem>(section_, at.path), at.kind, kHmiMemoryColumns);
    // The section's own node holds no items.
    EditorList l;
    l.rows = [] { return std::size_t(0); };
    l.cell = [](std::size_t, int) { return std::string_view(); };
    return l;
}

EditorKeys HmiDbSectionEditor::keys(const void*) const {
    return EditorKeys{cmd::kNewHmiData, cmd::kModifyHmiData, cmd::kDeleteHmiData};
}

bool HmiDbSectionEditor::canRename(const void* key) const {
    return place(key).nested();
}

bool HmiDbSectionEditor::rename(void* key, const std::string& text) {
    return renameHmiGroup(editor(), place(key), text);
}

bool HmiDbSectionEditor::handles(int command) const {
    switch (command) {
    case cmd::kNewHmiDataGroup:
    case cmd::kDeleteHmiDataGroup:
    case cmd::kModifyHmiDataGroup:
    case cmd::kNewHmiData:
    case cmd::kDeleteHmiData:
    case cmd::kModifyHmiData:
        return true;
    default:
        return false;
    }
}

EditorResult HmiDbSectionEditor::run(int command, const EditorSelection& sel) {
    const HmiDbEditor ed = editor();
    const HmiPlace at = place(sel.node);
    switch (command) {
    case cmd::kNewHmiDataGroup:
        return addHmiGroup(ed, at) ? EditorResult::nodes(key(at)) : EditorResult::none();
    case cmd::kModifyHmiDataGroup:
        return modifyHmiGroup(ed, at) ? EditorResult::nodes(key(at)) : EditorResult::none();
    case cmd::kDeleteHmiDataGroup: {
        if (!deleteHmiGroup(ed, at))
            return EditorResult::none();
        // The group's parent is selected after it is gone.
        HmiPlace parent = at;
        parent.path.pop_back();
        return EditorResult::nodes(key(parent));
    }
    case cmd::kNewHmiData:
        return addHmiData(ed, at) ? EditorResult::rows() : EditorResult::none();
    case cmd::kModifyHmiData:
        return modifyHmiData(ed, at, sel.rows) ? EditorResult::rows() : EditorResult::none();
    case cmd::kDeleteHmiData:
        return deleteHmiData(ed, at, sel.rows) ? EditorResult::rows() : EditorResult::none();
    default:
        return EditorResult::none();
    }
}

} // namespace rq

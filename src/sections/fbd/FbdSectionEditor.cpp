#include "sections/fbd/FbdSectionEditor.h"

#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "core/NodeImageIds.h"

namespace rq {

std::optional<std::size_t> FbdSectionEditor::place(const void* key) const {
    const auto& blocks = section_.blocks();
    for (std::size_t i = 0; key && i < blocks.size(); ++i)
        if (&blocks[i] == key)
            return i;
    return std::nullopt;
}

std::vector<EditorNode> FbdSectionEditor::nodes() const {
    std::vector<EditorNode> out;
    for (FbdItem& b : section_.blocks())
        out.push_back(EditorNode{&b, b.name, image::kFunctionBlock, {}});
    return out;
}

int FbdSectionEditor::treeMenu(const void*) const {
    return menuid::kFbdTree;
}

int FbdSectionEditor::listMenu(const void* key) const {
    return place(key) ? menuid::kFbdList : 0;
}

EditorList FbdSectionEditor::list(const void* key) const {
    EditorList l;
    if (!place(key)) {
        l.rows = [] { return std::size_t(0); };
        l.cell = [](std::size_t, int) { return std::string_view(); };
        return l;
    }
    // The view compares kinds across sections: one of its own.
    l.kind = 1100;
    for (const char* title : kFbdParamColumns)
        l.columns.push_back(EditorColumn{title, 100});
    const FbdItem* item = static_cast<const FbdItem*>(key);
    l.rows = [item] { return fbdParamRows(*item); };
    l.cell = [item](std::size_t row, int column) { return fbdParamCell(*item, row, column); };
    return l;
}

EditorKeys FbdSectionEditor::keys(const void* key) const {
    if (!place(key))
        return {};
    return EditorKeys{0, cmd::kFbdModifyParameter, 0};
}

EditorResult FbdSectionEditor::run(int command, const EditorSelection& sel) {
    const FbdEditor ed{section_, *dialogs_, sink_, history_};
    const std::optional<std::size_t> at = place(sel.node);
    switch (command) {
    case cmd::kNewFbd:
        if (auto added = addBlock(ed))
            return EditorResult::nodes(&section_.blocks()[*added]);
        return {};
    case cmd::kDeleteFbd:
        if (at && deleteBlock(ed, *at))
            return EditorResult::nodes(nullptr);
        return {};
    case cmd::kFbdConfiguration:
        if (at && configureBlock(ed, *at))
            return EditorResult::nodes(&section_.blocks()[*at]);
        return {};
    case cmd::kFbdModifyParameter:
        if (at && modifyBlockParam(ed, *at, sel.rows))
            return EditorResult::rows();
        return {};
    default:
        return {};
    }
}

} // namespace rq

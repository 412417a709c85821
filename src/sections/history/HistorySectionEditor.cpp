#include "sections/history/HistorySectionEditor.h"

#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "core/NodeImageIds.h"

namespace rq {

int HistorySectionEditor::recordOf(const void* key) const {
    const auto& records = section_.records();
    for (std::size_t i = 0; i < records.size(); ++i)
        if (&records[i] == key)
            return static_cast<int>(i);
    return -1;
}

void* HistorySectionEditor::key(int record) const {
    auto& records = section_.records();
    if (record < 0 || static_cast<std::size_t>(record) >= records.size())
        return nullptr;
    return &records[static_cast<std::size_t>(record)];
}

std::vector<EditorNode> HistorySectionEditor::nodes() const {
    std::vector<EditorNode> out;
    for (HistoryRecord& r : section_.records())
        out.push_back(EditorNode{&r, r.name, image::kHistory, {}});
    return out;
}

int HistorySectionEditor::treeMenu(const void*) const {
    return menuid::kHistoryTree;
}

int HistorySectionEditor::listMenu(const void*) const {
    return menuid::kHistoryList;
}

EditorList HistorySectionEditor::list(const void* key) const {
    EditorList l;
    const int record = recordOf(key);
    if (record < 0) {
        l.kind = 0;
        l.rows = [] { return std::size_t(0); };
        l.cell = [](std::size_t, int) { return std::string_view(); };
        return l;
    }
    // The view compares kinds across sections: one of its own.
    l.kind = 700;
    for (const char* title : kHistoryDataColumns)
        l.columns.push_back(EditorColumn{title, kHistoryDataColumnWidth});
    const HistoryRecord* r = &section_.records()[static_cast<std::size_t>(record)];
    l.rows = [r] { return r->data.size(); };
    l.cell = [r](std::size_t row, int column) { return historyDataCell(r->data[row], column); };
    return l;
}

EditorKeys HistorySectionEditor::keys(const void* key) const {
    if (recordOf(key) < 0)
        return {};
    return EditorKeys{cmd::kNewHistoryData, cmd::kModifyHistoryData, cmd::kDeleteHistoryData};
}

bool HistorySectionEditor::canRename(const void* key) const {
    return recordOf(key) >= 0;
}

bool HistorySectionEditor::rename(void* key, const std::string& text) {
    return renameHistoryRecord(editor(), recordOf(key), text);
}

EditorResult HistorySectionEditor::run(int command, const EditorSelection& sel) {
    const int record = recordOf(sel.node);
    const HistoryEditor ed = editor();
    HistoryEditResult r;
    bool structural = true;
    switch (command) {
    case cmd::kNewHistoryRecord:
        r = addHistoryRecord(ed);
        break;
    case cmd::kDeleteHistoryRecord:
        r = deleteHistoryRecord(ed, record);
        break;
    case cmd::kModifyHistoryRecord:
        r = modifyHistoryRecord(ed, record);
        break;
    case cmd::kNewHistoryData:
        r = addHistoryData(ed, record);
        structural = false;
        break;
    case cmd::kDeleteHistoryData:
        r = deleteHistoryData(ed, record, sel.rows);
        structural = false;
        break;
    case cmd::kModifyHistoryData:
        r = modifyHistoryData(ed, record, sel.rows);
        structural = false;
        break;
    default:
        return {};
    }
    if (!r.changed)
        return {};
    return structural ? EditorResult::nodes(key(r.select)) : EditorResult::rows();
}

} // namespace rq

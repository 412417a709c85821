#include "sections/datalog/DataLogSectionEditor.h"

#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "core/NodeImageIds.h"

namespace rq {

int DataLogSectionEditor::indexOf(const void* key) const {
    for (std::size_t i = 0; key && i < section_.logs.size(); ++i)
        if (&section_.logs[i] == key)
            return static_cast<int>(i);
    return -1;
}

void* DataLogSectionEditor::keyOf(int index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= section_.logs.size())
        return nullptr;
    return &section_.logs[static_cast<std::size_t>(index)];
}

std::vector<EditorNode> DataLogSectionEditor::nodes() const {
    std::vector<EditorNode> out;
    out.reserve(section_.logs.size());
    for (DataLog& log : section_.logs)
        out.push_back(
            EditorNode{&log,
                       log.name,
                       log.kind == DataLogKind::Database ? image::kDatabase : image::kRecord,
                       {}});
    return out;
}

int DataLogSectionEditor::treeMenu(const void*) const {
    return menuid::kDataLogTree;
}

int DataLogSectionEditor::listMenu(const void*) const {
    return menuid::kDataLogList;
}

EditorList DataLogSectionEditor::list(const void* key) const {
    EditorList l;
    const int index = indexOf(key);
    if (index < 0 ||
        section_.logs[static_cast<std::size_t>(index)].kind != DataLogKind::Variables) {
        // The section's node and a whole-database log list nothing.
        l.rows = [] { return std::size_t(0); };
        l.cell = [](std::size_t, int) { return std::string_view(); };
        return l;
    }
    l.kind = static_cast<int>(DataLogKind::Variables);
    for (const char* title : kLogDataColumns)
        l.columns.push_back(EditorColumn{title, 100});
    const DataLog* log = &section_.logs[static_cast<std::size_t>(index)];
    l.rows = [log] { return log->data.size(); };
    l.cell = [log](std::size_t row, int column) { return logDataCell(log->data[row], column); };
    return l;
}

EditorKeys DataLogSectionEditor::keys(const void* key) const {
    const int index = indexOf(key);
    if (index < 0 || section_.logs[static_cast<std::size_t>(index)].kind != DataLogKind::Variables)
        return {};
    return EditorKeys{cmd::kNewRecordData, cmd::kModifyRecordData, cmd::kDeleteRecordData};
}

bool DataLogSectionEditor::canRename(const void* key) const {
    return indexOf(key) >= 0;
}

bool DataLogSectionEditor::rename(void* key, const std::string& text) {
    return renameDataLog(editor(), indexOf(key), text);
}

EditorResult DataLogSectionEditor::run(int command, const EditorSelection& sel) {
    const int log = indexOf(sel.node);
    const DataLogEditor ed = editor();
    DataLogEditResult r;
    switch (command) {
    case cmd::kNewDataRecord:
        r = addDataLog(ed, DataLogKind::Variables);
        break;
    case cmd::kNewAllDatabaseRecord:
        r = addDataLog(ed, DataLogKind::Database);
        break;
    case cmd::kModifyDataRecord:
        r = modifyDataLog(ed, log);
        break;
    case cmd::kDeleteDataRecord:
        r = deleteDataLog(ed, log);
        break;
    case cmd::kNewRecordData:
        return addLogData(ed, log) ? EditorResult::rows() : EditorResult::none();
    case cmd::kModifyRecordData:
        return modifyLogData(ed, log, sel.rows) ? EditorResult::rows() : EditorResult::none();
    case cmd::kDeleteRecordData:
        return deleteLogData(ed, log, sel.rows) ? EditorResult::rows() : EditorResult::none();
    default:
        return {};
    }
    return r.changed ? EditorResult::nodes(keyOf(r.select)) : EditorResult::none();
}

} // namespace rq

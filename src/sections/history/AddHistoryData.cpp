#include "core/SectionEditor.h"
#include "sections/history/HistoryCommands.h"
#include "sections/history/HistoryEdits.h"

#include <algorithm>

namespace rq {

namespace {
HistoryRecord* recordAt(const HistoryEditor& ed, int record) {
    auto& records = ed.section.records();
    if (record < 0 || static_cast<std::size_t>(record) >= records.size())
        return nullptr;
    return &records[static_cast<std::size_t>(record)];
}
} // namespace

HistoryEditResult addHistoryData(const HistoryEditor& ed, int record) {
    HistoryRecord* r = recordAt(ed, record);
    if (!r)
        return {};
    HistoryDataForm form = historyDataForm(HistoryData{});
    form.kind = 0;
    const bool ok = askUntilAccepted(
        ed.sink, form, [&](HistoryDataForm& f) { return ed.dialogs.dataDialog(f); },
        [&](const HistoryDataForm& f) -> std::optional<std::string> {
            for (const HistoryData& d : r->data)
                if (d.dbname == f.dbname && d.dataname == f.dataname)
                    return std::string(historytext::kDataExists);
            return std::nullopt;
        });
    if (!ok)
        return {};
    HistoryData data;
    storeHistoryDataForm(form, data);
    ed.history.push(std::make_unique<AppendHistoryData>(
        "Add Data", ed.section, static_cast<std::size_t>(record), std::move(data)));
    return {true, record};
}

HistoryEditResult deleteHistoryData(const HistoryEditor& ed, int record,
                                    const std::vector<std::size_t>& rows) {
    HistoryRecord* r = recordAt(ed, record);
    if (!r)
        return {};
    std::vector<std::size_t> sorted;
    for (std::size_t row : rows)
        if (row < r->data.size())
            sorted.push_back(row);
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    if (sorted.empty())
        return {};
    if (!confirmDelete(ed.sink, historytext::kDeleteData))
        return {};
    ed.history.push(std::make_unique<RemoveHistoryData>(
        "Delete Data", ed.section, static_cast<std::size_t>(record), std::move(sorted)));
    return {true, record};
}

HistoryEditResult modifyHistoryData(const HistoryEditor& ed, int record,
                                    const std::vector<std::size_t>& rows) {
    HistoryRecord* r = recordAt(ed, record);
    if (!r)
        return {};
    std::optional<std::size_t> row = firstSelectedRow(rows, r->data.size());
    if (!row)
        return {};
    HistoryDataForm form = historyDataForm(r->data[*row]);
    if (!ed.dialogs.dataDialog(form))
        return {};
    HistoryData changed = r->data[*row];
    storeHistoryDataForm(form, changed);
    if (changed == r->data[*row])
        return {};
    ed.history.push(std::make_unique<ReplaceHistoryData>(
        "Modify Data", ed.section, static_cast<std::size_t>(record), *row, std::move(changed)));
    return {true, record};
}

} // namespace rq

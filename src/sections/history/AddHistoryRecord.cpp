#include "core/SectionEditor.h"
#include "core/StorableValue.h"
#include "sections/history/HistoryCommands.h"
#include "sections/history/HistoryEdits.h"

namespace rq {

namespace {

// Whether a record other than `except` has the name.
bool nameInUse(const HistorySection& s, const std::string& name, const HistoryRecord* except) {
    for (const HistoryRecord& r : s.records())
        if (&r != except && r.name == name)
            return true;
    return false;
}

bool validRecord(const HistoryEditor& ed, int record) {
    return record >= 0 && static_cast<std::size_t>(record) < ed.section.records().size();
}

// The dialog until its name is free (or empty) or Cancel.
bool askRecord(const HistoryEditor& ed, HistoryRecordForm& form, const HistoryRecord* except) {
    return askUntilAccepted(
        ed.sink, form, [&](HistoryRecordForm& f) { return ed.dialogs.recordDialog(f); },
        [&](const HistoryRecordForm& f) -> std::optional<std::string> {
            if (!f.name.empty() && nameInUse(ed.section, f.name, except))
                return std::string(historytext::kRecordExists);
            return std::nullopt;
        });
}

} // namespace

HistoryEditResult addHistoryRecord(const HistoryEditor& ed) {
    HistoryRecordForm form = historyRecordForm(HistoryRecord{});
    if (!askRecord(ed, form, nullptr) || form.name.empty())
        return {};
    HistoryRecord record;
    storeHistoryRecordForm(form, record);
    const std::size_t index = ed.section.records().size();
    ed.history.push(std::make_unique<InsertHistoryRecord>("Add History Data Record", ed.section,
                                                          index, std::move(record)));
    return {true, static_cast<int>(index)};
}

HistoryEditResult deleteHistoryRecord(const HistoryEditor& ed, int record) {
    if (!validRecord(ed, record))
        return {};
    if (!confirmDelete(ed.sink, historytext::kDeleteRecord))
        return {};
    ed.history.push(std::make_unique<RemoveHistoryRecord>("Delete History Data Record", ed.section,
                                                          static_cast<std::size_t>(record)));
    return {true, -1};
}

HistoryEditResult modifyHistoryRecord(const HistoryEditor& ed, int record) {
    if (!validRecord(ed, record))
        return {};
    const HistoryRecord& current = ed.section.records()[static_cast<std::size_t>(record)];
    HistoryRecordForm form = historyRecordForm(current);
    if (!askRecord(ed, form, &current) || form.name.empty())
        return {};
    HistoryRecord changed;
    changed.path = current.path; // kept when the location matches no row
    storeHistoryRecordForm(form, changed);
    if (changed.name == current.name && changed.period == current.period &&
        changed.path == current.path && changed.remaindays == current.remaindays &&
        changed.indexperiod == current.indexperiod)
        return {};
    ed.history.push(std::make_unique<ReplaceHistoryRecord>(
        "Modify History Data Record", ed.section, static_cast<std::size_t>(record), changed));
    return {true, record};
}

bool renameHistoryRecord(const HistoryEditor& ed, int record, const std::string& name) {
    if (!validRecord(ed, record) || name.empty())
        return false;
    const HistoryRecord& current = ed.section.records()[static_cast<std::size_t>(record)];
    if (auto m = checkStorableValue("History Record Name", name)) {
        ed.sink.showMessage(*m, MessageIcon::Stop);
        return false;
    }
    if (nameInUse(ed.section, name, &current)) {
        ed.sink.showMessage(historytext::kRecordExists, MessageIcon::Stop);
        return false;
    }
    if (name == current.name)
        return true;
    HistoryRecord changed;
    storeHistoryRecordForm(historyRecordForm(current), changed);
    changed.path = current.path;
    changed.name = name;
    ed.history.push(std::make_unique<ReplaceHistoryRecord>(
        "Rename History Data Record", ed.section, static_cast<std::size_t>(record), changed));
    return true;
}

} // namespace rq

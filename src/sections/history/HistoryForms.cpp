#include "sections/history/HistoryForms.h"

#include "core/StorableValue.h"

#include <iterator>

namespace rq {

namespace {

constexpr int kLocationCount = static_cast<int>(std::size(kHistoryLocations));
constexpr int kKindCount = static_cast<int>(std::size(kHistoryKinds));

int locationRow(std::string_view keyword) {
    for (int i = 0; i < kLocationCount; ++i)
        if (keyword == kHistoryLocations[i].keyword)
            return i;
    return -1;
}

int kindRow(std::string_view keyword) {
    for (int i = 0; i < kKindCount; ++i)
        if (keyword == kHistoryKinds[i].keyword)
            return i;
    return -1;
}

// A label without its colon, as the storable-value message names the field.
std::string_view field(const char* label) {
    std::string_view s(label);
    return s.substr(0, s.size() - 1);
}

std::optional<std::string> checkWholeNumber(const char* label, const std::string& value) {
    bool nonZero = false;
    for (char c : value) {
        if (c < '0' || c > '9') {
            nonZero = false;
            break;
        }
        nonZero = nonZero || c != '0';
    }
    if (nonZero)
        return std::nullopt;
    return "The field \"" + std::string(field(label)) + "\" must be a whole number greater than 0.";
}

} // namespace

HistoryRecordForm historyRecordForm(const HistoryRecord& r) {
    return HistoryRecordForm{r.name, r.period, locationRow(r.path), r.remaindays, r.indexperiod};
}

void storeHistoryRecordForm(const HistoryRecordForm& f, HistoryRecord& r) {
    r.name = f.name;
    r.period = f.period;
    if (f.location >= 0 && f.location < kLocationCount)
        r.path = kHistoryLocations[f.location].keyword;
    r.remaindays = f.remaindays;
    r.indexperiod = f.indexperiod;
}

std::optional<std::string> validateHistoryRecordForm(const HistoryRecordForm& f) {
    using namespace historytext;
    if (auto m = checkStorableValue(field(kNameLabel), f.name))
        return m;
    const std::pair<const char*, const std::string*> numbers[] = {
        {kPeriodLabel, &f.period},
        {kRemainDaysLabel, &f.remaindays},
        {kIndexPeriodLabel, &f.indexperiod}};
    for (const auto& [label, value] : numbers)
        if (auto m = checkWholeNumber(label, *value))
            return m;
    return std::nullopt;
}

HistoryDataForm historyDataForm(const HistoryData& d) {
    return HistoryDataForm{d.dbname,      d.dataname,    kindRow(d.type), d.periodvalue,
                           d.changevalue, d.trigvarname, d.queryvarname,  d.description};
}

void storeHistoryDataForm(const HistoryDataForm& f, HistoryData& d) {
    d.dbname = f.dbname;
    d.dataname = f.dataname;
    switch (f.kind) {
    case 0:
        d.periodvalue = f.periodvalue;
        break;
    case 1:
        d.changevalue = f.changevalue;
        break;
    case 2:
        d.trigvarname = f.trigvarname;
        break;
    default:
        break;
    }
    if (f.kind >= 0 && f.kind < kKindCount)
        d.type = kHistoryKinds[f.kind].keyword;
    d.queryvarname = f.queryvarname;
    d.description = f.description;
}

std::optional<std::string> validateHistoryDataForm(const HistoryDataForm& f) {
    using namespace historytext;
    if (f.dbname.empty() || f.dataname.empty())
        return std::string(kChooseData);
    if (f.kind == 0 && f.periodvalue.empty())
        return std::string(kNoPeriod);
    if (f.kind == 1 && f.changevalue.empty())
        return std::string(kNoChangeValue);
    if (f.kind == 2 && f.trigvarname.empty())
        return std::string(kNoTrigger);
    if (auto m = checkStorableValue(field(kDatabaseLabel), f.dbname))
        return m;
    if (auto m = checkStorableValue(field(kDataNameLabel), f.dataname))
        return m;
    // Only the value of the kind is written.
    const std::pair<const char*, const std::string*> values[] = {
        {kPeriodValueLabel, &f.periodvalue},
        {kChangeValueLabel, &f.changevalue},
        {kTriggerLabel, &f.trigvarname}};
    if (f.kind >= 0 && f.kind < kKindCount)
        if (auto m = checkStorableValue(field(values[f.kind].first), *values[f.kind].second))
            return m;
    if (auto m = checkStorableValue(field(kQueryLabel), f.queryvarname))
        return m;
    return checkStorableValue(field(kDescriptionLabel), f.description);
}

std::string_view historyDataCell(const HistoryData& d, int column) {
    switch (column) {
    case 0:
        return d.dbname;
    case 1:
        return d.dataname;
    case 2: {
        const int row = kindRow(d.type);
        return row < 0 ? std::string_view() : std::string_view(kHistoryKinds[row].shown);
    }
    case 3:
        return d.type == "period" ? std::string_view(d.periodvalue) : std::string_view();
    case 4:
        return d.type == "change" ? std::string_view(d.changevalue) : std::string_view();
    case 5:
        return d.type == "vartrigger" ? std::string_view(d.trigvarname) : std::string_view();
    case 6:
        return d.queryvarname;
    case 7:
        return d.description;
    default:
        return {};
    }
}

} // namespace rq

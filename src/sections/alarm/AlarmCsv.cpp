#include "sections/alarm/AlarmCsv.h"

#include "sections/alarm/AlarmEdits.h"
#include "sections/alarm/AlarmForms.h"

namespace rq {

namespace {

constexpr std::array<const char*, kAlarmSlotCount> kSlotColumns = {"high",    "high high", "low",
                                                                   "low low", "on",        "off"};

class AlarmTable : public ListTableExchange<AlarmDataItem> {
public:
    explicit AlarmTable(AlarmSection& section) : section_(section) {}
    std::vector<std::string> columns() const override {
        std::vector<std::string> c = {"group", "database", "data name", "priority",
                                      "status variable"};
        for (int s = 0; s < kAlarmSlotCount; ++s) {
            const std::string slot = kSlotColumns[s];
            c.push_back(slot + " variable");
            c.push_back(slot + " alarm text");
            if (isAnalogSlot(s))
                c.push_back(slot + " limit");
            c.push_back(slot + " restore text");
        }
        return c;
    }
    std::vector<std::size_t> keyColumns() const override { return {0, 1, 2}; }

protected:
    int sectionIndex() const override { return kAlarmSectionIndex; }
    std::vector<ItemList> itemLists() override {
        std::vector<ItemList> lists;
        AlarmSection& s = section_;
        for (std::size_t i = 0; i < s.groups().size(); ++i)
            lists.push_back({{s.groups()[i].name}, [&s, i]() -> std::vector<AlarmDataItem>& {
                                 return s.groups()[i].data;
                             }});
        return lists;
    }
    std::vector<std::size_t> listColumns() const override { return {0}; }
    CsvRow rowOf(std::size_t list, const AlarmDataItem& item) const override {
        const AlarmDataForm f = alarmDataFormFromRecord(item);
        CsvRow row = {itemList(list).where[0], f.dbname, f.dataname, f.priority, f.statusVar};
        for (int s = 0; s < kAlarmSlotCount; ++s) {
            const AlarmConditionForm& c = f.conditions[s];
            row.push_back(c.variable);
            row.push_back(c.text);
            if (isAnalogSlot(s))
                row.push_back(c.limit);
            row.push_back(c.restoreText);
        }
        return row;
    }
    std::optional<std::string> itemOf(const CsvRow& row, std::size_t,
                                      AlarmDataItem& item) const override {
        AlarmDataForm f;
        f.dbname = row[1];
        f.dataname = row[2];
        f.priority = row[3];
        f.statusVar = row[4];
        std::size_t at = 5;
        for (int s = 0; s < kAlarmSlotCount; ++s) {
            AlarmConditionForm& c = f.conditions[s];
            c.variable = row[at++];
            c.text = row[at++];
            if (isAnalogSlot(s))
                c.limit = row[at++];
            c.restoreText = row[at++];
        }
        if (auto message = validateAlarmDataForm(f))
            return message;
        item = alarmDataFromForm(f);
        return std::nullopt;
    }
    std::optional<DataRef> uniqueData(const AlarmDataItem& item) const override {
        return DataRef{item.dbname, item.dataname};
    }
    std::string dataExists() const override { return std::string(alarmtext::kDataExists); }
    std::string missingList(const CsvRow& row) const override {
        return "there is no alarm group \"" + row[0] + "\"";
    }

private:
    AlarmSection& section_;
};

} // namespace

std::unique_ptr<TableExchange> makeAlarmTable(AlarmSection& section) {
    return std::make_unique<AlarmTable>(section);
}

} // namespace rq

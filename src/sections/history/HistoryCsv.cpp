#include "sections/history/HistoryCsv.h"

#include "sections/history/HistoryForms.h"

namespace rq {

namespace {

constexpr int kHistoryFile = 7; // history.xml in the section table

class HistoryTable : public ListTableExchange<HistoryData> {
public:
    explicit HistoryTable(HistorySection& section) : section_(section) {}
    std::vector<std::string> columns() const override {
        return {"record",       "database",         "data name",      "type",       "period",
                "change value", "trigger variable", "query variable", "description"};
    }
    std::vector<std::size_t> keyColumns() const override { return {0, 1, 2}; }

protected:
    int sectionIndex() const override { return kHistoryFile; }
    std::vector<ItemList> itemLists() override {
        std::vector<ItemList> lists;
        HistorySection& s = section_;
        for (std::size_t i = 0; i < s.records().size(); ++i)
            lists.push_back({{s.records()[i].name}, [&s, i]() -> std::vector<HistoryData>& {
                                 return s.records()[i].data;
                             }});
        return lists;
    }
    std::vector<std::size_t> listColumns() const override { return {0}; }
    CsvRow rowOf(std::size_t list, const HistoryData& d) const override {
        return {itemList(list).where[0], d.dbname,      d.dataname,     d.type,       d.periodvalue,
                d.changevalue,           d.trigvarname, d.queryvarname, d.description};
    }
    std::optional<std::string> itemOf(const CsvRow& row, std::size_t,
                                      HistoryData& item) const override {
        const HistoryData given{row[1], row[2], row[3], row[4], row[5], row[6], row[7], row[8]};
        const HistoryDataForm form = historyDataForm(given);
        // The dialog offers the three kinds only; a record read with another
        // type keeps it.
        if (form.kind < 0 && given.type != item.type)
            return "unknown history log type \"" + given.type + "\" (period, change or vartrigger)";
        if (auto message = validateHistoryDataForm(form))
            return message;
        storeHistoryDataForm(form, item);
        return std::nullopt;
    }
    std::optional<DataRef> uniqueData(const HistoryData& item) const override {
        return DataRef{item.dbname, item.dataname};
    }
    std::string dataExists() const override { return std::string(historytext::kDataExists); }
    std::string missingList(const CsvRow& row) const override {
        return "there is no history record \"" + row[0] + "\"";
    }

private:
    HistorySection& section_;
};

} // namespace

std::unique_ptr<TableExchange> makeHistoryTable(HistorySection& section) {
    return std::make_unique<HistoryTable>(section);
}

} // namespace rq

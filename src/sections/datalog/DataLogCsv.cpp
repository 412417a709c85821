#include "sections/datalog/DataLogCsv.h"

#include "sections/datalog/DataLogEdits.h"
#include "sections/datalog/DataLogForms.h"

#include <algorithm>

namespace rq {

namespace {

class DataLogTable : public ListTableExchange<DataRef> {
public:
    explicit DataLogTable(DataLogSection& section) : section_(section) {}
    std::vector<std::string> columns() const override {
        return {"data log", "database", "data name"};
    }
    std::vector<std::size_t> keyColumns() const override { return {0, 1, 2}; }

protected:
    int sectionIndex() const override { return kDataLogSectionIndex; }
    std::vector<ItemList> itemLists() override {
        std::vector<ItemList> lists;
        DataLogSection& s = section_;
        for (std::size_t i = 0; i < s.logs.size(); ++i)
            if (s.logs[i].kind == DataLogKind::Variables)
                lists.push_back({{s.logs[i].name},
                                 [&s, i]() -> std::vector<DataRef>& { return s.logs[i].data; }});
        return lists;
    }
    std::vector<std::size_t> listColumns() const override { return {0}; }
    CsvRow rowOf(std::size_t list, const DataRef& ref) const override {
        return {itemList(list).where[0], ref.dbname, ref.dataname};
    }
    std::optional<std::string> itemOf(const CsvRow& row, std::size_t, DataRef& ref) const override {
        const LogDataForm form{row[2], row[1]};
        if (auto message = validateLogDataForm(form))
            return message;
        ref = logDataFromForm(form);
        return std::nullopt;
    }
    std::optional<DataRef> uniqueData(const DataRef& ref) const override { return ref; }
    std::string dataExists() const override { return std::string(datalogtext::kDataExists); }
    std::string missingList(const CsvRow& row) const override {
        return "there is no data log \"" + row[0] + "\" of chosen variables";
    }

private:
    DataLogSection& section_;
};

} // namespace

std::unique_ptr<TableExchange> makeDataLogTable(DataLogSection& section) {
    return std::make_unique<DataLogTable>(section);
}

} // namespace rq

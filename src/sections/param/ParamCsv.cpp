#include "sections/param/ParamCsv.h"

#include "sections/param/ParamEdits.h"
#include "sections/param/ParamForms.h"

#include <algorithm>

namespace rq {

// Whether an imported row gives the record the section holds.
static bool operator==(const ParamItem& a, const ParamItem& b) {
    return a.dbname == b.dbname && a.dataname == b.dataname && a.value == b.value;
}

namespace {

class ParamTable : public ListTableExchange<ParamItem> {
public:
    explicit ParamTable(ParamSection& section) : section_(section) {}
    std::vector<std::string> columns() const override {
        return {"database", "data name", "initial value"};
    }
    std::vector<std::size_t> keyColumns() const override { return {0, 1}; }

protected:
    int sectionIndex() const override { return kParamSectionIndex; }
    std::vector<ItemList> itemLists() override {
        ParamSection& s = section_;
        return {{{}, [&s]() -> std::vector<ParamItem>& { return s.items; }}};
    }
    std::vector<std::size_t> listColumns() const override { return {}; }
    CsvRow rowOf(std::size_t, const ParamItem& item) const override {
        return {item.dbname, item.dataname, item.value};
    }
    std::optional<std::string> itemOf(const CsvRow& row, std::size_t,
                                      ParamItem& item) const override {
        const ParamForm form{row[0], row[1], row[2]};
        if (auto message = validateParamForm(form))
            return message;
        item = paramFromForm(form);
        return std::nullopt;
    }
    std::optional<DataRef> uniqueData(const ParamItem& item) const override {
        return DataRef{item.dbname, item.dataname};
    }
    std::string dataExists() const override { return std::string(paramtext::kDataExists); }
    std::string missingList(const CsvRow&) const override { return {}; }

private:
    ParamSection& section_;
};

} // namespace

std::unique_ptr<TableExchange> makeParamTable(ParamSection& section) {
    return std::make_unique<ParamTable>(section);
}

} // namespace rq

#include "sections/hmidb/HmiDbCsv.h"

#include "core/DataTypes.h"
#include "core/EditStepGroup.h"
#include "sections/hmidb/HmiDbEdits.h"
#include "sections/hmidb/HmiDbForms.h"

namespace rq {

namespace {

enum Column { kGroup, kName, kDatabase, kDataName, kPeriod, kType, kLength, kInit };

bool wholeNumber(const std::string& text, bool sign) {
    std::size_t start = sign && !text.empty() && text[0] == '-' ? 1 : 0;
    if (text.size() <= start || text.size() - start > 9)
        return false;
    for (std::size_t i = start; i < text.size(); ++i)
        if (text[i] < '0' || text[i] > '9')
            return false;
    return true;
}

template <class Item> class HmiListTable : public ListTableExchange<Item> {
public:
    using typename ListTableExchange<Item>::ItemList;
    HmiListTable(HmiDbSection& section, std::string fixed) : section_(section), fixed_(fixed) {}
    std::vector<std::string> columns() const override {
        return {"group",          "name", "database", "data name",
                "refresh period", "type", "length",   "initial value"};
    }
    std::vector<std::size_t> keyColumns() const override { return {kGroup, kName}; }

protected:
    int sectionIndex() const override { return kHmiDbSectionIndex; }
    std::vector<ItemList> itemLists() override {
        std::vector<ItemList> lists;
        collect(fixedGroup<Item>(section_), fixed_, {}, lists);
        return lists;
    }
    std::vector<std::size_t> listColumns() const override { return {kGroup}; }
    std::string missingList(const CsvRow& row) const override {
        return "there is no data group \"" + row[kGroup] + "\"";
    }

private:
    // A group's sub-groups, then its items, as the file holds them.
    void collect(HmiDataGroup<Item>& group, const std::string& path, const HmiGroupPath& at,
                 std::vector<ItemList>& lists) {
        for (std::size_t g = 0; g < group.groups.size(); ++g) {
            HmiGroupPath sub = at;
            sub.push_back(g);
            collect(group.groups[g], path + "/" + group.groups[g].name, sub, lists);
        }
        HmiDbSection& s = section_;
        lists.push_back(
            {{path}, [&s, at]() -> std::vector<Item>& { return groupAt<Item>(s, at).items; }});
    }

    HmiDbSection& section_;
    std::string fixed_;
};

class HmiIoTable : public HmiListTable<HmiIoItem> {
public:
    explicit HmiIoTable(HmiDbSection& s) : HmiListTable(s, HmiDbSection::kIoGroupName) {}

protected:
    CsvRow rowOf(std::size_t list, const HmiIoItem& item) const override {
        return {itemList(list).where[0],     item.name, item.dbname, item.dataname,
                std::to_string(item.period), "",        "",          ""};
    }
    std::optional<std::string> itemOf(const CsvRow& row, std::size_t,
                                      HmiIoItem& item) const override {
        IoDataForm form{row[kName], row[kDatabase], row[kDataName], 0};
        if (!wholeNumber(row[kPeriod], true))
            return std::string(hmidbtext::kPeriodError);
        form.period = std::stoi(row[kPeriod]);
        if (auto message = validateIoDataForm(form))
            return message;
        item = ioItemFromForm(form);
        return std::nullopt;
    }
};

class HmiMemoryTable : public HmiListTable<HmiMemoryItem> {
public:
    explicit HmiMemoryTable(HmiDbSection& s) : HmiListTable(s, HmiDbSection::kMemoryGroupName) {}

protected:
    CsvRow rowOf(std::size_t list, const HmiMemoryItem& item) const override {
        return {itemList(list).where[0], item.name, "", "", "", item.type, item.length, item.init};
    }
    std::optional<std::string> itemOf(const CsvRow& row, std::size_t,
                                      HmiMemoryItem& item) const override {
        std::string type = row[kType];
        if (DataTypeTable::indexOfKeyword(type) < 0 && DataTypeTable::indexOfShown(type) >= 0)
            type = DataTypeTable::keywordAt(DataTypeTable::indexOfShown(type));
        if (DataTypeTable::indexOfKeyword(type) < 0 && !type.empty())
            return "unknown data type \"" + type + "\"";
        MemoryDataForm form = memoryFormFromItem(HmiMemoryItem{row[kName], type, "", row[kInit]});
        // A type of fixed size sets the length, as in the dialog.
        if (lengthEditable(form)) {
            if (!wholeNumber(row[kLength], false))
                return std::string(hmidbtext::kLengthError);
            form.length = std::stoi(row[kLength]);
        }
        if (auto message = validateMemoryDataForm(form))
            return message;
        item = memoryItemFromForm(form);
        return std::nullopt;
    }
};

// Rows of "io" first, then those of "memory", as in the file.
class HmiDbTable : public TableExchange {
public:
    explicit HmiDbTable(HmiDbSection& s) : io_(s), memory_(s) {}
    std::vector<std::string> columns() const override { return io_.columns(); }
    std::vector<std::size_t> keyColumns() const override { return io_.keyColumns(); }
    std::vector<CsvRow> rows() override {
        std::vector<CsvRow> out = io_.rows();
        ioRows_ = out.size();
        for (CsvRow& row : memory_.rows())
            out.push_back(std::move(row));
        return out;
    }
    std::optional<std::string> take(const CsvRow& row, std::size_t existing,
                                    bool* unchanged) override {
        const std::string& group = row[kGroup];
        const std::string fixed = group.substr(0, group.find('/'));
        if (fixed == HmiDbSection::kIoGroupName)
            return io_.take(row, existing, unchanged);
        if (fixed == HmiDbSection::kMemoryGroupName)
            return memory_.take(row, existing == kNewRow ? kNewRow : existing - ioRows_, unchanged);
        return "the group must start with \"io\" or \"memory\", not \"" + group + "\"";
    }
    void drop(std::size_t existing) override {
        if (existing < ioRows_)
            io_.drop(existing);
        else
            memory_.drop(existing - ioRows_);
    }
    std::unique_ptr<EditCommand> step(const std::string& name) override {
        std::vector<std::unique_ptr<EditCommand>> steps;
        if (auto io = io_.step(name))
            steps.push_back(std::move(io));
        if (auto memory = memory_.step(name))
            steps.push_back(std::move(memory));
        if (steps.empty())
            return nullptr;
        return std::make_unique<EditStepGroup>(name, std::move(steps));
    }

private:
    HmiIoTable io_;
    HmiMemoryTable memory_;
    std::size_t ioRows_ = 0;
};

} // namespace

std::unique_ptr<TableExchange> makeHmiDbTable(HmiDbSection& section) {
    return std::make_unique<HmiDbTable>(section);
}

} // namespace rq

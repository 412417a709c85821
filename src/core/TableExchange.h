#pragma once
// One section seen as a table of rows, for export to and import from a
// spreadsheet. A section's table names its columns and the columns that identify
// a row (its key); import checks each row with the same checks as the section's
// dialogs and gathers the accepted changes into one step of the project's history.
// The merge of a file with the section (src/exchange/) is the same for every
// section; each section's table lives in its own folder (<Name>Csv.h).

#include "core/Csv.h"
#include "core/DataTypes.h"
#include "core/EditCommand.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace rq {

class TableExchange {
public:
    static constexpr std::size_t kNewRow = static_cast<std::size_t>(-1);

    virtual ~TableExchange() = default;
    // The header texts, in file order.
    virtual std::vector<std::string> columns() const = 0;
    // The columns whose values identify a row.
    virtual std::vector<std::size_t> keyColumns() const = 0;
    // The section's rows in file order; the position of a row here is the
    // `existing` number of take() and drop().
    virtual std::vector<CsvRow> rows() = 0;
    // The merge's view of the same rows: gets them ready as rows() does and
    // returns their number; cell() then gives each text. A section with many rows
    // gives its records' own texts, so that no row is built; by default the rows
    // are built once and kept until the next call.
    virtual std::size_t prepareRows() {
        built_ = rows();
        return built_.size();
    }
    virtual std::string_view cell(std::size_t row, std::size_t column) const {
        return built_[row][column];
    }
    // A row of the file: new (existing == kNewRow) or standing for row `existing`
    // (same key). Returns the message of the check that refuses it, as the dialog
    // shows it; otherwise keeps the change for step(), or sets *unchanged when the
    // record it gives is the one the section holds.
    virtual std::optional<std::string> take(const CsvRow& row, std::size_t existing,
                                            bool* unchanged) = 0;
    // Row `existing` is to be removed.
    virtual void drop(std::size_t existing) = 0;
    // One step making every change taken and dropped (not yet made); null when
    // there is none.
    virtual std::unique_ptr<EditCommand> step(const std::string& name) = 0;

private:
    std::vector<CsvRow> built_;
};

// A step that swaps whole item lists of a section with new ones: redo puts the new
// lists in, undo the old ones back. Each list is found again by position when the
// step runs, so that other steps may move its container in between.
// The rows a merge leaves in one list: replaced rows in their places, dropped rows
// gone, the others in their order, added rows at the end.
template <class Item>
std::vector<Item> mergedRows(std::vector<Item> items,
                             std::vector<std::pair<std::size_t, Item>>& replaced,
                             const std::vector<std::size_t>& dropped, std::vector<Item>& added) {
    for (auto& [pos, item] : replaced)
        items[pos] = std::move(item);
    std::vector<bool> gone(items.size(), false);
    for (std::size_t pos : dropped)
        gone[pos] = true;
    std::size_t kept = 0;
    for (std::size_t p = 0; p < items.size(); ++p)
        if (!gone[p]) {
            if (kept != p)
                items[kept] = std::move(items[p]);
            ++kept;
        }
    items.resize(kept);
    for (Item& item : added)
        items.push_back(std::move(item));
    return items;
}

template <class List> class SwapItemLists : public EditCommand {
public:
    using Locate = std::function<List&()>;
    SwapItemLists(std::string name, int section) : EditCommand(std::move(name), section) {}
    void add(Locate locate, List other) {
        lists_.emplace_back(std::move(locate), std::move(other));
    }
    bool empty() const { return lists_.empty(); }
    void redo() override {
        for (auto& [locate, other] : lists_)
            std::swap(locate(), other);
    }
    void undo() override { redo(); }

private:
    std::vector<std::pair<Locate, List>> lists_;
};

// The table of a section whose rows are the items of ordered lists (the data of
// each alarm group, of each device, ...). The columns that name the list
// (`listColumns`) are part of the key: a row never moves to another list. A new
// row is appended to the end of its list.
template <class Item> class ListTableExchange : public TableExchange {
public:
    struct ItemList {
        CsvRow where; // the values of the list columns
        std::function<std::vector<Item>&()> locate;
    };

    std::vector<CsvRow> rows() override {
        lists_ = itemLists();
        places_.clear();
        std::vector<CsvRow> out;
        for (std::size_t l = 0; l < lists_.size(); ++l) {
            const std::vector<Item>& items = lists_[l].locate();
            for (std::size_t p = 0; p < items.size(); ++p) {
                out.push_back(rowOf(l, items[p]));
                places_.emplace_back(l, p);
            }
        }
        changes_.assign(lists_.size(), {});
        named_.assign(lists_.size(), std::nullopt);
        listsByWhere_.clear();
        return out;
    }

    std::optional<std::string> take(const CsvRow& row, std::size_t existing,
                                    bool* unchanged) override {
        *unchanged = false;
        std::size_t list;
        Item item{};
        if (existing != kNewRow) {
            list = places_[existing].first;
            item = lists_[list].locate()[places_[existing].second];
        } else {
            // The lists by their list columns, made on the first new row; the
            // first of lists that look alike is the one.
            if (listsByWhere_.empty())
                for (std::size_t l = 0; l < lists_.size(); ++l)
                    listsByWhere_.emplace(lists_[l].where, l);
            auto found = listsByWhere_.find(whereOf(row));
            if (found == listsByWhere_.end())
                return missingList(row);
            list = found->second;
        }
        if (auto message = itemOf(row, list, item))
            return message;
        Changes& c = changes_[list];
        if (existing != kNewRow) {
            if (item == lists_[list].locate()[places_[existing].second]) {
                *unchanged = true;
                return std::nullopt;
            }
            c.replaced.emplace_back(places_[existing].second, std::move(item));
            return std::nullopt;
        }
        if (std::optional<DataRef> data = uniqueData(item)) {
            // The data the list's items name, gathered on the first new row.
            std::optional<std::unordered_set<std::string>>& named = named_[list];
            if (!named) {
                named.emplace();
                for (const Item& other : lists_[list].locate())
                    if (std::optional<DataRef> d = uniqueData(other))
                        named->insert(keyOf(*d));
            }
            if (!named->insert(keyOf(*data)).second)
                return dataExists();
        }
        c.added.push_back(std::move(item));
        return std::nullopt;
    }

    void drop(std::size_t existing) override {
        changes_[places_[existing].first].dropped.push_back(places_[existing].second);
    }

    std::unique_ptr<EditCommand> step(const std::string& name) override {
        auto swap = std::make_unique<SwapItemLists<std::vector<Item>>>(name, sectionIndex());
        for (std::size_t l = 0; l < lists_.size(); ++l) {
            Changes& c = changes_[l];
            if (c.replaced.empty() && c.dropped.empty() && c.added.empty())
                continue;
            swap->add(lists_[l].locate,
                      mergedRows(lists_[l].locate(), c.replaced, c.dropped, c.added));
            c = {};
        }
        if (swap->empty())
            return nullptr;
        return swap;
    }

protected:
    // The section's index in the section table.
    virtual int sectionIndex() const = 0;
    // The section's lists in file order.
    virtual std::vector<ItemList> itemLists() = 0;
    // The positions of the list columns in a row.
    virtual std::vector<std::size_t> listColumns() const = 0;
    // The row of an item of list `list`.
    virtual CsvRow rowOf(std::size_t list, const Item& item) const = 0;
    // Stores a row into `item` (the record it stands for, or a new one) as the
    // dialog stores its form; the dialog's message when the check of OK refuses it.
    virtual std::optional<std::string> itemOf(const CsvRow& row, std::size_t list,
                                              Item& item) const = 0;
    // The data an item names, where two items of one list may not name the same
    // data (the add command's test); none where they may.
    virtual std::optional<DataRef> uniqueData(const Item&) const { return std::nullopt; }
    // The add command's message for a new row whose data an item of its list names.
    virtual std::string dataExists() const { return {}; }
    // The message for a new row whose list does not exist.
    virtual std::string missingList(const CsvRow& row) const = 0;

    const ItemList& itemList(std::size_t list) const { return lists_[list]; }

private:
    CsvRow whereOf(const CsvRow& row) const {
        CsvRow where;
        for (std::size_t c : listColumns())
            where.push_back(row[c]);
        return where;
    }
    struct Changes {
        std::vector<std::pair<std::size_t, Item>> replaced;
        std::vector<std::size_t> dropped;
        std::vector<Item> added;
    };
    std::vector<ItemList> lists_;
    std::vector<std::pair<std::size_t, std::size_t>> places_;
    static std::string keyOf(const DataRef& data) { return data.dbname + '\0' + data.dataname; }
    std::vector<Changes> changes_;
    std::vector<std::optional<std::unordered_set<std::string>>> named_;
    std::map<CsvRow, std::size_t> listsByWhere_;
};

} // namespace rq

#include "sections/rtdb/RtdbCsv.h"

#include "core/DataTypes.h"
#include "sections/rtdb/RtdbEdits.h"
#include "sections/rtdb/RtdbForms.h"

#include <map>
#include <optional>
#include <set>

namespace rq {

namespace {

enum Column { kDatabase, kGroupPath, kName, kType, kLength, kInit, kAlias, kDescription };

// The merge's changes to the item lists of some nodes. A node that only has rows
// replaced and added is changed in place, its name index updated for those rows
// alone; a node that loses rows has its whole list swapped with the merged one.
class MergeNodeItems : public EditCommand {
public:
    explicit MergeNodeItems(const std::string& name) : EditCommand(name, kRtdbSectionIndex) {}
    // Rows replaced in their places (each with the other version of its row) and
    // rows added at the end.
    void change(DataNode* node, std::vector<std::pair<std::size_t, DataItem>> replaced,
                std::vector<DataItem> added) {
        edits_.push_back({node, std::move(replaced), std::move(added), node->itemCount(), {}});
    }
    // The node's whole list, to be swapped with the node's.
    void swap(DataNode* node, std::vector<DataItem> items) {
        edits_.push_back({node, {}, {}, 0, std::move(items)});
    }
    bool empty() const { return edits_.empty(); }
    void redo() override {
        for (Edit& e : edits_) {
            if (e.whole) {
                swapWhole(e);
                continue;
            }
            swapReplaced(e);
            e.node->appendItems(e.added);
        }
    }
    void undo() override {
        for (auto it = edits_.rbegin(); it != edits_.rend(); ++it) {
            if (it->whole) {
                swapWhole(*it);
                continue;
            }
            it->node->truncateItems(it->count);
            swapReplaced(*it);
        }
    }

private:
    struct Edit {
        DataNode* node;
        std::vector<std::pair<std::size_t, DataItem>> replaced;
        std::vector<DataItem> added;
        std::size_t count; // the node's rows before the added ones
        std::optional<std::vector<DataItem>> whole;
    };
    static void swapWhole(Edit& e) {
        std::vector<DataItem> taken = e.node->takeItemsFrom(0);
        e.node->appendItems(std::move(*e.whole));
        e.whole = std::move(taken);
    }
    static void swapReplaced(Edit& e) {
        for (auto& [pos, item] : e.replaced) {
            DataItem other = e.node->item(pos);
            e.node->setItem(pos, std::move(item));
            item = std::move(other);
        }
    }
    std::vector<Edit> edits_;
};

std::string groupPath(const DataNode& node) {
    std::string path;
    for (const DataNode* n = &node; n && n->isGroup(); n = n->parent())
        path = path.empty() ? n->name() : n->name() + "/" + path;
    return path;
}

class RtdbTable : public TableExchange {
public:
    explicit RtdbTable(RtdbSection& section) : section_(section) {}

    std::vector<std::string> columns() const override {
        return {"database", "group path",    "name",  "type",
                "length",   "initial value", "alias", "description"};
    }
    std::vector<std::size_t> keyColumns() const override { return {kDatabase, kName}; }

    std::vector<CsvRow> rows() override {
        const std::size_t count = prepareRows();
        std::vector<CsvRow> out(count, CsvRow(kDescription + 1));
        for (std::size_t r = 0; r < count; ++r)
            for (std::size_t c = 0; c <= kDescription; ++c)
                out[r][c] = cell(r, c);
        return out;
    }

    std::size_t prepareRows() override {
        places_.clear();
        paths_.clear();
        changes_.clear();
        added_.clear();
        for (std::size_t d = 0; d < section_.databaseCount(); ++d)
            collect(section_.database(d));
        return places_.size();
    }

    std::string_view cell(std::size_t row, std::size_t column) const override {
        const Place& place = places_[row];
        const DataItem& item = place.node->item(place.pos);
        switch (column) {
        case kDatabase:
            return place.node->database()->name();
        case kGroupPath:
            return paths_[place.path];
        case kName:
            return item.name;
        case kAlias:
            return item.isAlias() ? item.target.view() : std::string_view();
        }
        if (item.isAlias())
            return {};
        switch (column) {
        case kType:
            return item.type;
        case kLength:
            return item.length;
        case kInit:
            return item.init;
        default:
            return item.description;
        }
    }

    std::optional<std::string> take(const CsvRow& row, std::size_t existing,
                                    bool* unchanged) override {
        *unchanged = false;
        DataNode* database = section_.findDatabase(row[kDatabase]);
        if (!database)
            return "there is no database \"" + row[kDatabase] + "\"";
        DataNode* node = groupAt(*database, row[kGroupPath]);
        if (!node)
            return "there is no data group \"" + row[kGroupPath] + "\" in database \"" +
                   row[kDatabase] + "\"";
        DataForm form;
        form.name = row[kName];
        form.alias = !row[kAlias].empty();
        form.aliasText = row[kAlias];
        if (!form.alias) {
            const std::string& type = row[kType];
            form.typeIndex = DataTypeTable::indexOfKeyword(type);
            if (form.typeIndex < 0)
                form.typeIndex = DataTypeTable::indexOfShown(type);
            if (form.typeIndex < 0 && !type.empty())
                return "unknown data type \"" + type + "\"";
            applyTypeSelection(form);
            // A type of fixed size sets the length, as in the dialog.
            if (lengthEditable(form)) {
                if (!wholeNumber(row[kLength]))
                    return std::string(rtdbtext::kLengthError);
                form.length = std::stoi(row[kLength]);
            }
            form.init = row[kInit];
            form.description = row[kDescription];
        }
        if (auto message = validateDataForm(form))
            return message;
        DataItem item = itemFromForm(form);
        if (existing == kNewRow) {
            std::set<std::string>& added = added_[database];
            if (database->nameInUse(item.name) || added.count(item.name.str()))
                return std::string(rtdbtext::kDataExists);
            added.insert(item.name.str());
            changes_[node].added.push_back(std::move(item));
            return std::nullopt;
        }
        DataNode* from = places_[existing].node;
        const std::size_t pos = places_[existing].pos;
        if (from == node && from->item(pos) == item) {
            *unchanged = true;
            return std::nullopt;
        }
        if (from == node) {
            changes_[node].replaced.emplace_back(pos, std::move(item));
        } else {
            changes_[from].dropped.push_back(pos);
            changes_[node].added.push_back(std::move(item));
        }
        return std::nullopt;
    }

    void drop(std::size_t existing) override {
        changes_[places_[existing].node].dropped.push_back(places_[existing].pos);
    }

    std::unique_ptr<EditCommand> step(const std::string& name) override {
        auto step = std::make_unique<MergeNodeItems>(name);
        for (auto& [node, c] : changes_) {
            if (c.dropped.empty())
                step->change(node, std::move(c.replaced), std::move(c.added));
            else
                step->swap(node, mergedRows(node->items(), c.replaced, c.dropped, c.added));
        }
        changes_.clear();
        added_.clear();
        if (step->empty())
            return nullptr;
        return step;
    }

private:
    struct Changes {
        std::vector<std::pair<std::size_t, DataItem>> replaced;
        std::vector<std::size_t> dropped;
        std::vector<DataItem> added;
    };

    static bool wholeNumber(const std::string& text) {
        if (text.empty() || text.size() > 9)
            return false;
        for (char c : text)
            if (c < '0' || c > '9')
                return false;
        return true;
    }

    // The file's order: a node's groups first, then its own items.
    void collect(DataNode& node) {
        for (std::size_t g = 0; g < node.childCount(); ++g)
            collect(node.child(g));
        if (node.itemCount() == 0)
            return;
        paths_.push_back(groupPath(node));
        for (std::size_t i = 0; i < node.itemCount(); ++i)
            places_.push_back({&node, i, paths_.size() - 1});
    }

    // The group at a path of names below `node` (as groupPath() writes it); null
    // when there is none. A name may hold '/' itself: each way of reading the path
    // is tried, in file order.
    static DataNode* groupAt(DataNode& node, std::string_view path) {
        if (path.empty())
            return &node;
        for (std::size_t c = 0; c < node.childCount(); ++c) {
            DataNode& child = node.child(c);
            const std::string& name = child.name();
            if (path == name)
                return &child;
            if (path.size() > name.size() && path.compare(0, name.size(), name) == 0 &&
                path[name.size()] == '/')
                if (DataNode* found = groupAt(child, path.substr(name.size() + 1)))
                    return found;
        }
        return nullptr;
    }

    // A row of the table: an item of a node, and the node's group path.
    struct Place {
        DataNode* node;
        std::size_t pos;
        std::size_t path;
    };

    RtdbSection& section_;
    std::vector<Place> places_;
    std::vector<std::string> paths_;
    std::map<DataNode*, Changes> changes_;
    std::map<DataNode*, std::set<std::string>> added_;
};

} // namespace

std::unique_ptr<TableExchange> makeRtdbTable(RtdbSection& section) {
    return std::make_unique<RtdbTable>(section);
}

} // namespace rq

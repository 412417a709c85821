#include "sections/rtdb/RtdbReferences.h"

#include "sections/rtdb/RtdbModel.h"

#include <unordered_map>
#include <unordered_set>

namespace rq {

namespace {

// Calls `visit` with every alias in `node` and below.
template <class Visit> void forEachAliasIn(const DataNode& node, Visit visit) {
    for (const DataItem& item : node.items())
        if (item.isAlias())
            visit(item);
    for (const auto& child : node.children())
        forEachAliasIn(*child, visit);
}

DataUse aliasUse(const std::string& db, std::string_view name, const DataItem& alias) {
    return {db + "." + std::string(name), "rtdb.xml: alias \"" + alias.name + "\": target"};
}

void collectNames(const DataNode& node, std::vector<std::string>& out) {
    for (const DataItem& item : node.items())
        out.push_back(item.name.str());
    for (const auto& child : node.children())
        collectNames(*child, out);
}

std::string places(std::size_t n) {
    return std::to_string(n) + (n == 1 ? " place" : " places");
}

bool severalItems(const std::vector<DataUse>& uses) {
    for (const DataUse& u : uses)
        if (u.item != uses.front().item)
            return true;
    return false;
}

} // namespace

std::vector<DataUse> usesOfItems(RtdbReferences& refs, const DataNode& node,
                                 const std::vector<std::string>& names) {
    std::vector<DataUse> out;
    const DataNode* database = node.database();
    if (!database)
        return out;
    const std::string& db = database->name();
    std::unordered_set<std::string_view> deleted(names.begin(), names.end());
    // The aliases by the data they stand for, found in one walk of the database.
    std::unordered_map<std::string_view, std::vector<const DataItem*>> aliases;
    forEachAliasIn(*database, [&](const DataItem& a) { aliases[a.target].push_back(&a); });
    for (const std::string& name : names) {
        for (DataUse& u : refs.usesOf(db, name))
            out.push_back(std::move(u));
        // An alias that goes with the data is no use left behind.
        if (auto it = aliases.find(name); it != aliases.end())
            for (const DataItem* a : it->second)
                if (!deleted.count(a->name))
                    out.push_back(aliasUse(db, name, *a));
    }
    return out;
}

std::vector<DataUse> usesOfNode(RtdbReferences& refs, const DataNode& node) {
    std::vector<std::string> names;
    collectNames(node, names);
    return usesOfItems(refs, node, names);
}

std::string usesListing(const std::vector<DataUse>& uses) {
    const bool prefix = severalItems(uses);
    std::string s;
    std::size_t n = 0;
    for (const DataUse& u : uses) {
        if (n++ == rtdbtext::kUsesShown)
            break;
        if (prefix)
            s += u.item + ": ";
        s += u.line;
        s += '\n';
    }
    if (uses.size() > rtdbtext::kUsesShown)
        s += "and " + std::to_string(uses.size() - rtdbtext::kUsesShown) + " more\n";
    return s;
}

std::optional<std::string> deleteUsesQuestion(const std::vector<DataUse>& uses) {
    if (uses.empty())
        return std::nullopt;
    const std::string head = severalItems(uses) ? "The data to delete is used in "
                                                : "\"" + uses.front().item + "\" is used in ";
    return head + places(uses.size()) + ":\n" + usesListing(uses) + "Delete anyway?";
}

std::optional<std::string> renameUsesQuestion(const std::vector<DataUse>& uses,
                                              const std::string& item, const std::string& newItem,
                                              bool database) {
    if (uses.empty())
        return std::nullopt;
    if (database)
        return "The data of database \"" + item + "\" is used in " + places(uses.size()) + ":\n" +
               usesListing(uses) + "Update these references to database \"" + newItem + "\"?";
    return "\"" + item + "\" is used in " + places(uses.size()) + ":\n" + usesListing(uses) +
           "Update these references to \"" + newItem + "\"?";
}

} // namespace rq

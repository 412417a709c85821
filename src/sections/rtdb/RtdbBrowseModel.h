#pragma once
// The model behind the "Realtime Database Browse" dialog, through which other
// editors pick a real-time variable: the tree (the project's databases and groups,
// then a root "system database" holding the system databases), the items listed
// for the selected node, and the reference returned on OK.

#include "core/DataTypes.h"
#include "sections/rtdb/RtdbSection.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rq {

enum RtdbBrowseColumn : int {
    kBrowseDatabase = 0, // hidden
    kBrowseName,
    kBrowseType,
    kBrowseDescription,
    kBrowseLength,
    kBrowseInit,
    kBrowseAlias,
    kBrowseColumnCount
};

struct RtdbBrowseColumnInfo {
    const char* title;
    int width; // 0 = hidden
};
inline constexpr std::array<RtdbBrowseColumnInfo, kBrowseColumnCount> kRtdbBrowseColumns = {{
    {"database name", 0},
    {"variable name", 100},
    {"data type", 50},
    {"description", 100},
    {"length", 50},
    {"initial value", 50},
    {"alias", 50},
}};

class RtdbBrowseModel {
public:
    static constexpr const char* kCaption = "Realtime Database Browse";
    static constexpr const char* kSystemRootText = "system database";

    // `system` may be null (no system database in the program directory).
    RtdbBrowseModel(const RtdbSection& project, const RtdbSection* system);

    // Tree: the children of projectRoot() (the project's databases, with their
    // groups), then one node labelled kSystemRootText whose children are the
    // children of systemRoot().
    const DataNode& projectRoot() const { return project_.root(); }
    const DataNode* systemRoot() const { return system_ ? &system_->root() : nullptr; }

    // One exclusion flag per row of the type table; all clear at first. Items of an
    // excluded type are not listed; aliases are always listed.
    void setExcluded(int typeIndex, bool excluded);
    bool excluded(int typeIndex) const;

    // Selects a tree node (null or a root: nothing listed) and lists its own items.
    void select(const DataNode* node);
    const DataNode* selected() const { return node_; }
    // The name of the nearest database at or above the selected node, or empty.
    const std::string& databaseName() const { return dbname_; }

    std::size_t rowCount() const { return rows_.size(); }
    const DataItem& rowItem(std::size_t row) const;
    std::string_view cell(std::size_t row, int column) const;
    // OK: the selected row's database name and variable name; nothing for a row
    // out of range.
    std::optional<DataRef> reference(std::size_t row) const;

    // The name of the nearest database at or above a node, or empty.
    static std::string databaseNameOf(const DataNode* node);

private:
    const RtdbSection& project_;
    const RtdbSection* system_;
    std::array<bool, 11> excluded_{};
    const DataNode* node_ = nullptr;
    std::string dbname_;
    std::vector<std::size_t> rows_; // indexes into node_->items()
};

} // namespace rq

#pragma once
// The records of the real-time database: a tree of container nodes (the section's
// root, databases, data groups nested to any depth), each owning an ordered list of
// data items. Nodes are owned by their parent through unique_ptr, so a node's
// address stays valid until the node itself is removed (the project tree keeps
// pointers to them).
//
// Within one database, data names, alias names and group names share one namespace
// across all its groups. Every database keeps an index of that namespace which the
// mutating operations below keep up to date, so that the namespace test and the
// look-up of a data name are O(1) whatever the size of the database.

#include "core/SharedText.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace rq {

enum class RtdbNodeKind : int {
    Root = 0,     // the section's own node ("real-time database")
    Database = 1, // a database, child of the root
    Group = 2,    // a data group, child of a database or of a group
};

enum class DataItemKind : int {
    Data = 0,
    Alias = 1,
};

// One data item or alias. All fields are text, as the file holds them; a project
// holds up to millions of items whose fields are mostly empty or one of a few
// keywords, so each field is a shared immutable text (an empty one costs nothing,
// equal ones read from a file share one buffer).
struct DataItem {
    DataItemKind kind = DataItemKind::Data;
    SharedText name;        // the data name; for an alias the alias name
    SharedText type;        // type keyword (data only)
    SharedText length;      // decimal text (data only)
    SharedText init;        // initial value (data only)
    SharedText target;      // the data an alias stands for (alias only)
    SharedText description; // data only

    bool isAlias() const { return kind == DataItemKind::Alias; }

    static DataItem makeData(SharedText name, SharedText type, SharedText length, SharedText init,
                             SharedText description);
    static DataItem makeAlias(SharedText name, SharedText target);

    bool operator==(const DataItem&) const = default;
};

// How a name of a database's namespace is used: counts, because a file may hold
// the same data name twice (the reader does not refuse it).
struct RtdbNameUse {
    std::uint32_t data = 0;
    std::uint32_t alias = 0;
    std::uint32_t group = 0;
    std::uint32_t total() const { return data + alias + group; }
};

// The namespace index of one database: an open-addressing table whose keys are the
// items' own name texts (shared, not copied); group names get a text of their own.
class RtdbNameIndex {
public:
    // The use of a name; null when the name is not used. Valid until the next change.
    const RtdbNameUse* find(std::string_view name) const;
    bool contains(std::string_view name) const { return find(name) != nullptr; }
    std::size_t size() const { return count_; }

    void addItem(const DataItem& item);
    void removeItem(const DataItem& item);
    void addGroup(std::string_view name);
    void removeGroup(std::string_view name);
    void clear();
    void reserve(std::size_t count);

private:
    // A free slot has no use (total() == 0): a name is dropped with its last use.
    struct Slot {
        SharedText key;
        std::uint32_t hash = 0;
        RtdbNameUse use;
    };
    static std::uint32_t hashOf(std::string_view name);
    // The slot holding `name`, or the free slot where it would go.
    std::size_t probe(std::string_view name, std::uint32_t hash) const;
    RtdbNameUse& use(const SharedText& name);
    void drop(std::string_view name, std::uint32_t RtdbNameUse::*field);
    void grow(std::size_t capacity);

    std::vector<Slot> slots_; // empty, or a power of two in size
    std::size_t count_ = 0;
};

class DataNode {
public:
    // A new root node; databases and groups are made by addDatabase / addGroup.
    DataNode();
    DataNode(const DataNode&) = delete;
    DataNode& operator=(const DataNode&) = delete;
    ~DataNode();

    RtdbNodeKind kind() const { return kind_; }
    bool isRoot() const { return kind_ == RtdbNodeKind::Root; }
    bool isDatabase() const { return kind_ == RtdbNodeKind::Database; }
    bool isGroup() const { return kind_ == RtdbNodeKind::Group; }

    // The node's label (empty for the root).
    const std::string& name() const { return name_; }
    // Databases only: synchronised database (default true).
    bool sync() const { return sync_; }
    DataNode* parent() const { return parent_; }
    // The nearest database at or above this node; null for the root.
    DataNode* database();
    const DataNode* database() const;

    // Child nodes: the databases under the root, data groups under a database or
    // a group; in tree order.
    std::size_t childCount() const { return children_.size(); }
    DataNode& child(std::size_t index) const { return *children_[index]; }
    const std::vector<std::unique_ptr<DataNode>>& children() const { return children_; }
    // Index of a direct child, -1 when it is not one.
    int indexOfChild(const DataNode* node) const;

    // The node's own items in list order (a list view shows row i = item i).
    const std::vector<DataItem>& items() const { return items_; }
    std::size_t itemCount() const { return items_.size(); }
    const DataItem& item(std::size_t index) const { return items_[index]; }
    // Index of the first own item with that name, -1 when none.
    int findItem(std::string_view name) const;

    // The namespace of this node's database (for the root: nothing is in use).
    // True when a data, alias or group of that name exists anywhere in it.
    bool nameInUse(std::string_view name) const;
    // True when a data item or alias of that name exists anywhere in the database.
    bool hasItemNamed(std::string_view name) const;
    // The database's index; null on the root.
    const RtdbNameIndex* nameIndex() const;

    // Mutating operations; each keeps the database's index up to date.
    // Root only: appends a database.
    DataNode& addDatabase(std::string name, bool sync = true);
    // Database or group only: appends a data group.
    DataNode& addGroup(std::string name);
    // A database or data group not yet in a tree, for insertChild.
    static std::unique_ptr<DataNode> makeDatabase(std::string name, bool sync = true);
    static std::unique_ptr<DataNode> makeGroup(std::string name);
    // Takes a child out with all it holds (null for a bad index); insertChild puts
    // such a node back as the child at `index` (a database under the root, a group
    // under a database or group), indexing its names again.
    std::unique_ptr<DataNode> takeChild(std::size_t index);
    void insertChild(std::size_t index, std::unique_ptr<DataNode> node);
    // Removes a child with all it holds.
    void removeChild(std::size_t index);
    void removeChild(const DataNode* node);
    void setName(std::string name);
    void setSync(bool sync) { sync_ = sync; }

    // Database or group only.
    void addItem(DataItem item);
    void setItem(std::size_t index, DataItem item);
    void removeItem(std::size_t index);
    // Removes every own item whose name is one of `names`, in one pass; returns the
    // number removed.
    std::size_t removeItemsNamed(const std::vector<std::string>& names);
    // The same, giving back each removed item with its position before the removal,
    // in increasing position; restoreItems puts such a list back where it was.
    std::vector<std::pair<std::size_t, DataItem>>
    takeItemsNamed(const std::vector<std::string>& names);
    void restoreItems(const std::vector<std::pair<std::size_t, DataItem>>& removed);
    // Appends items / removes every item from position `count` on.
    void appendItems(const std::vector<DataItem>& items);
    void appendItems(std::vector<DataItem>&& items);
    void truncateItems(std::size_t count);
    // Moves the items from position `count` on out of the list.
    std::vector<DataItem> takeItemsFrom(std::size_t count);
    void reserveItems(std::size_t count) { items_.reserve(count); }
    // Database only: sizes the namespace index for that many names.
    void reserveNames(std::size_t count);

private:
    DataNode(RtdbNodeKind kind, DataNode* parent, std::string name);
    RtdbNameIndex* index();
    void unindexSubtree(RtdbNameIndex& index) const;
    void indexSubtree(RtdbNameIndex& index) const;

    RtdbNodeKind kind_ = RtdbNodeKind::Root;
    std::string name_;
    bool sync_ = true;
    DataNode* parent_ = nullptr;
    std::vector<std::unique_ptr<DataNode>> children_;
    std::vector<DataItem> items_;
    std::unique_ptr<RtdbNameIndex> names_; // databases only
};

} // namespace rq

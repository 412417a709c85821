// The database namespace index kept by the model's own operations.

#include "sections/rtdb/RtdbModel.h"
#include "sections/rtdb/RtdbSection.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

using rq::DataItem;
using rq::DataNode;

DataItem data(const char* name) {
    return DataItem::makeData(name, "char", "1", "0", "");
}

// One namespace per database, groups at every depth included; the exact counts
// through every mutation are checked below.
TEST(RtdbNameIndex, OneNamespacePerDatabase) {
    DataNode root;
    DataNode& db = root.addDatabase("db");
    DataNode& other = root.addDatabase("other");
    DataNode& g2 = db.addGroup("g1").addGroup("g2");
    g2.addItem(data("deep"));
    g2.addItem(DataItem::makeAlias("al", "deep"));
    other.addItem(data("elsewhere"));
    for (const char* n : {"g1", "g2", "deep", "al"}) {
        EXPECT_TRUE(g2.nameInUse(n)) << n;
        EXPECT_TRUE(db.nameInUse(n)) << n;
        EXPECT_FALSE(other.nameInUse(n)) << n;
    }
    EXPECT_FALSE(db.nameInUse("elsewhere"));
    EXPECT_FALSE(root.nameInUse("deep"));
    EXPECT_TRUE(db.hasItemNamed("al"));
    EXPECT_FALSE(db.hasItemNamed("g2"));
    EXPECT_EQ(g2.removeItemsNamed({"al", "absent"}), 1u);
}

// The index against a count made afresh from the tree.
void expectIndexExact(const DataNode& db) {
    std::map<std::string, rq::RtdbNameUse> counted;
    auto walk = [&](auto& self, const DataNode& n) -> void {
        if (n.isGroup())
            ++counted[n.name()].group;
        for (const DataItem& item : n.items())
            ++(item.isAlias() ? counted[item.name.str()].alias : counted[item.name.str()].data);
        for (const auto& c : n.children())
            self(self, *c);
    };
    walk(walk, db);
    const rq::RtdbNameIndex& index = *db.nameIndex();
    ASSERT_EQ(index.size(), counted.size());
    for (const auto& [name, use] : counted) {
        const rq::RtdbNameUse* u = index.find(name);
        ASSERT_TRUE(u) << name;
        EXPECT_EQ(u->data, use.data) << name;
        EXPECT_EQ(u->alias, use.alias) << name;
        EXPECT_EQ(u->group, use.group) << name;
    }
}

// A scripted run of every mutation, on enough names that the table grows and its
// removals move other names about.
TEST(RtdbNameIndex, StaysExactThroughEveryMutation) {
    DataNode root;
    DataNode& db = root.addDatabase("db");
    DataNode& g = db.addGroup("g");
    DataNode& h = g.addGroup("h");
    for (int i = 0; i < 300; ++i)
        (i % 3 ? g : h).addItem(data(("v" + std::to_string(i)).c_str()));
    h.addItem(DataItem::makeAlias("v7", "v1")); // an alias sharing a data name
    h.addItem(data("h"));                       // a data item sharing a group name
    expectIndexExact(db);

    g.setItem(0, data("renamed"));
    g.removeItem(1);
    for (int i = 0; i < 300; i += 7)
        g.removeItemsNamed({"v" + std::to_string(i)});
    auto taken = h.takeItemsNamed({"v0", "v3", "v7", "h"});
    expectIndexExact(db);
    h.restoreItems(taken);
    expectIndexExact(db);

    const std::size_t kept = g.itemCount();
    g.appendItems(std::vector<DataItem>{data("a1"), data("a2")});
    std::vector<DataItem> more{data("a3"), data("renamed")};
    g.appendItems(more);
    expectIndexExact(db);
    g.truncateItems(kept + 1);
    auto tail = h.takeItemsFrom(h.itemCount() / 2);
    expectIndexExact(db);

    g.setName("g2");
    DataNode& k = h.addGroup("k");
    k.appendItems(std::move(tail));
    db.setName("db2");
    auto moved = g.takeChild(0); // h with k below it
    expectIndexExact(db);
    db.insertChild(0, std::move(moved));
    expectIndexExact(db);
    db.child(0).removeChild(std::size_t(0)); // k
    db.removeChild(&db.child(1));            // g2
    expectIndexExact(db);
    EXPECT_FALSE(db.nameInUse("renamed"));
    EXPECT_TRUE(db.nameInUse("h"));
}

TEST(RtdbModel, NodeRelations) {
    DataNode root;
    DataNode& db = root.addDatabase("db", false);
    DataNode& g = db.addGroup("g").addGroup("h");
    EXPECT_EQ(root.kind(), rq::RtdbNodeKind::Root);
    EXPECT_EQ(db.kind(), rq::RtdbNodeKind::Database);
    EXPECT_EQ(g.kind(), rq::RtdbNodeKind::Group);
    EXPECT_FALSE(db.sync());
    EXPECT_EQ(g.database(), &db);
    EXPECT_EQ(db.database(), &db);
    EXPECT_EQ(root.database(), nullptr);
    EXPECT_EQ(root.indexOfChild(&db), 0);
    EXPECT_EQ(root.indexOfChild(&g), -1);
}

} // namespace

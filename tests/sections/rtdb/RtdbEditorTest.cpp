// The real-time database editor without a display: validators, command flows with
// a scripted dialog host and a recording sink, list rows and the browse model.

#include "core/ValueChecks.h"
#include "sections/rtdb/RtdbBrowseModel.h"
#include "sections/rtdb/RtdbCommands.h"
#include "sections/rtdb/RtdbListModel.h"
#include "support/EditorTestKit.h"

#include <gtest/gtest.h>

#include <optional>

namespace rq {
// Readable failure output for item comparisons.
void PrintTo(const DataItem& i, std::ostream* os) {
    *os << (i.isAlias() ? "alias " : "data ") << i.name << " type=" << i.type
        << " length=" << i.length << " init=" << i.init << " target=" << i.target
        << " description=" << i.description;
}
} // namespace rq

namespace {

using namespace rq;
using Texts = std::vector<std::string>;

struct Dialogs : RtdbDialogHost {
    explicit Dialogs(MessageSink& s) : sink(s) {}
    MessageSink& sink;
    // (The database and group dialogs have no check of their own: the command
    // checks what OK gave.)
    rqtest::ScriptedDialog<DatabaseForm> database;
    rqtest::ScriptedDialog<DataGroupForm> group;
    rqtest::ScriptedDialog<DataForm> data;
    rqtest::ScriptedDialog<BatchDataForm> batch;
    bool databaseDialog(DatabaseForm& f) override { return database.answer(f, sink); }
    bool dataGroupDialog(DataGroupForm& f) override { return group.answer(f, sink); }
    bool dataDialog(DataForm& f) override { return data.answer(f, sink, validateDataForm); }
    bool batchDataDialog(BatchDataForm& f) override {
        return batch.answer(f, sink, validateBatchDataForm);
    }
};

DataForm dataForm(std::string name, int type, int length, std::string init = "0") {
    DataForm f;
    f.name = std::move(name);
    f.typeIndex = type;
    f.length = length;
    f.init = std::move(init);
    return f;
}

std::string refused(const char* field, const char* what) {
    return std::string("The field \"") + field + "\" must not hold " + what +
           ": the project file stores it as it is and could not be read again.";
}

DataForm aliasForm(std::string name, std::string target) {
    DataForm f;
    f.alias = true;
    f.name = std::move(name);
    f.aliasText = std::move(target);
    return f;
}

class RtdbEditorTest : public ::testing::Test {
protected:
    RtdbEditorTest() {
        db = &rtdb.root().addDatabase("plant");
        group = &db->addGroup("tanks");
        group->addItem(DataItem::makeData("Tank3", "float", "4", "0", "level"));
        group->addItem(DataItem::makeAlias("T3", "Tank3"));
        db->addItem(DataItem::makeData("Pump", "bit", "1", "0", ""));
        other = &rtdb.root().addDatabase("other", false);
        before = text();
    }
    std::string text() const { return rqtest::written(rtdb); }
    bool unchanged() const { return text() == before; }

    RtdbSection rtdb;
    rqtest::RecordingSink sink;
    Dialogs dialogs{sink};
    UndoHistory history;
    RtdbEditor ed{rtdb, dialogs, sink, history};
    DataNode* db = nullptr;
    DataNode* group = nullptr;
    DataNode* other = nullptr;
    std::string before;
};

TEST(RtdbValidators, ChecksInTheirFixedOrder) {
    struct Case {
        const char* what;
        DataForm form;
        std::optional<std::string> message;
    } cases[] = {
        {"valid", dataForm("x", 7, 4), std::nullopt},
        {"empty initial value passes", dataForm("x", 7, 4, ""), std::nullopt},
        {"alias without alias text", aliasForm("x", ""), "Please input data name and alias!"},
        {"alias without name", aliasForm("", "t"), "Please input data name and alias!"},
        {"alias skips the other checks", aliasForm("x", "t"), std::nullopt},
        {"name before length", dataForm("", 0, 0), "Please input data name and initial value!"},
        {"length 0", dataForm("x", 9, 0), "data length error!"},
        {"negative length", dataForm("x", 10, -3), "data length error!"},
        {"bit of 7", dataForm("x", 0, 7), std::nullopt},
        {"bit of 8", dataForm("x", 0, 8), "bit data length error(must be 1~7)!"},
        {"string of 8", dataForm("x", 9, 8), std::nullopt},
        {"no type selected", dataForm("x", -1, 1), std::nullopt},
        {"checks of the dialog first", dataForm("a&b", 9, 0), "data length error!"},
        {"name rtdb.xml cannot store", dataForm("a&b", 7, 4), refused("Data", "'&'")},
        {"initial value", dataForm("x", 7, 4, "\"1\""), refused("Initial Value", "'\"'")},
        {"alias target", aliasForm("x", "<t"), refused("Alias", "'<'")},
        {"initial value beyond the type, last", dataForm("x", 3, 2, "40000"),
         checkInitialValue(3, 2, "40000")},
        {"string longer than its length", dataForm("x", 9, 2, "abc"),
         checkInitialValue(9, 2, "abc")},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(validateDataForm(c.form), c.message) << c.what;
        BatchDataForm b;
        b.data = c.form;
        EXPECT_EQ(validateBatchDataForm(b), c.message) << c.what;
    }
    // A batch range that would exhaust the memory is refused; the largest one passes.
    BatchDataForm huge;
    huge.data = dataForm("x", 7, 4);
    huge.from = 0;
    huge.to = 2000000000;
    EXPECT_EQ(validateBatchDataForm(huge), std::string(kBatchTooLargeMessage));
    huge.from = -2000000000;
    huge.to = static_cast<int>(kMaxBatchData) - 2000000001;
    EXPECT_EQ(validateBatchDataForm(huge), std::nullopt);
}

TEST(RtdbForms, TypeSelectionLengthAndStoredItem) {
    DataForm f = newDataForm();
    f.length = 12;
    f.typeIndex = 8; // double
    applyTypeSelection(f);
    EXPECT_EQ(f.length, 8);
    EXPECT_FALSE(lengthEditable(f));
    f.typeIndex = 9; // string keeps what was there and opens the field
    applyTypeSelection(f);
    EXPECT_EQ(f.length, 8);
    EXPECT_TRUE(lengthEditable(f));

    f.name = "s";
    f.length = 16;
    EXPECT_EQ(itemFromForm(f), DataItem::makeData("s", "string", "16", "0", ""));
    f.typeIndex = -1;
    EXPECT_EQ(itemFromForm(f).type, "");
    EXPECT_EQ(itemFromForm(aliasForm("a", "s")), DataItem::makeAlias("a", "s"));

    DataForm fromData = dataFormFromItem(DataItem::makeData("u", "ushort", "", "3", "d"));
    EXPECT_EQ(fromData.typeIndex, 4);
    EXPECT_EQ(fromData.length, 2); // empty stored length shows the type's size
    EXPECT_FALSE(fromData.alias);
    EXPECT_EQ(fromData.description, "d");
    DataForm fromAlias = dataFormFromItem(DataItem::makeAlias("a", "u"));
    EXPECT_TRUE(fromAlias.alias);
    EXPECT_EQ(fromAlias.aliasText, "u");
    EXPECT_EQ(fromAlias.typeIndex, -1);
}

TEST_F(RtdbEditorTest, AddDatabase) {
    dialogs.database.script = {std::nullopt, DatabaseForm{"", true}, DatabaseForm{"plant", true}};
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(addDatabase(ed).changed);
    EXPECT_TRUE(unchanged());
    EXPECT_EQ(sink.texts(), Texts{"The database already exist!"});
    EXPECT_TRUE(dialogs.database.opened[0].sync); // checked by default

    dialogs.database.script = {DatabaseForm{"Plant", false}};
    RtdbEditResult r = addDatabase(ed);
    EXPECT_TRUE(r.changed);
    ASSERT_EQ(rtdb.databaseCount(), 3u);
    EXPECT_EQ(r.added, &rtdb.database(2));
    EXPECT_EQ(r.added->name(), "Plant");
    EXPECT_FALSE(r.added->sync());
}

TEST_F(RtdbEditorTest, AddDataGroupTestsTheWholeDatabase) {
    EXPECT_FALSE(addDataGroup(ed, &rtdb.root()).changed);
    EXPECT_FALSE(addDataGroup(ed, nullptr).changed);
    EXPECT_TRUE(dialogs.group.opened.empty());

    dialogs.group.script = {std::nullopt, DataGroupForm{""}, DataGroupForm{"Tank3"},
                            DataGroupForm{"tanks"}};
    for (int i = 0; i < 4; ++i)
        EXPECT_FALSE(addDataGroup(ed, db).changed);
    EXPECT_TRUE(unchanged());
    EXPECT_EQ(sink.texts(),
              (Texts{"The data group already exist!", "The data group already exist!"}));

    dialogs.group.script = {DataGroupForm{"inner"}, DataGroupForm{"inner"}};
    RtdbEditResult r = addDataGroup(ed, group);
    ASSERT_TRUE(r.changed);
    EXPECT_EQ(r.added->parent(), group);
    EXPECT_TRUE(addDataGroup(ed, other).changed); // another database's namespace
}

TEST_F(RtdbEditorTest, AddDataValidatesThenTestsDuplicates) {
    EXPECT_FALSE(addData(ed, &rtdb.root()).changed);
    EXPECT_TRUE(dialogs.data.opened.empty());

    // A failed check keeps the dialog open; the corrected entry is a duplicate of a
    // group name in the same database.
    dialogs.data.script = {dataForm("x", 0, 8), dataForm("tanks", 0, 1)};
    EXPECT_FALSE(addData(ed, db).changed);
    dialogs.data.script = {std::nullopt};
    EXPECT_FALSE(addData(ed, group).changed);
    EXPECT_TRUE(unchanged());
    EXPECT_EQ(sink.texts(),
              (Texts{"bit data length error(must be 1~7)!", "The data already exist!"}));
    EXPECT_EQ(dialogs.data.opened[0].init, "0");

    dialogs.data.script = {dataForm("Level", 7, 4, "1.5"), aliasForm("L", "Level"),
                           dataForm("Tank3", 1, 1)};
    EXPECT_TRUE(addData(ed, group).changed);
    EXPECT_TRUE(addData(ed, group).changed);
    EXPECT_TRUE(addData(ed, other).changed); // the same name in another database
    ASSERT_EQ(group->itemCount(), 4u);
    EXPECT_EQ(group->item(2), DataItem::makeData("Level", "float", "4", "1.5", ""));
    EXPECT_EQ(group->item(3), DataItem::makeAlias("L", "Level"));
    EXPECT_TRUE(rtdb.hasData("plant", "L"));
    EXPECT_TRUE(rtdb.hasData("other", "Tank3"));
}

TEST_F(RtdbEditorTest, BatchAdd) {
    BatchDataForm f;
    f.data = dataForm("Tank", 3, 2);
    f.from = 1;
    f.to = 4;
    BatchDataForm reversed = f;
    reversed.from = 5;
    dialogs.batch.script = {std::nullopt, f, reversed};
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(batchAddData(ed, db).changed);
    EXPECT_TRUE(unchanged());
    EXPECT_EQ(sink.texts(), Texts{"dataTank3already exist!"});

    f.data = aliasForm("A", "Tank");
    f.from = 8;
    f.to = 10;
    dialogs.batch.script = {f};
    EXPECT_TRUE(batchAddData(ed, group).changed);
    ASSERT_EQ(group->itemCount(), 5u);
    EXPECT_EQ(group->item(2), DataItem::makeAlias("A8", "Tank8"));
    EXPECT_EQ(group->item(4), DataItem::makeAlias("A10", "Tank10"));

    f.data = dataForm("T", 5, 4, "7");
    f.data.description = "d";
    f.from = -1;
    f.to = 1;
    dialogs.batch.script = {f};
    EXPECT_TRUE(batchAddData(ed, other).changed);
    ASSERT_EQ(other->itemCount(), 3u);
    EXPECT_EQ(other->item(0), DataItem::makeData("T-1", "long", "4", "7", "d"));
    EXPECT_EQ(other->item(2).name, "T1");
}

TEST_F(RtdbEditorTest, ModifyData) {
    EXPECT_FALSE(modifyData(ed, group, {}).changed);
    EXPECT_FALSE(modifyData(ed, group, {7}).changed);
    EXPECT_TRUE(dialogs.data.opened.empty());

    dialogs.data.script = {std::nullopt};
    EXPECT_FALSE(modifyData(ed, group, {1, 0}).changed);
    EXPECT_TRUE(unchanged());
    // Filled from the first selected row: the data row, type selected by its text.
    ASSERT_EQ(dialogs.data.opened.size(), 1u);
    EXPECT_EQ(dialogs.data.opened[0].name, "Tank3");
    EXPECT_EQ(dialogs.data.opened[0].typeIndex, 7);
    EXPECT_EQ(dialogs.data.opened[0].description, "level");

    // A new name that the database uses is refused like a duplicate add and the
    // dialog opens again with what was typed; the namespace follows the change.
    dialogs.data.script = {aliasForm("Pump", "T9"), aliasForm("Pump2", "T9")};
    EXPECT_TRUE(modifyData(ed, group, {1}).changed);
    EXPECT_EQ(sink.texts(), Texts{"The data already exist!"});
    EXPECT_TRUE(dialogs.data.opened[1].alias);
    EXPECT_EQ(dialogs.data.opened[1].aliasText, "Tank3");
    EXPECT_EQ(dialogs.data.opened[2].name, "Pump");
    EXPECT_EQ(dialogs.data.opened[2].aliasText, "T9");
    EXPECT_EQ(group->item(1).target, "T9");
    EXPECT_EQ(group->item(1).name, "Pump2");
    EXPECT_FALSE(db->nameInUse("T3"));
    sink.entries.clear();

    dialogs.data.script = {dataForm("Tank4", 2, 1, "5")};
    EXPECT_TRUE(modifyData(ed, group, {0}).changed);
    EXPECT_EQ(group->item(0), DataItem::makeData("Tank4", "uchar", "1", "5", ""));
    EXPECT_FALSE(rtdb.hasData("plant", "Tank3"));
    EXPECT_TRUE(rtdb.hasData("plant", "Tank4"));
    EXPECT_TRUE(sink.entries.empty());
}

TEST_F(RtdbEditorTest, DeleteData) {
    EXPECT_FALSE(deleteData(ed, group, {}).changed);
    EXPECT_TRUE(sink.entries.empty()); // no row selected: no question

    sink.answers = {false, true};
    EXPECT_FALSE(deleteData(ed, group, {0, 1}).changed);
    EXPECT_TRUE(unchanged());
    group->addItem(DataItem::makeData("x", "char", "1", "0", ""));
    group->addItem(DataItem::makeData("Tank3", "char", "1", "0", "twin"));
    EXPECT_TRUE(deleteData(ed, group, {3, 0, 1}).changed);
    EXPECT_EQ(sink.texts(), (Texts{"Are you sure to delete current data ?",
                                   "Are you sure to delete current data ?"}));
    ASSERT_EQ(group->itemCount(), 1u); // every item of a selected name is gone
    EXPECT_EQ(group->item(0).name, "x");
    EXPECT_FALSE(db->nameInUse("Tank3"));
}

TEST_F(RtdbEditorTest, DeleteDatabaseAndGroup) {
    EXPECT_FALSE(deleteDatabase(ed, group).changed);
    EXPECT_FALSE(deleteDataGroup(ed, db).changed);
    EXPECT_TRUE(sink.entries.empty());

    sink.answers = {false, false};
    EXPECT_FALSE(deleteDatabase(ed, db).changed);
    EXPECT_FALSE(deleteDataGroup(ed, group).changed);
    EXPECT_TRUE(unchanged());

    EXPECT_TRUE(deleteDataGroup(ed, group).changed);
    EXPECT_EQ(db->childCount(), 0u);
    EXPECT_FALSE(db->nameInUse("Tank3"));
    EXPECT_TRUE(deleteDatabase(ed, db).changed);
    ASSERT_EQ(rtdb.databaseCount(), 1u);
    EXPECT_EQ(rtdb.database(0).name(), "other");
    EXPECT_EQ(sink.texts(), (Texts{"Are you sure to delete current database?",
                                   "Are you sure to delete current data group?",
                                   "Are you sure to delete current data group?",
                                   "Are you sure to delete current database?"}));
}

TEST_F(RtdbEditorTest, PropertiesAndLabelRenames) {
    // Another database's name is refused and the dialog opens again with it.
    dialogs.database.script = {std::nullopt, DatabaseForm{"other", true},
                               DatabaseForm{"plant2", false}};
    EXPECT_FALSE(editNodeProperties(ed, db).changed);
    EXPECT_TRUE(unchanged());
    EXPECT_TRUE(editNodeProperties(ed, db).changed);
    EXPECT_EQ(dialogs.database.opened[0].name, "plant");
    EXPECT_EQ(dialogs.database.opened[2].name, "other");
    EXPECT_EQ(db->name(), "plant2");
    EXPECT_FALSE(db->sync());

    dialogs.group.script = {DataGroupForm{"Pump"}, DataGroupForm{"vessels"}};
    EXPECT_TRUE(editNodeProperties(ed, group).changed);
    EXPECT_EQ(dialogs.group.opened[0].name, "tanks");
    EXPECT_TRUE(db->nameInUse("vessels"));
    EXPECT_FALSE(db->nameInUse("tanks"));
    EXPECT_EQ(sink.texts(),
              (Texts{"The database already exist!", "The data group already exist!"}));
    sink.entries.clear();

    db->setName("plant");
    EXPECT_FALSE(renameNodeLabel(ed, *db, "other"));
    EXPECT_FALSE(renameNodeLabel(ed, *group, "Pump"));
    EXPECT_FALSE(renameNodeLabel(ed, rtdb.root(), "x"));
    EXPECT_EQ(sink.texts(), (Texts{"The database already exist!", "The data already exist!"}));
    EXPECT_TRUE(renameNodeLabel(ed, *group, "Pump2"));
    EXPECT_TRUE(renameNodeLabel(ed, *other, "Other"));
    EXPECT_EQ(group->name(), "Pump2");
    EXPECT_TRUE(db->nameInUse("Pump2"));
}

// A name rtdb.xml could not store is refused by every command that takes one; the
// dialog opens again with what was typed.
TEST_F(RtdbEditorTest, NamesTheFileCannotStoreAreRefused) {
    dialogs.database.script = {DatabaseForm{"Tank \"A\"", false}, DatabaseForm{"Tank A", false}};
    ASSERT_TRUE(addDatabase(ed).changed);
    EXPECT_EQ(sink.texts(), Texts{refused("Database", "'\"'")});
    ASSERT_EQ(dialogs.database.opened.size(), 2u);
    EXPECT_EQ(dialogs.database.opened[1].name, "Tank \"A\""); // reopened as typed
    EXPECT_FALSE(dialogs.database.opened[1].sync);

    sink.entries.clear();
    dialogs.group.script = {DataGroupForm{"R&D"}};
    EXPECT_FALSE(addDataGroup(ed, db).changed);
    dialogs.group.script = {DataGroupForm{"<g>"}};
    EXPECT_FALSE(editNodeProperties(ed, group).changed);
    EXPECT_FALSE(renameNodeLabel(ed, *db, "a&b"));
    EXPECT_EQ(sink.texts(), (Texts{refused("Data Group", "'&'"), refused("Data Group", "'<'"),
                                   refused("Database", "'&'")}));
    EXPECT_EQ(group->name(), "tanks");
    EXPECT_EQ(db->name(), "plant");
}

// Every command is one step of the history: undo gives the file's bytes as they
// were before it, redo as they were after it.
TEST_F(RtdbEditorTest, EveryCommandUndoesAndRedoesToTheSameBytes) {
    group->addItem(DataItem::makeData("x", "char", "1", "0", ""));
    group->addItem(DataItem::makeData("Tank3", "char", "1", "0", "twin"));
    BatchDataForm batch;
    batch.data = dataForm("B", 3, 2);
    batch.from = 1;
    batch.to = 3;
    rqtest::expectEveryStepUndoesAndRedoes(
        history,
        {
            {"Undo Add Database",
             [&] {
                 return dialogs.database.script = {DatabaseForm{"d", false}},
                        addDatabase(ed).changed;
             }},
            {"Undo Add Data Group",
             [&] {
                 return dialogs.group.script = {DataGroupForm{"g"}},
                        addDataGroup(ed, group).changed;
             }},
            {"Undo Add Data",
             [&] { return dialogs.data.script = {dataForm("n", 7, 4)}, addData(ed, db).changed; }},
            {"Undo Batch Data",
             [&] { return dialogs.batch.script = {batch}, batchAddData(ed, group).changed; }},
            {"Undo Modify Data",
             [&] {
                 return dialogs.data.script = {aliasForm("m", "x")},
                        modifyData(ed, group, {2}).changed;
             }},
            {"Undo Delete Data",
             [&] {
                 return deleteData(ed, group, {0, 3}).changed;
             }},
            {"Undo Modify Database",
             [&] {
                 return dialogs.database.script = {DatabaseForm{"p", false}},
                        editNodeProperties(ed, db).changed;
             }},
            {"Undo Rename Data Group", [&] { return renameNodeLabel(ed, *group, "vessels"); }},
            {"Undo Delete Data Group", [&] { return deleteDataGroup(ed, group).changed; }},
            {"Undo Delete Database", [&] { return deleteDatabase(ed, db).changed; }},
        },
        [&] { return text(); });
    // The namespace index follows undo: the deleted items' names are back in use.
    while (history.undo()) {
    }
    EXPECT_TRUE(db->nameInUse("Tank3"));
    EXPECT_TRUE(db->nameInUse("tanks"));
    EXPECT_FALSE(db->nameInUse("B1"));
    EXPECT_EQ(history.redoText(), "Redo Add Database");
}

TEST_F(RtdbEditorTest, ListRows) {
    ASSERT_EQ(kRtdbListColumns.size(), 6u);
    auto row = [&](const DataItem& item) {
        Texts t;
        for (int c = 0; c < kListColumnCount; ++c)
            t.emplace_back(rtdbListCell(item, c));
        return t;
    };
    EXPECT_EQ(row(group->item(0)), (Texts{"Tank3", "float", "4", "0", "", "level"}));
    EXPECT_EQ(row(group->item(1)), (Texts{"T3", "", "", "", "Tank3", ""}));
    EXPECT_EQ(row(DataItem::makeData("u", "uchar", "1", "", "")),
              (Texts{"u", "unsigned char", "1", "", "", ""}));
}

TEST_F(RtdbEditorTest, BrowseModel) {
    RtdbSection system;
    system.root().addDatabase("system").addItem(
        DataItem::makeData("Logic_True", "bit", "1", "1", ""));
    RtdbBrowseModel browse(rtdb, &system);
    EXPECT_EQ(&browse.projectRoot(), &rtdb.root());
    ASSERT_NE(browse.systemRoot(), nullptr);
    EXPECT_EQ(browse.systemRoot()->child(0).name(), "system");

    group->addItem(DataItem::makeData("s", "string", "8", "", ""));
    browse.select(group);
    EXPECT_EQ(browse.databaseName(), "plant");
    EXPECT_EQ(browse.rowCount(), 3u);
    browse.setExcluded(7, true);      // float
    browse.setExcluded(9, true);      // string
    ASSERT_EQ(browse.rowCount(), 1u); // the alias stays
    EXPECT_EQ(browse.cell(0, kBrowseName), "T3");
    EXPECT_EQ(browse.cell(0, kBrowseAlias), "Tank3");
    EXPECT_EQ(browse.cell(0, kBrowseDatabase), "plant");
    EXPECT_EQ(browse.reference(0), (DataRef{"plant", "T3"}));
    EXPECT_EQ(browse.reference(1), std::nullopt);
    browse.setExcluded(7, false);
    EXPECT_EQ(browse.rowCount(), 2u);
    EXPECT_EQ(browse.cell(0, kBrowseType), "float");

    browse.select(&browse.systemRoot()->child(0));
    EXPECT_EQ(browse.reference(0), (DataRef{"system", "Logic_True"}));
    browse.select(browse.systemRoot());
    EXPECT_EQ(browse.databaseName(), "");
    EXPECT_EQ(browse.rowCount(), 0u);
}

} // namespace

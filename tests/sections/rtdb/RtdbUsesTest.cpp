// The real-time database editor and the uses of its data in other sections: the
// questions before deleting used data, and a rename that updates every reference
// as one step whose undo gives every section's bytes back.

#include "project/Project.h"
#include "sections/rtdb/RtdbCommands.h"
#include "support/ScriptedDialog.h"
#include "support/TestSupport.h"
#include "support/UsedDataProject.h"

#include <gtest/gtest.h>

#include <array>

namespace {

using namespace rq;
using Texts = std::vector<std::string>;

const std::string kLevelUses = "hmidb.xml: data \"level\": dbname/dataname\n"
                               "device.xml: link \"bus1\": status_var\n"
                               "device.xml: link \"bus1\" device \"tankio\" data 2: dataname\n"
                               "param.xml: parameter 1: dbname/dataname\n"
                               "history.xml: record \"h1\" data 1: queryvarname\n"
                               "alarm.xml: group \"tanks\" data \"plant.Level\": dbname/dataname\n";

// Only the data dialog answers (nothing scripted is Cancel).
struct Dialogs : RtdbDialogHost {
    explicit Dialogs(MessageSink& s) : sink(s) {}
    MessageSink& sink;
    rqtest::ScriptedDialog<DataForm> data;
    bool databaseDialog(DatabaseForm&) override { return false; }
    bool dataGroupDialog(DataGroupForm&) override { return false; }
    bool dataDialog(DataForm& f) override { return data.answer(f, sink); }
    bool batchDataDialog(BatchDataForm&) override { return false; }
};

struct RtdbUses : ::testing::Test {
    RtdbUses() { rqtest::fillUsedData(project); }
    using Bytes = std::array<std::string, kSectionCount>;
    Bytes bytes() const {
        Bytes b;
        for (int i = 1; i < kSectionCount; ++i)
            b[i] = project.doc.sectionText(i);
        return b;
    }
    RtdbEditor editor() {
        return {project.rtdb, dialogs, sink, project.doc.history(), &project.references};
    }
    DataNode& plant() { return *project.rtdb.findDatabase("plant"); }
    DataNode& tanks() { return plant().child(0); }

    Catalogs catalogs;
    rqtest::RecordingSink sink;
    Project project{catalogs, sink};
    Dialogs dialogs{sink};
};

TEST(RtdbUsesText, ListingCapsAndNamesTheItemsOnlyWhenSeveral) {
    EXPECT_EQ(deleteUsesQuestion({}), std::nullopt);
    EXPECT_EQ(renameUsesQuestion({}, "a.b", "a.c", false), std::nullopt);
    const std::vector<DataUse> one = {{"a.b", "x.xml: p: q"}};
    EXPECT_EQ(*deleteUsesQuestion(one), "\"a.b\" is used in 1 place:\nx.xml: p: q\nDelete anyway?");
    EXPECT_EQ(*renameUsesQuestion(one, "a.b", "a.c", false),
              "\"a.b\" is used in 1 place:\nx.xml: p: q\nUpdate these references to \"a.c\"?");
    std::vector<DataUse> many;
    for (int i = 0; i < 12; ++i)
        many.push_back({i < 6 ? "a.b" : "a.c", "f.xml: use " + std::to_string(i) + ": v"});
    const std::string q = *deleteUsesQuestion(many);
    EXPECT_EQ(q.substr(0, q.find('\n')), "The data to delete is used in 12 places:");
    EXPECT_NE(q.find("\na.b: f.xml: use 0: v\n"), std::string::npos);
    EXPECT_NE(q.find("\na.c: f.xml: use 9: v\nand 2 more\nDelete anyway?"), std::string::npos);
    EXPECT_EQ(q.find("use 10"), std::string::npos);
    const std::string d = *renameUsesQuestion(many, "a", "z", true);
    EXPECT_EQ(d.substr(0, d.find('\n')), "The data of database \"a\" is used in 12 places:");
    EXPECT_EQ(d.substr(d.rfind('\n') + 1), "Update these references to database \"z\"?");
}

TEST_F(RtdbUses, DeletingUsedDataAsksFirstAndNoChangesNothing) {
    struct Case {
        const char* name;
        int what; // 0 data rows, 1 the group, 2 the database
        std::vector<std::size_t> rows;
        std::vector<bool> answers;
        Texts texts; // "" stands for the uses question, checked apart
        bool deleted;
    };
    const std::string levelQuestion = "\"plant.Level\" is used in 7 places:\n" + kLevelUses +
                                      "rtdb.xml: alias \"L2\": target\nDelete anyway?";
    const std::vector<Case> cases = {
        {"unused data: the question of old only", 0, {2}, {true}, {rtdbtext::kDeleteData}, true},
        {"used data, No", 0, {0}, {false}, {levelQuestion}, false},
        {"used data, Yes then Cancel",
         0,
         {0},
         {true, false},
         {levelQuestion, rtdbtext::kDeleteData},
         false},
        {"used data, Yes then OK",
         0,
         {0},
         {true, true},
         {levelQuestion, rtdbtext::kDeleteData},
         true},
        {"used group, No", 1, {}, {false}, {""}, false},
        {"used database, Yes then OK", 2, {}, {true, true}, {"", rtdbtext::kDeleteDatabase}, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Project fresh(catalogs, sink);
        rqtest::fillUsedData(fresh);
        RtdbEditor ed{fresh.rtdb, dialogs, sink, fresh.doc.history(), &fresh.references};
        DataNode& db = *fresh.rtdb.findDatabase("plant");
        const std::string before = fresh.doc.sectionText(1);
        sink.entries.clear();
        sink.answers = c.answers;
        RtdbEditResult r = c.what == 0   ? deleteData(ed, &db.child(0), c.rows)
                           : c.what == 1 ? deleteDataGroup(ed, &db.child(0))
                                         : deleteDatabase(ed, &db);
        Texts texts = sink.texts();
        ASSERT_EQ(texts.size(), c.texts.size());
        for (std::size_t i = 0; i < texts.size(); ++i) {
            if (c.texts[i].empty()) // the group's and database's uses: every item named
                EXPECT_EQ(texts[i].substr(0, 43), "The data to delete is used in 8 places:\npla");
            else
                EXPECT_EQ(texts[i], c.texts[i]);
        }
        EXPECT_EQ(r.changed, c.deleted);
        EXPECT_EQ(fresh.doc.sectionText(1) != before, c.deleted);
        EXPECT_EQ(fresh.doc.history().count(), c.deleted ? 1u : 0u);
    }
}

TEST_F(RtdbUses, RenameWithYesIsOneStepOverEverySectionAndNoRenamesAlone) {
    const Bytes before = bytes();
    DataForm form = dataFormFromItem(tanks().item(0));
    form.name = "Height";
    dialogs.data.script = {form};
    sink.answers = {true};
    ASSERT_TRUE(modifyData(editor(), &tanks(), {0}).changed);
    ASSERT_EQ(sink.texts().size(), 1u);
    EXPECT_EQ(sink.texts()[0], "\"plant.Level\" is used in 7 places:\n" + kLevelUses +
                                   "rtdb.xml: alias \"L2\": target\n"
                                   "Update these references to \"plant.Height\"?");
    EXPECT_EQ(project.doc.history().count(), 1u);
    EXPECT_EQ(project.doc.history().undoText(), "Undo Modify Data");
    EXPECT_EQ(project.hmidb.io.items[0].dataname, "Height");
    EXPECT_EQ(project.device.links()[0].status_var, "plant.Height");
    EXPECT_EQ(project.device.links()[0].devices[0].data[1].dataname, "plant.Height");
    EXPECT_EQ(project.device.links()[0].devices[0].data[0].dataname, "plant.Flow");
    EXPECT_EQ(project.history.records()[0].data[0].queryvarname, "plant.Height");
    EXPECT_EQ(tanks().item(3).target, "Height");
    EXPECT_TRUE(project.references.usesOf("plant", "Level").empty());
    for (int i : {1, 2, 4, 5, 7, 8})
        EXPECT_TRUE(project.doc.sectionEdited(i)) << kSectionFiles[i];
    EXPECT_FALSE(project.doc.sectionEdited(6));

    const Bytes after = bytes();
    project.doc.undo();
    EXPECT_EQ(bytes(), before);
    // Records moved in memory meanwhile do not matter: the step keeps no pointers.
    project.device.links()[0].devices[0].data.reserve(100);
    project.doc.redo();
    EXPECT_EQ(bytes(), after);
    project.doc.undo();
    EXPECT_EQ(bytes(), before);

    // No: the data alone is renamed, as without references.
    sink.entries.clear();
    sink.answers = {false};
    dialogs.data.script = {form};
    ASSERT_TRUE(modifyData(editor(), &tanks(), {0}).changed);
    EXPECT_EQ(sink.texts().size(), 1u);
    Bytes plain = bytes();
    EXPECT_NE(plain[1], before[1]);
    plain[1] = before[1];
    EXPECT_EQ(plain, before);

    // An unused item is renamed without a question.
    sink.entries.clear();
    form = dataFormFromItem(tanks().item(2));
    form.name = "Reserve";
    dialogs.data.script = {form};
    ASSERT_TRUE(modifyData(editor(), &tanks(), {2}).changed);
    EXPECT_TRUE(sink.entries.empty());
}

TEST_F(RtdbUses, DatabaseRenameByLabelUpdatesEveryUseOfItsItems) {
    const Bytes before = bytes();
    sink.answers = {true};
    ASSERT_TRUE(renameNodeLabel(editor(), plant(), "site"));
    ASSERT_EQ(sink.texts().size(), 1u);
    EXPECT_EQ(sink.texts()[0].substr(0, sink.texts()[0].find('\n')),
              "The data of database \"plant\" is used in 8 places:");
    EXPECT_EQ(project.doc.history().count(), 1u);
    EXPECT_EQ(project.hmidb.io.items[0].dbname, "site");
    EXPECT_EQ(project.device.links()[0].devices[0].data[0].dataname, "site.Flow");
    EXPECT_EQ(project.alarm.groups()[0].data[0].dbname, "site");
    EXPECT_EQ(project.references.usesOfDatabase("site").size(), 8u);
    project.doc.undo();
    EXPECT_EQ(bytes(), before);
    // A group's name is in no reference: it is renamed without a question.
    sink.entries.clear();
    ASSERT_TRUE(renameNodeLabel(editor(), tanks(), "vessels"));
    EXPECT_TRUE(sink.entries.empty());
}

} // namespace

// The history records editor without a display: the dialogs' checks, the command
// flows with their messages (scripted dialogs, a recording sink), and the bytes of
// history.xml through undo and redo of every command.

#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "core/StorableValue.h"
#include "sections/history/HistorySectionEditor.h"
#include "support/EditorTestKit.h"

#include <gtest/gtest.h>

using namespace rq;
using Texts = std::vector<std::string>;

namespace {

struct ScriptedHistoryDialogs : HistoryDialogHost {
    explicit ScriptedHistoryDialogs(MessageSink& s) : sink(s) {}
    bool recordDialog(HistoryRecordForm& f) override {
        return record.answer(f, sink, validateHistoryRecordForm);
    }
    bool dataDialog(HistoryDataForm& f) override {
        return data.answer(f, sink, validateHistoryDataForm);
    }
    MessageSink& sink;
    rqtest::ScriptedDialog<HistoryRecordForm> record;
    rqtest::ScriptedDialog<HistoryDataForm> data;
};

HistoryDataForm F(std::string db, std::string name, int kind, std::string p = "",
                  std::string c = "", std::string t = "", std::string q = "", std::string d = "") {
    return HistoryDataForm{db, name, kind, p, c, t, q, d};
}
HistoryRecordForm recordForm(const std::string& name, int location = 0) {
    return HistoryRecordForm{name, "500", location, "3", "60"};
}
HistoryDataForm dataForm(const std::string& dataname, int kind, const std::string& value) {
    HistoryDataForm f{"plant", dataname, kind, "", "", "", "plant.Q", "d"};
    (kind == 0 ? f.periodvalue : kind == 1 ? f.changevalue : f.trigvarname) = value;
    return f;
}

struct HistoryEditorTest : ::testing::Test {
    HistoryEditorTest() {
        EXPECT_TRUE(rqtest::readSection(section, rqtest::demoFile("history.xml")));
    }
    std::string text() const { return rqtest::written(section); }
    EditorResult run(int command, int record = -1, std::vector<std::size_t> rows = {}) {
        return editor.run(command, EditorSelection{editor.key(record), std::move(rows)});
    }
    Texts names() const { return rqtest::nodeLabels(editor.nodes()); }
    Texts rows(int record) const { return rqtest::listRows(editor.list(editor.key(record))); }

    HistorySection section;
    rqtest::RecordingSink sink;
    ScriptedHistoryDialogs dialogs{sink};
    UndoHistory history;
    HistorySectionEditor editor{section, dialogs, sink, history};
};

} // namespace

TEST(HistoryForms, ChecksInOrderAndWhatOkStores) {
    EXPECT_EQ(validateHistoryDataForm(F("", "x", 0, "1")), "Please choose data!");
    EXPECT_EQ(validateHistoryDataForm(F("db", "", 9)), "Please choose data!");
    EXPECT_EQ(validateHistoryDataForm(F("db", "x", 0, "", "1", "t")),
              "Please input data log period!");
    EXPECT_EQ(validateHistoryDataForm(F("db", "x", 1, "1", "", "t")),
              "Please input data change value!");
    EXPECT_EQ(validateHistoryDataForm(F("db", "x", 2, "1", "1", "")),
              "Please input trigger variable name!");
    EXPECT_EQ(validateHistoryDataForm(F("db", "x", -1)), std::nullopt); // a kind of the file
    // Only the value the file writes is tested for storable characters.
    EXPECT_EQ(validateHistoryDataForm(F("db", "x", 1, "<", "1")), std::nullopt);
    EXPECT_EQ(validateHistoryDataForm(F("db", "x", 0, "a&b")),
              checkStorableValue("Timing Record Period(ms)", "a&b"));
    EXPECT_EQ(validateHistoryDataForm(F("db", "x", 0, "1", "", "", "", "\"")),
              checkStorableValue("Description", "\""));

    EXPECT_EQ(validateHistoryRecordForm(recordForm("")), std::nullopt);
    EXPECT_EQ(validateHistoryRecordForm({"a<b", "1", 0, "1", "1"}),
              checkStorableValue("History Record Name", "a<b"));
    EXPECT_EQ(validateHistoryRecordForm({"n", "1", 0, "0", "1"}),
              "The field \"Saving Date\" must be a whole number greater than 0.");
    EXPECT_EQ(validateHistoryRecordForm({"n", "1", 0, "1", "6s"}),
              "The field \"Interval of Index Time(s)\" must be a whole number greater than 0.");

    // OK takes the kind's value only, and keeps a path or kind that no row shows.
    HistoryData d{"a", "b", "period", "P", "C", "T", "", ""};
    storeHistoryDataForm({"a", "b", 1, "p2", "c2", "t2", "q", "e"}, d);
    EXPECT_EQ(d, (HistoryData{"a", "b", "change", "P", "c2", "T", "q", "e"}));
    d.type = "odd";
    storeHistoryDataForm(historyDataForm(d), d);
    EXPECT_EQ(d.type, "odd");
    EXPECT_EQ(historyDataCell(d, 2), "");
    HistoryRecord r;
    r.path = "usb";
    storeHistoryRecordForm(historyRecordForm(r), r);
    EXPECT_EQ(r.path, "usb");
}

TEST_F(HistoryEditorTest, NodesListAndRecordCommands) {
    EXPECT_EQ(names(), (Texts{"trend", "archive"}));
    EXPECT_EQ(editor.treeMenu(nullptr), menuid::kHistoryTree);
    EXPECT_EQ(editor.listMenu(editor.key(0)), menuid::kHistoryList);
    EXPECT_EQ(editor.keys(nullptr).add, 0);
    EXPECT_EQ(editor.keys(editor.key(1)).remove, cmd::kDeleteHistoryData);
    EXPECT_TRUE(editor.list(nullptr).columns.empty());
    EXPECT_EQ(rows(0)[2], "plant|Pump1_Speed|Variable trigger record|||plant.Pump1_Run||"
                          "speed at start");

    // New: the defaults; an empty name adds nothing and says nothing; a name in use
    // is refused and the dialog opens again with what was typed.
    dialogs.record.script = {recordForm("")};
    EXPECT_FALSE(run(cmd::kNewHistoryRecord).changed);
    EXPECT_EQ(dialogs.record.opened[0].period, "1000");
    EXPECT_EQ(dialogs.record.opened[0].indexperiod, "600");
    dialogs.record.script = {recordForm("trend"), recordForm("fast", 1)};
    EditorResult added = run(cmd::kNewHistoryRecord);
    ASSERT_TRUE(added.changed && added.structural);
    EXPECT_EQ(added.select, editor.key(2));
    EXPECT_EQ(dialogs.record.opened[2].name, "trend");
    EXPECT_EQ(section.records()[2].path, "cfcard");

    // Modify refuses another record's name, keeps its own; rename does the same.
    dialogs.record.script = {recordForm("archive"), std::nullopt};
    EXPECT_FALSE(run(cmd::kModifyHistoryRecord, 2).changed);
    dialogs.record.script = {recordForm("fast", 1)};
    EXPECT_FALSE(run(cmd::kModifyHistoryRecord, 2).changed); // nothing differs
    EXPECT_FALSE(editor.rename(editor.key(2), "trend"));
    EXPECT_FALSE(editor.rename(editor.key(2), ""));
    EXPECT_TRUE(editor.rename(editor.key(2), "quick"));
    EXPECT_FALSE(editor.canRename(nullptr));
    EXPECT_FALSE(run(cmd::kModifyHistoryRecord).changed); // the section's node: nothing

    sink.answers = {false};
    EXPECT_FALSE(run(cmd::kDeleteHistoryRecord, 0).changed);
    EXPECT_FALSE(run(cmd::kDeleteHistoryRecord).changed);
    EXPECT_EQ(
        sink.texts(),
        (Texts{"The data record already exist!", "The data record already exist!",
               "The data record already exist!", "Are you sure to delete current data log?"}));
    EXPECT_EQ(names(), (Texts{"trend", "archive", "quick"}));
}

TEST_F(HistoryEditorTest, DataCommandsWithTheirMessages) {
    // Only with a record selected; a pair the record holds is refused.
    EXPECT_FALSE(run(cmd::kNewHistoryData).changed);
    EXPECT_TRUE(dialogs.data.opened.empty());
    dialogs.data.script = {dataForm("Tank1_Temp", 0, ""), dataForm("Tank1_Temp", 0, "5"),
                           dataForm("Flow", 2, "plant.Run")};
    ASSERT_TRUE(run(cmd::kNewHistoryData, 0).changed);
    EXPECT_EQ(dialogs.data.opened[0].kind, 0);
    EXPECT_EQ(dialogs.data.opened[1].dataname, "Tank1_Temp");
    EXPECT_EQ(rows(0).back(), "plant|Flow|Variable trigger record|||plant.Run|plant.Q|d");

    // Modify: the row's own variable, filled from it, no duplicate test.
    dialogs.data.script = {dataForm("Flow", 1, "0.1")};
    ASSERT_TRUE(run(cmd::kModifyHistoryData, 0, {3, 1}).changed);
    EXPECT_EQ(dialogs.data.opened.back().changevalue, "0.5");
    EXPECT_EQ(rows(0)[1], "plant|Flow|Data change record||0.1||plant.Q|d");
    EXPECT_FALSE(run(cmd::kModifyHistoryData, 0, {}).changed);

    sink.answers = {false, true};
    EXPECT_FALSE(run(cmd::kDeleteHistoryData, 0, {9}).changed); // no row: no question
    EXPECT_FALSE(run(cmd::kDeleteHistoryData, 0, {0}).changed);
    ASSERT_TRUE(run(cmd::kDeleteHistoryData, 0, {0, 1, 3}).changed);
    EXPECT_EQ(sink.texts(), (Texts{"Please input data log period!", "The data already exist!",
                                   "Are you sure to delete current data ?",
                                   "Are you sure to delete current data ?"}));
    EXPECT_EQ(rows(0).size(), 1u);
}

// Every command is one step: undo gives the file's bytes as before, redo as after.
TEST_F(HistoryEditorTest, EveryCommandUndoesAndRedoesToTheSameBytes) {
    const std::vector<std::string> texts = rqtest::expectEveryStepUndoesAndRedoes(
        history,
        {
            {"Undo Add History Data Record",
             [&] { return dialogs.record.script = {recordForm("n")}, run(32912).changed; }},
            {"Undo Modify History Data Record",
             [&] { return dialogs.record.script = {recordForm("m", 1)}, run(32853, 0).changed; }},
            {"Undo Rename History Data Record", [&] { return editor.rename(editor.key(1), "r"); }},
            {"Undo Add Data",
             [&] { return dialogs.data.script = {dataForm("v", 1, "2")}, run(32850, 2).changed; }},
            {"Undo Modify Data",
             [&] {
                 return dialogs.data.script = {dataForm("w", 2, "a.b")}, run(32852, 0, {1}).changed;
             }},
            {"Undo Delete Data",
             [&] {
                 return sink.answers = {true}, run(32851, 0, {0, 2}).changed;
             }},
            {"Undo Delete History Data Record",
             [&] { return sink.answers = {true}, run(32913, 1).changed; }},
        },
        [&] { return text(); });
    EXPECT_EQ(texts.front(), rqtest::readFile(rqtest::demoFile("history.xml")));
}

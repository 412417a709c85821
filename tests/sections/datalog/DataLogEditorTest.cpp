// The data log editor without a display: the forms' checks, the command flows with
// a scripted dialog host and a recording sink, and the bytes of datalog.xml through
// undo and redo of every command.

#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "core/NodeImageIds.h"
#include "core/StorableValue.h"
#include "sections/datalog/DataLogSectionEditor.h"
#include "support/EditorTestKit.h"

#include <gtest/gtest.h>

using namespace rq;
using Texts = std::vector<std::string>;

namespace {

struct ScriptedDialogs : DataLogDialogHost {
    explicit ScriptedDialogs(MessageSink& sink) : sink(sink) {}
    bool logDialog(DataLogForm& f) override { return logs.answer(f, sink, validateDataLogForm); }
    bool logDataDialog(LogDataForm& f) override {
        return data.answer(f, sink, validateLogDataForm);
    }
    MessageSink& sink;
    rqtest::ScriptedDialog<DataLogForm> logs;
    rqtest::ScriptedDialog<LogDataForm> data;
};

DataLogForm logForm(DataLogKind kind, std::string name, std::string period = "1000",
                    std::string size = "100") {
    DataLogForm f;
    f.kind = kind;
    f.name = std::move(name);
    f.period = std::move(period);
    f.size = std::move(size);
    return f;
}

struct DataLogEditorTest : ::testing::Test {
    DataLogEditorTest() {
        EXPECT_TRUE(rqtest::readSection(section, rqtest::demoFile("datalog.xml")));
    }
    std::string text() const { return rqtest::written(section); }
    void* node(std::size_t i) { return &section.logs[i]; }
    EditorResult run(int command, void* node = nullptr, std::vector<std::size_t> rows = {}) {
        return editor.run(command, EditorSelection{node, std::move(rows)});
    }
    Texts labels() const { return rqtest::nodeLabels(editor.nodes()); }
    Texts rows(std::size_t log) const {
        Texts out;
        EditorList l = editor.list(&section.logs[log]);
        for (std::size_t r = 0; r < l.rows(); ++r)
            out.push_back(std::string(l.cell(r, 0)) + "." + std::string(l.cell(r, 1)));
        return out;
    }

    DataLogSection section;
    rqtest::RecordingSink sink;
    ScriptedDialogs dialogs{sink};
    UndoHistory history;
    DataLogSectionEditor editor{section, dialogs, sink, history};
};

constexpr auto kSome = DataLogKind::Variables;
constexpr auto kAll = DataLogKind::Database;

} // namespace

TEST(DataLogForms, ChecksInOrder) {
    EXPECT_EQ(validateDataLogForm(logForm(kSome, "", "", "")), "Please input data log name!");
    EXPECT_EQ(validateDataLogForm(logForm(kSome, "n", "", "")), "Please input data log period!");
    EXPECT_EQ(validateDataLogForm(logForm(kSome, "n", "1", "")), "Please input data log size!");
    DataLogForm f = logForm(kAll, "n");
    EXPECT_EQ(validateDataLogForm(f), std::nullopt); // nothing else is required
    f.period_var = "a<b";
    EXPECT_EQ(validateDataLogForm(f), checkStorableValue("Period Variable", "a<b"));
    f.period_var.clear();
    f.dbname = "d&b";
    EXPECT_EQ(validateDataLogForm(f), checkStorableValue("Realtime Database", "d&b"));
    f.kind = kSome; // a log of chosen variables stores no database
    EXPECT_EQ(validateDataLogForm(f), std::nullopt);
    f.control_var = "x\"";
    EXPECT_EQ(validateDataLogForm(f), checkStorableValue("Control Variable", "x\""));
    EXPECT_EQ(validateLogDataForm({"", ""}), std::nullopt);
    EXPECT_EQ(validateLogDataForm({"v", "d<"}), checkStorableValue("Database Name", "d<"));
}

TEST_F(DataLogEditorTest, NodesMenusListsAndKeys) {
    std::vector<EditorNode> nodes = editor.nodes();
    ASSERT_EQ(nodes.size(), 2u);
    EXPECT_EQ(nodes[0].key, node(0));
    EXPECT_EQ(nodes[0].image, image::kRecord);
    EXPECT_EQ(nodes[1].image, image::kDatabase);
    EXPECT_EQ(labels(), (Texts{"levels", "hmi_all"}));
    EXPECT_EQ(editor.treeMenu(nullptr), menuid::kDataLogTree);
    EXPECT_EQ(editor.listMenu(node(1)), menuid::kDataLogList);
    EditorList l = editor.list(node(0));
    ASSERT_EQ(l.columns.size(), 2u);
    EXPECT_EQ(rows(0), (Texts{"plant.Tank1_Level", "plant.Tank2_Level"}));
    // The section's node and a whole-database log list nothing and have no keys.
    for (void* n : {static_cast<void*>(nullptr), node(1)}) {
        EXPECT_TRUE(editor.list(n).columns.empty());
        EXPECT_EQ(editor.list(n).rows(), 0u);
        EXPECT_EQ(editor.keys(n).add, 0);
    }
    EditorKeys k = editor.keys(node(0));
    EXPECT_EQ(k.add, cmd::kNewRecordData);
    EXPECT_EQ(k.modify, cmd::kModifyRecordData);
    EXPECT_EQ(k.remove, cmd::kDeleteRecordData);
    EXPECT_FALSE(editor.canRename(nullptr));
    EXPECT_TRUE(editor.canRename(node(1)));
}

TEST_F(DataLogEditorTest, LogDialogChecksDuplicatesAndKeepsWhatWasTyped) {
    dialogs.logs.script = {logForm(kAll, ""), logForm(kAll, "n", ""), logForm(kAll, "n", "1", ""),
                           logForm(kAll, "levels", "7"), logForm(kAll, "all", "7")};
    EditorResult r = run(cmd::kNewAllDatabaseRecord, node(0));
    ASSERT_TRUE(r.changed);
    EXPECT_EQ(sink.texts(), (Texts{"Please input data log name!", "Please input data log period!",
                                   "Please input data log size!", "The data log already exist!"}));
    // A new log opens with the defaults; after the duplicate, with what was typed.
    ASSERT_EQ(dialogs.logs.opened.size(), 2u);
    EXPECT_EQ(dialogs.logs.opened[0].kind, kAll);
    EXPECT_EQ(dialogs.logs.opened[0].period + "/" + dialogs.logs.opened[0].size, "1000/100");
    EXPECT_EQ(dialogs.logs.opened[1].period, "7");
    EXPECT_EQ(labels(), (Texts{"levels", "hmi_all", "all"}));
    EXPECT_EQ(r.select, node(2)); // the new node is selected
    EXPECT_EQ(section.logs[2].kind, kAll);

    // Modify fills the dialog from the log, refuses another log's name, and
    // changes nothing when nothing was changed; the section's node has no log.
    sink.entries.clear();
    dialogs.logs.script = {logForm(kAll, "levels"), std::nullopt};
    EXPECT_FALSE(run(cmd::kModifyDataRecord, node(1)).changed);
    EXPECT_EQ(dialogs.logs.opened[2].period, "5000");
    EXPECT_EQ(dialogs.logs.opened[2].dbname, "hmi");
    EXPECT_EQ(sink.texts(), (Texts{"The data log already exist!"}));
    dialogs.logs.script = {dataLogFormFromRecord(section.logs[1])};
    EXPECT_FALSE(run(cmd::kModifyDataRecord, node(1)).changed);
    EXPECT_FALSE(run(cmd::kModifyDataRecord).changed);
    EXPECT_EQ(dialogs.logs.opened.size(), 5u);
    EXPECT_EQ(history.count(), 1u);

    // Delete asks first; Cancel keeps the log.
    sink.entries.clear();
    sink.answers = {false, true};
    EXPECT_FALSE(run(cmd::kDeleteDataRecord, node(0)).changed);
    EXPECT_TRUE(run(cmd::kDeleteDataRecord, node(0)).changed);
    EXPECT_FALSE(run(cmd::kDeleteDataRecord).changed); // no question without a log
    EXPECT_EQ(sink.texts(), (Texts{"Are you sure to delete current data log?",
                                   "Are you sure to delete current data log?"}));
    EXPECT_EQ(labels(), (Texts{"hmi_all", "all"}));

    // A label edit: empty is refused silently, the others with their message.
    sink.entries.clear();
    EXPECT_FALSE(editor.rename(node(0), ""));
    EXPECT_FALSE(editor.rename(node(0), "all"));
    EXPECT_FALSE(editor.rename(node(0), "a&b"));
    EXPECT_TRUE(editor.rename(node(0), "hmi_all")); // unchanged: no step
    EXPECT_EQ(history.count(), 2u);
    EXPECT_TRUE(editor.rename(node(0), "hmi"));
    EXPECT_EQ(sink.texts(),
              (Texts{"The data log already exist!", *checkStorableValue("Record Name", "a&b")}));
    EXPECT_EQ(labels(), (Texts{"hmi", "all"}));
}

TEST_F(DataLogEditorTest, VariablesOfALogOfChosenVariables) {
    // A whole-database log has no variables: no dialog, no message.
    dialogs.data.script = {LogDataForm{"x", "plant"}};
    EXPECT_FALSE(run(cmd::kNewRecordData, node(1)).changed);
    EXPECT_FALSE(run(cmd::kNewRecordData).changed);
    EXPECT_TRUE(dialogs.data.opened.empty());

    dialogs.data.script = {LogDataForm{"Tank2_Level", "plant"}, LogDataForm{"Tank2_Level", "hmi"}};
    EXPECT_TRUE(run(cmd::kNewRecordData, node(0)).changed);
    EXPECT_EQ(sink.texts(), (Texts{"The data already exist!"}));
    EXPECT_EQ(dialogs.data.opened.back().dataname, "Tank2_Level"); // reopened with it
    EXPECT_EQ(rows(0), (Texts{"plant.Tank1_Level", "plant.Tank2_Level", "hmi.Tank2_Level"}));

    // Modify takes the first selected row and refuses another row's variable.
    sink.entries.clear();
    dialogs.data.script = {LogDataForm{"Tank1_Level", "plant"}, LogDataForm{"Tank3", "plant"}};
    const std::size_t opened = dialogs.data.opened.size();
    EXPECT_TRUE(run(cmd::kModifyRecordData, node(0), {2, 1}).changed);
    EXPECT_EQ(dialogs.data.opened[opened].dbname, "plant");
    EXPECT_EQ(dialogs.data.opened[opened].dataname, "Tank2_Level");
    EXPECT_EQ(sink.texts(), (Texts{"The data already exist!"}));
    EXPECT_FALSE(run(cmd::kModifyRecordData, node(0), {}).changed);

    // Delete: no row, no question; three rows, one question.
    sink.entries.clear();
    EXPECT_FALSE(run(cmd::kDeleteRecordData, node(0), {7}).changed);
    EXPECT_TRUE(sink.entries.empty());
    sink.answers = {true};
    EXPECT_TRUE(run(cmd::kDeleteRecordData, node(0), {2, 0, 1}).changed);
    EXPECT_EQ(sink.texts(), (Texts{"Are you sure to delete current data ?"}));
    EXPECT_TRUE(rows(0).empty());
}

// Every command is one step: undo gives the file's bytes as before, redo as after.
TEST_F(DataLogEditorTest, EveryCommandUndoesAndRedoesToTheSameBytes) {
    const std::vector<std::string> texts = rqtest::expectEveryStepUndoesAndRedoes(
        history,
        {
            {"Undo Add Data Record",
             [&] {
                 DataLogForm f = logForm(kSome, "new", "200", "50");
                 f.period_var = "pv";
                 f.control_var = "plant.Link_Control";
                 return dialogs.logs.script = {f}, run(cmd::kNewDataRecord).changed;
             }},
            {"Undo Add All Database Record",
             [&] {
                 DataLogForm f = logForm(kAll, "all");
                 f.dbname = "plant";
                 return dialogs.logs.script = {f}, run(cmd::kNewAllDatabaseRecord).changed;
             }},
            {"Undo Modify Data Record",
             [&] {
                 DataLogForm f = dataLogFormFromRecord(section.logs[1]);
                 f.name = "hmi";
                 f.dbname = "plant";
                 f.size = "300";
                 return dialogs.logs.script = {f}, run(cmd::kModifyDataRecord, node(1)).changed;
             }},
            {"Undo Rename Data Record", [&] { return editor.rename(node(0), "tanks"); }},
            {"Undo Add Data",
             [&] {
                 return dialogs.data.script = {LogDataForm{"Pump1_Run", "plant"}},
                        run(cmd::kNewRecordData, node(2)).changed;
             }},
            {"Undo Add Data",
             [&] {
                 return dialogs.data.script = {LogDataForm{"P1", "plant"}},
                        run(cmd::kNewRecordData, node(0)).changed;
             }},
            {"Undo Modify Data",
             [&] {
                 return dialogs.data.script = {LogDataForm{"Tank1_Temp", "plant"}},
                        run(cmd::kModifyRecordData, node(0), {1}).changed;
             }},
            {"Undo Delete Data",
             [&] {
                 return sink.answers = {true}, run(cmd::kDeleteRecordData, node(0), {0, 2}).changed;
             }},
            {"Undo Delete Data Record",
             [&] { return sink.answers = {true}, run(cmd::kDeleteDataRecord, node(1)).changed; }},
        },
        [&] { return text(); });
    EXPECT_EQ(labels(), (Texts{"tanks", "new", "all"}));
    EXPECT_EQ(rows(0), (Texts{"plant.Tank1_Temp"}));
    EXPECT_EQ(texts.front(), rqtest::readFile(rqtest::demoFile("datalog.xml")));
}

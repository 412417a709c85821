// The alarm editor without a display: the forms' checks and slot rules, the group
// and data flows with a scripted dialog host and their messages, and the bytes of
// alarm.xml through undo and redo of every command.

#include "sections/alarm/AlarmEditor.h"
#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "core/StorableValue.h"
#include "support/EditorTestKit.h"

#include <gtest/gtest.h>

using namespace rq;
using Texts = std::vector<std::string>;

namespace {

AlarmDataForm dataForm(std::string db, std::string name, std::string priority = "1") {
    AlarmDataForm f;
    f.dbname = std::move(db);
    f.dataname = std::move(name);
    f.priority = std::move(priority);
    return f;
}

struct Dialogs : AlarmDialogHost {
    explicit Dialogs(MessageSink& s) : sink(s) {}
    MessageSink& sink;
    rqtest::ScriptedDialog<AlarmConfigForm> config;
    rqtest::ScriptedDialog<AlarmGroupForm> group;
    rqtest::ScriptedDialog<AlarmDataForm> data;
    bool configDialog(AlarmConfigForm& f) override {
        return config.answer(f, sink, validateAlarmConfigForm);
    }
    bool groupDialog(AlarmGroupForm& f) override {
        return group.answer(f, sink, validateAlarmGroupForm);
    }
    bool dataDialog(AlarmDataForm& f) override {
        return data.answer(f, sink, validateAlarmDataForm);
    }
};

struct AlarmEditorTest : ::testing::Test {
    AlarmEditorTest() { EXPECT_TRUE(rqtest::readSection(section, rqtest::demoFile("alarm.xml"))); }
    std::string text() const { return rqtest::written(section); }
    void* group(std::size_t i) { return &section.groups()[i]; }
    EditorResult run(int command, void* node = nullptr, std::vector<std::size_t> rows = {}) {
        return editor.run(command, EditorSelection{node, std::move(rows)});
    }
    Texts rows(std::size_t g) { return rqtest::listRows(editor.list(group(g))); }
    Texts groupNames() const { return rqtest::nodeLabels(editor.nodes()); }

    AlarmSection section;
    rqtest::RecordingSink sink;
    Dialogs dialogs{sink};
    UndoHistory history;
    AlarmSectionEditor editor{section, dialogs, sink, history};
};

} // namespace

TEST(AlarmForms, ChecksAndSlotRules) {
    for (const char* good : {"1", "500", "0010"})
        EXPECT_EQ(validateAlarmConfigForm({good}), std::nullopt) << good;
    for (const char* bad : {"", "0", "000", "-5", "1.5", " 5", "1e3", "5<"})
        EXPECT_EQ(validateAlarmConfigForm({bad}), std::string(alarmtext::kBadBufferSize)) << bad;
    EXPECT_EQ(validateAlarmGroupForm({""}), "Please input alarm group!");
    EXPECT_EQ(validateAlarmGroupForm({"a&b"}), checkStorableValue("Alarm Group", "a&b"));

    AlarmDataForm f = dataForm("", "x");
    EXPECT_EQ(validateAlarmDataForm(f), "Please choose data!");
    f = dataForm("db", "x", "a<b");
    EXPECT_EQ(validateAlarmDataForm(f), checkStorableValue("Priority", "a<b"));
    // A High row with a variable and a text but no limit is dropped, and so is an
    // On row with only a restore text: neither is checked nor stored.
    f = dataForm("db", "x");
    f.conditions[kAlarmHigh] = {"db.en", "too \"high\"", "", "ok"};
    f.conditions[kAlarmOpen] = {"", "", "", "back <"};
    f.conditions[kAlarmLowLow] = {"", "very low", "db.lim", ""};
    f.conditions[kAlarmClose] = {"db.en", "", "ignored", ""};
    EXPECT_EQ(validateAlarmDataForm(f), std::nullopt);
    AlarmDataItem d = alarmDataFromForm(f);
    for (int slot : {kAlarmHigh, kAlarmHighHigh, kAlarmLow, kAlarmOpen})
        EXPECT_EQ(d.slots[slot], AlarmCondition{}) << slot;
    EXPECT_EQ(d.slots[kAlarmLowLow], (AlarmCondition{true, "", "db.lim", "very low", ""}));
    EXPECT_EQ(d.slots[kAlarmClose], (AlarmCondition{true, "db.en", "", "", ""}));
    EXPECT_EQ(alarmDataFormFromRecord(d).conditions[kAlarmLowLow].limit, "db.lim");
    f.conditions[kAlarmLowLow].restoreText = "&";
    EXPECT_EQ(validateAlarmDataForm(f), checkStorableValue("Low Low Alarm Restore Text", "&"));
}

TEST_F(AlarmEditorTest, NodesMenusListAndKeys) {
    EXPECT_EQ(groupNames(), (Texts{"tanks", "pumps"}));
    EXPECT_EQ(editor.nodes()[1].key, group(1));
    EXPECT_EQ(editor.treeMenu(nullptr), menuid::kAlarmTree);
    EXPECT_EQ(editor.treeMenu(group(0)), menuid::kAlarmTree);
    EXPECT_EQ(editor.listMenu(nullptr), 0);
    EXPECT_EQ(editor.listMenu(group(0)), menuid::kAlarmList);
    for (int c : {32854, 32855, 32856, 32857, 32858, 32859, 32909})
        EXPECT_TRUE(editor.handles(c)) << c;
    EXPECT_FALSE(editor.handles(cmd::kNewData));
    EXPECT_EQ(rows(0), (Texts{"plant|Tank1_Level|1|", "plant|Tank1_High|2|"}));
    EXPECT_EQ(editor.list(nullptr).rows(), 0u);
    EXPECT_EQ(editor.keys(nullptr).add, 0);
    EXPECT_EQ(editor.keys(group(1)).modify, cmd::kModifyAlarmData);
    EXPECT_FALSE(editor.canRename(nullptr));
    EXPECT_TRUE(editor.canRename(group(1)));
}

TEST_F(AlarmEditorTest, GroupFlowsAndTheirMessages) {
    dialogs.group.script = {AlarmGroupForm{""}, AlarmGroupForm{"pumps"}, AlarmGroupForm{"valves"}};
    EditorResult r = run(cmd::kAddAlarmGroup, group(0));
    ASSERT_TRUE(r.changed && r.structural);
    EXPECT_EQ(r.select, group(2));
    EXPECT_EQ(sink.texts(), (Texts{"Please input alarm group!", "The alarm group already exist!"}));
    // The refused name came back in the dialog.
    ASSERT_EQ(dialogs.group.opened.size(), 2u);
    EXPECT_EQ(dialogs.group.opened[1].name, "pumps");
    EXPECT_EQ(groupNames(), (Texts{"tanks", "pumps", "valves"}));

    // Modify: another group's name is refused, its own name changes nothing.
    sink.entries.clear();
    dialogs.group.script = {AlarmGroupForm{"tanks"}, AlarmGroupForm{"valves"}};
    EXPECT_FALSE(run(cmd::kModifyAlarmGroup, group(2)).changed);
    EXPECT_EQ(sink.texts(), (Texts{"The alarm group already exist!"}));
    EXPECT_FALSE(run(cmd::kModifyAlarmGroup).changed); // the section's node: no dialog
    dialogs.group.script = {AlarmGroupForm{"Valves"}};
    ASSERT_TRUE(run(cmd::kModifyAlarmGroup, group(2)).changed);
    EXPECT_EQ(dialogs.group.opened.back().name, "valves");

    // A label edit: empty silently refused, duplicates and bad bytes with messages.
    sink.entries.clear();
    EXPECT_FALSE(editor.rename(group(2), ""));
    EXPECT_FALSE(editor.rename(group(2), "tanks"));
    EXPECT_FALSE(editor.rename(group(2), "a<b"));
    EXPECT_TRUE(editor.rename(group(2), "Valves")); // unchanged: no step
    EXPECT_EQ(sink.texts(),
              (Texts{"The alarm group already exist!", *checkStorableValue("Alarm Group", "a<b")}));
    EXPECT_EQ(history.count(), 2u);

    // Delete asks; Cancel keeps the group.
    sink.entries.clear();
    sink.answers = {false, true};
    EXPECT_FALSE(run(cmd::kDeleteAlarmGroup, group(0)).changed);
    ASSERT_TRUE(run(cmd::kDeleteAlarmGroup, group(0)).changed);
    EXPECT_EQ(sink.texts(), (Texts{"Are you sure to delete current alarm group?",
                                   "Are you sure to delete current alarm group?"}));
    EXPECT_EQ(groupNames(), (Texts{"pumps", "Valves"}));
    EXPECT_FALSE(run(cmd::kDeleteAlarmGroup).changed);
    EXPECT_EQ(sink.entries.size(), 2u);
}

TEST_F(AlarmEditorTest, DataFlowsAndTheirMessages) {
    // Add: no data chosen stays in the dialog; a pair of the group is refused and
    // comes back; the same pair in another group is taken.
    dialogs.data.script = {dataForm("", ""), dataForm("plant", "Tank1_High"),
                           dataForm("plant", "Pump1_Run", "5")};
    ASSERT_TRUE(run(cmd::kAddAlarmData, group(0)).changed);
    EXPECT_EQ(sink.texts(), (Texts{"Please choose data!", "The data already exist!"}));
    EXPECT_EQ(dialogs.data.opened[1].dataname, "Tank1_High");
    EXPECT_EQ(rows(0).back(), "plant|Pump1_Run|5|");
    EXPECT_FALSE(run(cmd::kAddAlarmData).changed); // the section's node: no dialog
    EXPECT_EQ(dialogs.data.opened.size(), 2u);

    // Modify fills the dialog from the record; another row's pair is refused.
    sink.entries.clear();
    dialogs.data.script = {dataForm("plant", "Tank1_Level"), std::nullopt};
    EXPECT_FALSE(run(cmd::kModifyAlarmData, group(0), {2}).changed);
    EXPECT_EQ(sink.texts(), (Texts{"The data already exist!"}));
    const auto& opened = dialogs.data.opened[2];
    EXPECT_EQ(opened.dataname, "Pump1_Run");
    AlarmDataForm f = alarmDataFormFromRecord(section.groups()[0].data[0]);
    EXPECT_EQ(f.conditions[kAlarmHighHigh].limit, "4.8");
    f.statusVar = "plant.Alarm_Ack";
    f.conditions[kAlarmLow] = {};
    dialogs.data.script = {f};
    ASSERT_TRUE(run(cmd::kModifyAlarmData, group(0), {0, 1}).changed);
    EXPECT_EQ(rows(0)[0], "plant|Tank1_Level|1|plant.Alarm_Ack");
    EXPECT_FALSE(section.groups()[0].data[0].slots[kAlarmLow].set);
    dialogs.data.script = {f}; // unchanged: no step
    EXPECT_FALSE(run(cmd::kModifyAlarmData, group(0), {0}).changed);
    EXPECT_FALSE(run(cmd::kModifyAlarmData, group(0), {}).changed);

    // Delete: nothing selected asks nothing; two rows, one question.
    sink.entries.clear();
    EXPECT_FALSE(run(cmd::kDeleteAlarmData, group(0), {}).changed);
    EXPECT_FALSE(run(cmd::kDeleteAlarmData, group(0), {9}).changed);
    EXPECT_TRUE(sink.entries.empty());
    sink.answers = {false, true};
    EXPECT_FALSE(run(cmd::kDeleteAlarmData, group(0), {0, 2}).changed);
    ASSERT_TRUE(run(cmd::kDeleteAlarmData, group(0), {0, 2}).changed);
    EXPECT_EQ(sink.texts(), (Texts{"Are you sure to delete current data ?",
                                   "Are you sure to delete current data ?"}));
    EXPECT_EQ(rows(0), (Texts{"plant|Tank1_High|2|"}));
}

// Every command is one step: undo gives the file's bytes as before, redo as after.
TEST_F(AlarmEditorTest, EveryCommandUndoesAndRedoesToTheSameBytes) {
    AlarmDataForm analog = dataForm("plant", "Tank2_Level", "4");
    analog.conditions[kAlarmHigh] = {"plant.Alarm_Ack", "high", "plant.Limit", "normal"};
    analog.conditions[kAlarmClose] = {"", "closed", "", "open"};
    const std::vector<std::string> texts = rqtest::expectEveryStepUndoesAndRedoes(
        history,
        {
            {"Undo Alarm Configuration",
             [&] { return dialogs.config.script = {AlarmConfigForm{"64"}}, run(32856).changed; }},
            {"Undo Add Alarm Group",
             [&] { return dialogs.group.script = {AlarmGroupForm{"valves"}}, run(32854).changed; }},
            {"Undo Add Alarm Data",
             [&] { return dialogs.data.script = {analog}, run(32857, group(2)).changed; }},
            {"Undo Modify Alarm Data",
             [&] {
                 return dialogs.data.script = {dataForm("plant", "Tank1_High", "9")},
                        run(32859, group(0), {1}).changed;
             }},
            {"Undo Delete Alarm Data",
             [&] { return sink.answers = {true}, run(32858, group(0), {0}).changed; }},
            {"Undo Modify Alarm Group",
             [&] {
                 return dialogs.group.script = {AlarmGroupForm{"tank"}},
                        run(32909, group(0)).changed;
             }},
            {"Undo Rename Alarm Group", [&] { return editor.rename(group(1), "pump"); }},
            {"Undo Delete Alarm Group",
             [&] { return sink.answers = {true}, run(32855, group(0)).changed; }},
        },
        [&] { return text(); });
    EXPECT_NE(
        texts.back().find("\t\t\t<High enable_var=\"plant.Alarm_Ack\" value_var=\"plant.Limit\" "
                          "info=\"high\" restore_info=\"normal\" />\r\n"
                          "\t\t\t<Close enable_var=\"\" value_var=\"\" info=\"closed\" "
                          "restore_info=\"open\" />\r\n"),
        std::string::npos);
    EXPECT_EQ(texts.front(), rqtest::readFile(rqtest::demoFile("alarm.xml")));
}

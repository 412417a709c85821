// The HMI database editor without a display: the dialogs' checks, the command
// flows with scripted dialogs and a recording sink, and the bytes of hmidb.xml
// through undo and redo of every command.

#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "core/StorableValue.h"
#include "core/ValueChecks.h"
#include "sections/hmidb/HmiDbSectionEditor.h"
#include "support/EditorTestKit.h"

#include <functional>

using namespace rq;
using Texts = std::vector<std::string>;
namespace text = rq::hmidbtext;

namespace {

constexpr int kIo = HmiDbSection::kIoKind;
constexpr int kMemory = HmiDbSection::kMemoryKind;

struct Dialogs : HmiDbDialogHost {
    explicit Dialogs(MessageSink& s) : sink(s) {}
    MessageSink& sink;
    rqtest::ScriptedDialog<HmiGroupForm> group;
    rqtest::ScriptedDialog<IoDataForm> io;
    rqtest::ScriptedDialog<MemoryDataForm> memory;
    bool groupDialog(HmiGroupForm& f) override { return group.answer(f, sink); }
    bool ioDataDialog(IoDataForm& f) override { return io.answer(f, sink, validateIoDataForm); }
    bool memoryDataDialog(MemoryDataForm& f) override {
        return memory.answer(f, sink, validateMemoryDataForm);
    }
};

struct HmiDbEditorTest : ::testing::Test {
    HmiDbEditorTest() {
        EXPECT_TRUE(rqtest::readSection(section,
                                        rqtest::dataPath("hmidb", "nested", "input.xml").string()));
    }
    std::string text() const { return rqtest::written(section); }
    void* node(int kind, HmiGroupPath path = {}) const { return editor.key({kind, path}); }
    bool run(int command, void* at, std::vector<std::size_t> rows = {}) {
        return editor.run(command, EditorSelection{at, std::move(rows)}).changed;
    }
    Texts rows(void* at) const { return rqtest::listRows(editor.list(at)); }

    HmiDbSection section;
    rqtest::RecordingSink sink;
    Dialogs dialogs{sink};
    UndoHistory history;
    HmiDbSectionEditor editor{section, dialogs, sink, history};
};

} // namespace

TEST(HmiDbForms, ChecksInOrderAndTheTypeLocksTheLength) {
    EXPECT_EQ(validateIoDataForm({"", "db", "v", 500}), text::kIoMissing);
    EXPECT_EQ(validateIoDataForm({"n", "", "v", 0}), text::kIoMissing);
    EXPECT_EQ(validateIoDataForm({"n", "db", "", 500}), text::kIoMissing);
    EXPECT_EQ(validateIoDataForm({"n", "db", "v", 0}), text::kPeriodError);
    EXPECT_EQ(validateIoDataForm({"n", "db", "v", -5}), text::kPeriodError);
    EXPECT_EQ(validateIoDataForm({"n", "d&b", "v", 1}), checkStorableValue("Database Name", "d&b"));
    EXPECT_EQ(validateIoDataForm({"n", "db", "v", 1}), std::nullopt);

    EXPECT_EQ(validateMemoryDataForm({"", 5, 0, ""}), text::kNameMissing);
    EXPECT_EQ(validateMemoryDataForm({"m", 9, 0, ""}), text::kLengthError);
    EXPECT_EQ(validateMemoryDataForm({"m", 0, 8, ""}), text::kBitLengthError);
    EXPECT_EQ(validateMemoryDataForm({"m", 0, 7, "a<b"}),
              checkStorableValue("Initial value", "a<b"));
    EXPECT_EQ(validateMemoryDataForm({"m", 9, 64, ""}), std::nullopt);
    EXPECT_EQ(validateMemoryDataForm({"m", 1, 1, "200"}), checkInitialValue(1, 1, "200"));
    ASSERT_TRUE(checkInitialValue(1, 1, "200"));

    MemoryDataForm f;
    EXPECT_TRUE(lengthEditable(f)); // no type selected
    f.typeIndex = 8;                // double
    applyTypeSelection(f);
    EXPECT_EQ(f.length, 8);
    EXPECT_FALSE(lengthEditable(f));
    f.typeIndex = 0;
    applyTypeSelection(f);
    EXPECT_EQ(f.length, 8); // bit keeps what stands, for the user to change
    EXPECT_TRUE(lengthEditable(f));
    EXPECT_EQ(memoryFormFromItem({"x", "float", "", "1"}).length, 4);
    EXPECT_EQ(memoryItemFromForm({"x", 2, 1, "0"}), (HmiMemoryItem{"x", "uchar", "1", "0"}));
}

TEST_F(HmiDbEditorTest, FixedGroupsNestedGroupsTwoListLayoutsMenusAndKeys) {
    std::vector<EditorNode> nodes = editor.nodes();
    ASSERT_EQ(nodes.size(), 2u);
    EXPECT_EQ(nodes[0].label, "Real-time related data");
    EXPECT_EQ(nodes[1].label, "custom data");
    ASSERT_EQ(nodes[0].children.size(), 2u);
    EXPECT_EQ(nodes[0].children[0].label, "motors");
    EXPECT_EQ(nodes[0].children[0].children[0].label, "left");
    EXPECT_EQ(nodes[1].children[0].label, "recipes");
    EXPECT_EQ(editor.place(nodes[0].children[0].children[0].key), (HmiPlace{kIo, {0, 0}}));

    EditorList io = editor.list(node(kIo));
    EXPECT_EQ(rows(node(kIo)), (Texts{"temp|plant|temp1|500", "temp|plant|temp2|-5"}));
    EditorList memory = editor.list(node(kMemory));
    EXPECT_NE(memory.kind, io.kind);
    EXPECT_EQ(rows(node(kMemory)), (Texts{"counter|long|4|0", "flags|bit|3|1"}));
    EXPECT_EQ(rows(node(kMemory, {0})), (Texts{"recipe|string|32|"}));
    EXPECT_TRUE(rows(nullptr).empty());

    EXPECT_FALSE(editor.canRename(nullptr));
    EXPECT_FALSE(editor.canRename(node(kIo)));
    EXPECT_TRUE(editor.canRename(node(kIo, {0, 0})));
    for (int c : {32813, 32814, 32874, 32816, 32817, 32818})
        EXPECT_TRUE(editor.handles(c)) << c;
    EXPECT_FALSE(editor.handles(cmd::kNewData));
}

TEST_F(HmiDbEditorTest, CommandsOnNodesWithoutMeaningDoNothingAndSayNothing) {
    const std::string before = text();
    for (int c : {32813, 32814, 32874, 32816, 32817, 32818})
        EXPECT_FALSE(run(c, nullptr, {0})) << c;
    for (void* fixed : {node(kIo), node(kMemory)}) {
        EXPECT_FALSE(run(cmd::kDeleteHmiDataGroup, fixed));
        EXPECT_FALSE(run(cmd::kModifyHmiDataGroup, fixed));
        EXPECT_FALSE(run(cmd::kDeleteHmiData, fixed)); // no row selected: no question
        EXPECT_FALSE(run(cmd::kModifyHmiData, fixed, {7}));
    }
    EXPECT_FALSE(editor.rename(node(kIo), "x"));
    EXPECT_TRUE(dialogs.group.opened.empty() && dialogs.io.opened.empty());
    EXPECT_TRUE(sink.entries.empty());
    EXPECT_EQ(text(), before);
}

TEST_F(HmiDbEditorTest, IoDataDialogFlow) {
    dialogs.io.script = {IoDataForm{"", "plant", "v", 500}, IoDataForm{"t", "plant", "v", 0},
                         IoDataForm{"temp", "plant", "temp3", 1000}};
    ASSERT_TRUE(run(cmd::kNewHmiData, node(kIo)));
    EXPECT_EQ(sink.texts(), (Texts{text::kIoMissing, text::kPeriodError}));
    EXPECT_EQ(dialogs.io.opened[0].period, 500);                // the new item's default
    EXPECT_EQ(rows(node(kIo)).back(), "temp|plant|temp3|1000"); // a third "temp" is fine

    // Modify opens with the selected row's own item and changes only that one,
    // although the first item has the same name.
    dialogs.io.script = {IoDataForm{"temp", "plant", "temp2", 250}};
    ASSERT_TRUE(run(cmd::kModifyHmiData, node(kIo), {2, 1}));
    EXPECT_EQ(dialogs.io.opened[1].dataname, "temp2");
    EXPECT_EQ(rows(node(kIo)),
              (Texts{"temp|plant|temp1|500", "temp|plant|temp2|250", "temp|plant|temp3|1000"}));
    dialogs.io.script = {std::nullopt}; // Cancel
    EXPECT_FALSE(run(cmd::kModifyHmiData, node(kIo), {0}));
    EXPECT_EQ(history.count(), 2u);
}

TEST_F(HmiDbEditorTest, MemoryDataDialogFlow) {
    dialogs.memory.script = {MemoryDataForm{"", 0, 1, "0"}, MemoryDataForm{"b", 0, 0, "0"},
                             MemoryDataForm{"b", 0, 9, "0"}, MemoryDataForm{"b", 0, 2, "1"}};
    ASSERT_TRUE(run(cmd::kNewHmiData, node(kMemory, {0})));
    EXPECT_EQ(sink.texts(), (Texts{text::kNameMissing, text::kLengthError, text::kBitLengthError}));
    EXPECT_EQ(dialogs.memory.opened[0].typeIndex, -1);
    EXPECT_EQ(dialogs.memory.opened[0].init, "0");
    EXPECT_EQ(rows(node(kMemory, {0})).back(), "b|bit|2|1");

    dialogs.memory.script = {MemoryDataForm{"counter", 6, 4, "7"}};
    ASSERT_TRUE(run(cmd::kModifyHmiData, node(kMemory), {0}));
    EXPECT_EQ(dialogs.memory.opened[1].typeIndex, 5); // long
    EXPECT_EQ(rows(node(kMemory))[0], "counter|unsigned long|4|7");
}

TEST_F(HmiDbEditorTest, GroupFlowsAskAndKeepTheFixedGroups) {
    dialogs.group.script = {HmiGroupForm{""}};
    EXPECT_FALSE(run(cmd::kNewHmiDataGroup, node(kIo))); // an empty name adds nothing
    dialogs.group.script = {HmiGroupForm{"a<b"}, HmiGroupForm{"valves"}};
    EditorResult r = editor.run(cmd::kNewHmiDataGroup, {node(kIo, {0}), {}});
    ASSERT_TRUE(r.changed && r.structural);
    EXPECT_EQ(r.select, node(kIo, {0}));                // the parent stays selected
    EXPECT_EQ(dialogs.group.opened.back().name, "a<b"); // opened again with what was typed
    EXPECT_EQ(sink.texts(), Texts{*checkStorableValue("Data Group", "a<b")});
    EXPECT_EQ(section.io.groups[0].groups[1].name, "valves");

    sink.answers = {false, true};
    EXPECT_FALSE(run(cmd::kDeleteHmiDataGroup, node(kIo, {0})));
    r = editor.run(cmd::kDeleteHmiDataGroup, {node(kIo, {0}), {}});
    ASSERT_TRUE(r.changed);
    EXPECT_EQ(r.select, node(kIo));
    EXPECT_EQ(sink.texts().back(), text::kDeleteGroup);
    ASSERT_EQ(section.io.groups.size(), 1u);
    EXPECT_EQ(section.io.groups[0].name, "empty");

    EXPECT_FALSE(editor.rename(node(kIo, {0}), ""));
    EXPECT_FALSE(editor.rename(node(kIo, {0}), "x&y"));
    EXPECT_EQ(sink.texts().back(), *checkStorableValue("Data Group", "x&y"));
    EXPECT_TRUE(editor.rename(node(kIo, {0}), "spare"));
    EXPECT_EQ(history.undoText(), "Undo Rename Data Group");
}

TEST_F(HmiDbEditorTest, EveryCommandIsOneStepThatUndoesAndRedoesToTheFileBytes) {
    auto group = [&](const char* name) { return dialogs.group.script = {HmiGroupForm{name}}, 0; };
    auto io = [&](IoDataForm f) { return dialogs.io.script = {f}, 0; };
    auto memory = [&](MemoryDataForm f) { return dialogs.memory.script = {f}, 0; };
    const std::vector<std::string> texts = rqtest::expectEveryStepUndoesAndRedoes(
        history,
        {
            {"Undo Add Data",
             [&] {
                 return io({"n", "d", "v", 9}), run(cmd::kNewHmiData, node(kIo, {0, 0}));
             }},
            {"Undo Add Data",
             [&] {
                 return memory({"n", 9, 8, ""}), run(cmd::kNewHmiData, node(kMemory));
             }},
            {"Undo Modify Data",
             [&] {
                 return io({"t", "d", "v", 9}), run(cmd::kModifyHmiData, node(kIo), {1});
             }},
            {"Undo Modify Data",
             [&] {
                 return memory({"s", 9, 9, ""}), run(cmd::kModifyHmiData, node(kMemory, {0}), {0});
             }},
            {"Undo Delete Data",
             [&] {
                 return run(cmd::kDeleteHmiData, node(kIo), {1, 0, 1});
             }},
            {"Undo Delete Data", [&] { return run(cmd::kDeleteHmiData, node(kMemory), {1}); }},
            {"Undo Add Data Group",
             [&] { return group("g"), run(cmd::kNewHmiDataGroup, node(kIo, {1})); }},
            {"Undo Add Data Group",
             [&] { return group("g"), run(cmd::kNewHmiDataGroup, node(kMemory)); }},
            {"Undo Modify Data Group",
             [&] {
                 return group("right"), run(cmd::kModifyHmiDataGroup, node(kIo, {0, 0}));
             }},
            {"Undo Rename Data Group", [&] { return editor.rename(node(kMemory, {0}), "menus"); }},
            {"Undo Delete Data Group",
             [&] { return run(cmd::kDeleteHmiDataGroup, node(kIo, {0})); }},
            {"Undo Delete Data Group",
             [&] { return run(cmd::kDeleteHmiDataGroup, node(kMemory, {0})); }},
        },
        [&] { return text(); });
    EXPECT_EQ(texts.front(),
              rqtest::readFile(rqtest::dataPath("hmidb", "nested", "input.xml").string()));
}

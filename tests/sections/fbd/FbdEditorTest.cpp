// The function block editor without a display: the forms' checks, the command flows
// with a scripted dialog host and a recording sink, and the bytes of fbd.xml
// through undo and redo of every command.

#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "sections/fbd/FbdSectionEditor.h"
#include "support/EditorTestKit.h"

#include <gtest/gtest.h>

using namespace rq;
using Texts = std::vector<std::string>;

namespace {

struct Dialogs : FbdDialogHost {
    explicit Dialogs(MessageSink& s) : sink(s) {}
    MessageSink& sink;
    rqtest::ScriptedDialog<FbdBlockForm> blocks;
    rqtest::ScriptedDialog<FbdParamForm> params;
    bool blockDialog(FbdBlockForm& f) override {
        return blocks.answer(f, sink, validateFbdBlockForm);
    }
    bool paramDialog(FbdParamForm& f) override {
        return params.answer(f, sink, validateFbdParamForm);
    }
};

struct FbdEditorTest : ::testing::Test {
    FbdEditorTest() {
        EXPECT_TRUE(
            rqtest::readSection(section, rqtest::dataPath("fbd", "blocks", "input.xml").string()));
    }
    std::string bytes() const { return rqtest::written(section); }
    void* block(std::size_t i) { return &section.blocks().at(i); }
    EditorResult run(int command, void* node, std::vector<std::size_t> rows = {}) {
        return editor.run(command, EditorSelection{node, std::move(rows)});
    }
    Texts cells(void* node) const { return rqtest::listRows(editor.list(node)); }

    FbdSection section;
    rqtest::RecordingSink sink;
    Dialogs dialogs{sink};
    UndoHistory history;
    FbdSectionEditor editor{section, dialogs, sink, history};
};

} // namespace

TEST(FbdForms, ChecksInTheirOrder) {
    const std::pair<FbdBlockForm, std::optional<std::string>> blocks[] = {
        {{"", "", "", true}, "Please input FBD name!"},
        {{"b", "", "", true}, "Please choose FBD type!"},
        {{"b", "Arithm", "", true}, "Please choose FBD type!"}, // not a class
        {{"b", "", "", false}, std::nullopt},                   // the class stays
        {{"b", "Logic", "", true}, std::nullopt},               // member kind optional
    };
    for (const auto& [form, message] : blocks)
        EXPECT_EQ(validateFbdBlockForm(form), message) << form.name << form.typeText;
    auto storable = validateFbdBlockForm({"a<b", "PID", "", true});
    ASSERT_TRUE(storable);
    EXPECT_NE(storable->find("\"FBD Name\""), std::string::npos) << *storable;

    EXPECT_EQ(validateFbdParamForm({"IN", "plant", "", false}), "Please choose data!");
    EXPECT_EQ(validateFbdParamForm({"IN", "", "x", false}), "Please choose data!");
    EXPECT_EQ(validateFbdParamForm({"IN", "plant", "x", false}), std::nullopt);
    EXPECT_TRUE(validateFbdParamForm({"IN", "plant", "x&y", false}));
}

TEST_F(FbdEditorTest, NodesMenusAndTheListOfABlock) {
    std::vector<EditorNode> nodes = editor.nodes();
    ASSERT_EQ(nodes.size(), 4u);
    EXPECT_EQ(nodes[2].label, "\u6e29\u5ea6PID");
    EXPECT_EQ(nodes[2].key, block(2));
    EXPECT_EQ(editor.treeMenu(nullptr), menuid::kFbdTree);
    EXPECT_EQ(editor.treeMenu(block(0)), menuid::kFbdTree);
    EXPECT_EQ(editor.listMenu(nullptr), 0);
    EXPECT_EQ(editor.listMenu(block(0)), menuid::kFbdList);
    EXPECT_EQ(editor.keys(block(0)).modify, cmd::kFbdModifyParameter);
    EXPECT_EQ(editor.list(nullptr).rows(), 0u);
    EXPECT_EQ(cells(block(1)), (Texts{"EN|system|Logic_True", "IN1|plant|x", "IN2||"}));
    EXPECT_EQ(cells(block(0)).front(), "EN|plant|run");
}

TEST_F(FbdEditorTest, FlowsWithTheirMessages) {
    // Wrong node: nothing happens, nothing is said.
    for (int c : {cmd::kDeleteFbd, cmd::kFbdConfiguration, cmd::kFbdModifyParameter})
        EXPECT_FALSE(run(c, nullptr, {0}).changed) << c;
    EXPECT_TRUE(dialogs.blocks.opened.empty());

    // Add: a taken name opens the dialog again with what was typed.
    dialogs.blocks.script = {FbdBlockForm{"", "", "", true},
                             FbdBlockForm{"gate", "Logic", "Or", true},
                             FbdBlockForm{"mix", "Logic", "Or", true}};
    EditorResult r = run(cmd::kNewFbd, nullptr);
    EXPECT_EQ(sink.texts(), (Texts{"Please input FBD name!", "The Function block already exist!"}));
    ASSERT_EQ(dialogs.blocks.opened.size(), 2u);
    EXPECT_TRUE(dialogs.blocks.opened[0].adding);
    EXPECT_EQ(dialogs.blocks.opened[1].name, "gate");
    ASSERT_EQ(section.blocks().size(), 5u);
    EXPECT_TRUE(r.structural);
    EXPECT_EQ(r.select, block(4));
    EXPECT_EQ(cells(block(4)), (Texts{"EN|system|Logic_True", "IN1||", "IN2||", "OUT||"}));
    EXPECT_EQ(section.blocks()[4].memberKind, "Logic_Or");

    // Configuration: filled from the block, the class fixed; a name of another block
    // is refused, the block's own accepted.
    sink.entries.clear();
    dialogs.blocks.opened.clear();
    dialogs.blocks.script = {FbdBlockForm{"cmp", "Logic", "Xor", false},
                             FbdBlockForm{"mix", "Logic", "Xor", false}};
    EXPECT_TRUE(run(cmd::kFbdConfiguration, block(4)).changed);
    EXPECT_EQ(sink.texts(), Texts{"The Function block already exist!"});
    EXPECT_EQ(dialogs.blocks.opened[0].typeText, "Logic");
    EXPECT_EQ(dialogs.blocks.opened[0].subTypeText, "Or");
    EXPECT_FALSE(dialogs.blocks.opened[0].adding);
    EXPECT_EQ(section.blocks()[4].memberKind, "Logic_Xor");
    dialogs.blocks.script = {FbdBlockForm{"mix", "Logic", "", false}}; // nothing chosen keeps it
    EXPECT_FALSE(run(cmd::kFbdConfiguration, block(4)).changed);

    // Parameter: the enabling row offers boolean data and starts on the always-true
    // item; choosing that item again is no change.
    sink.entries.clear();
    dialogs.params.script = {FbdParamForm{"EN", "system", "Logic_True", true}};
    EXPECT_FALSE(run(cmd::kFbdModifyParameter, block(4), {0}).changed);
    EXPECT_EQ(dialogs.params.opened[0].booleanOnly, true);
    EXPECT_EQ(dialogs.params.opened[0].dbname, "system");
    dialogs.params.script = {FbdParamForm{"IN2", "", "", false},
                             FbdParamForm{"IN2", "plant", "b", false}};
    EXPECT_TRUE(run(cmd::kFbdModifyParameter, block(4), {3, 2}).changed);
    EXPECT_EQ(dialogs.params.opened[1].name, "IN2");
    EXPECT_FALSE(dialogs.params.opened[1].booleanOnly);
    EXPECT_EQ(sink.texts(), Texts{"Please choose data!"});
    EXPECT_EQ(cells(block(4))[2], "IN2|plant|b");
    EXPECT_FALSE(run(cmd::kFbdModifyParameter, block(4), {9}).changed);

    // Delete asks; Cancel keeps the block.
    sink.entries.clear();
    sink.answers = {false, true};
    EXPECT_FALSE(run(cmd::kDeleteFbd, block(1)).changed);
    r = run(cmd::kDeleteFbd, block(1));
    EXPECT_TRUE(r.changed);
    EXPECT_EQ(r.select, nullptr);
    EXPECT_EQ(sink.texts(), (Texts(2, "Are you sure to delete current function block?")));
    EXPECT_EQ(section.blocks().size(), 4u);
    EXPECT_EQ(section.blocks()[1].name, "\u6e29\u5ea6PID");
}

TEST_F(FbdEditorTest, EveryCommandIsOneStepAndUndoRedoGiveTheBytes) {
    auto blockForm = [&](FbdBlockForm f) { return dialogs.blocks.script = {f}, 0; };
    auto paramForm = [&](FbdParamForm f) { return dialogs.params.script = {f}, 0; };
    const std::vector<std::string> texts = rqtest::expectEveryStepUndoesAndRedoes(
        history,
        {
            {"Undo Modify FBD Parameter",
             [&] {
                 return paramForm({"EN", "system", "Logic_True", true}),
                        run(cmd::kFbdModifyParameter, block(0), {0}).changed;
             }},
            {"Undo Modify FBD Parameter",
             [&] {
                 return paramForm({"EN", "plant", "on", true}),
                        run(cmd::kFbdModifyParameter, block(1), {0}).changed;
             }},
            {"Undo Modify FBD Parameter",
             [&] {
                 return paramForm({"MV", "loop", "out", false}),
                        run(cmd::kFbdModifyParameter, block(2), {3}).changed;
             }},
            {"Undo FBD Configuration",
             [&] {
                 return blockForm({"sum", "", "Divide", false}),
                        run(cmd::kFbdConfiguration, block(0)).changed;
             }},
            {"Undo FBD Configuration",
             [&] {
                 return blockForm({"cmp", "", ">", false}),
                        run(cmd::kFbdConfiguration, block(3)).changed;
             }},
            {"Undo Add FBD",
             [&] {
                 return blockForm({"lin", "Linear Convert", "", true}),
                        run(cmd::kNewFbd, nullptr).changed;
             }},
            {"Undo Add FBD",
             [&] {
                 return blockForm({"and", "Logic", "And", true}),
                        run(cmd::kNewFbd, block(0)).changed;
             }},
            {"Undo Delete FBD", [&] { return run(cmd::kDeleteFbd, block(0)).changed; }},
            {"Undo Delete FBD", [&] { return run(cmd::kDeleteFbd, block(2)).changed; }},
        },
        [&] { return bytes(); });
    EXPECT_EQ(texts.front(),
              rqtest::readFile(rqtest::dataPath("fbd", "blocks", "input.xml").string()));
}

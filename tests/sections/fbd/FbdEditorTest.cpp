// The function block editor without a display: the forms' checks, the command flows
// with a scripted dialog host and a recording sink, and the bytes of fbd.xml
// through undo and redo of every command.

#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "sections/fbd/FbdSectionEditor.h"
#include "support/SectionTestKit.h"

#include <gtest/gtest.h>

#include <deque>
#include <optional>

using namespace rq;
using Texts = std::vector<std::string>;

namespace {

// Answers each dialog from its script like the real dialog: a form failing its
// check shows the message and the next scripted form is tried; nothing is Cancel.
// Records the forms the dialogs opened with.
struct ScriptedDialogs : FbdDialogHost {
    explicit ScriptedDialogs(MessageSink& sink) : sink(sink) {}
    MessageSink& sink;
    std::deque<std::optional<FbdBlockForm>> blocks;
    std::deque<std::optional<FbdParamForm>> params;
    std::vector<FbdBlockForm> openedBlocks;
    std::vector<FbdParamForm> openedParams;

    template <class Form, class Check>
    bool answer(std::deque<std::optional<Form>>& script, Form& f, Check check) {
        while (!script.empty()) {
            std::optional<Form> next = script.front();
            script.pop_front();
            if (!next)
                return false;
            if (auto message = check(*next)) {
                sink.showMessage(*message, MessageIcon::Stop);
                continue;
            }
            f = *next;
            return true;
        }
        return false;
    }
    bool blockDialog(FbdBlockForm& f) override {
        openedBlocks.push_back(f);
        return answer(blocks, f, validateFbdBlockForm);
    }
    bool paramDialog(FbdParamForm& f) override {
        openedParams.push_back(f);
        return answer(params, f, validateFbdParamForm);
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
    Texts cells(void* node) const {
        Texts out;
        EditorList l = editor.list(node);
        for (std::size_t r = 0; r < l.rows(); ++r)
            out.push_back(std::string(l.cell(r, 0)) + "|" + std::string(l.cell(r, 1)) + "|" +
                          std::string(l.cell(r, 2)));
        return out;
    }

    FbdSection section;
    rqtest::RecordingSink sink;
    ScriptedDialogs dialogs{sink};
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
    EditorList l = editor.list(block(1));
    ASSERT_EQ(l.columns.size(), 3u);
    EXPECT_EQ(l.columns[1].title, "Real-time data name");
    EXPECT_EQ(cells(block(1)), (Texts{"EN|system|Logic_True", "IN1|plant|x", "IN2||"}));
    EXPECT_EQ(cells(block(0)).front(), "EN|plant|run");
}

TEST_F(FbdEditorTest, FlowsWithTheirMessages) {
    // Wrong node: nothing happens, nothing is said.
    for (int c : {cmd::kDeleteFbd, cmd::kFbdConfiguration, cmd::kFbdModifyParameter})
        EXPECT_FALSE(run(c, nullptr, {0}).changed) << c;
    EXPECT_TRUE(dialogs.openedBlocks.empty());

    // Add: a taken name opens the dialog again with what was typed.
    dialogs.blocks = {FbdBlockForm{"", "", "", true}, FbdBlockForm{"gate", "Logic", "Or", true},
                      FbdBlockForm{"mix", "Logic", "Or", true}};
    EditorResult r = run(cmd::kNewFbd, nullptr);
    EXPECT_EQ(sink.texts(), (Texts{"Please input FBD name!", "The Function block already exist!"}));
    ASSERT_EQ(dialogs.openedBlocks.size(), 2u);
    EXPECT_TRUE(dialogs.openedBlocks[0].adding);
    EXPECT_EQ(dialogs.openedBlocks[1].name, "gate");
    ASSERT_EQ(section.blocks().size(), 5u);
    EXPECT_TRUE(r.structural);
    EXPECT_EQ(r.select, block(4));
    EXPECT_EQ(cells(block(4)), (Texts{"EN|system|Logic_True", "IN1||", "IN2||", "OUT||"}));
    EXPECT_EQ(section.blocks()[4].memberKind, "Logic_Or");

    // Configuration: filled from the block, the class fixed; a name of another block
    // is refused, the block's own accepted.
    sink.entries.clear();
    dialogs.openedBlocks.clear();
    dialogs.blocks = {FbdBlockForm{"cmp", "Logic", "Xor", false},
                      FbdBlockForm{"mix", "Logic", "Xor", false}};
    EXPECT_TRUE(run(cmd::kFbdConfiguration, block(4)).changed);
    EXPECT_EQ(sink.texts(), Texts{"The Function block already exist!"});
    EXPECT_EQ(dialogs.openedBlocks[0].typeText, "Logic");
    EXPECT_EQ(dialogs.openedBlocks[0].subTypeText, "Or");
    EXPECT_FALSE(dialogs.openedBlocks[0].adding);
    EXPECT_EQ(section.blocks()[4].memberKind, "Logic_Xor");
    dialogs.blocks = {FbdBlockForm{"mix", "Logic", "", false}}; // nothing chosen keeps it
    EXPECT_FALSE(run(cmd::kFbdConfiguration, block(4)).changed);

    // Parameter: the enabling row offers boolean data and starts on the always-true
    // item; choosing that item again is no change.
    sink.entries.clear();
    dialogs.params = {FbdParamForm{"EN", "system", "Logic_True", true}};
    EXPECT_FALSE(run(cmd::kFbdModifyParameter, block(4), {0}).changed);
    EXPECT_EQ(dialogs.openedParams[0].booleanOnly, true);
    EXPECT_EQ(dialogs.openedParams[0].dbname, "system");
    dialogs.params = {FbdParamForm{"IN2", "", "", false}, FbdParamForm{"IN2", "plant", "b", false}};
    EXPECT_TRUE(run(cmd::kFbdModifyParameter, block(4), {3, 2}).changed);
    EXPECT_EQ(dialogs.openedParams[1].name, "IN2");
    EXPECT_FALSE(dialogs.openedParams[1].booleanOnly);
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
    struct Row {
        const char* name;
        int command;
        std::size_t block; // 9: the fixed node
        std::vector<std::size_t> rows;
        std::optional<FbdBlockForm> blockForm;
        std::optional<FbdParamForm> paramForm;
    };
    const Row table[] = {
        {"Add FBD", cmd::kNewFbd, 9, {}, FbdBlockForm{"lin", "Linear Convert", "", true}, {}},
        {"Add FBD", cmd::kNewFbd, 0, {}, FbdBlockForm{"and", "Logic", "And", true}, {}},
        {"Delete FBD", cmd::kDeleteFbd, 0, {}, {}, {}},
        {"Delete FBD", cmd::kDeleteFbd, 3, {}, {}, {}},
        {"FBD Configuration",
         cmd::kFbdConfiguration,
         0,
         {},
         FbdBlockForm{"sum", "", "Divide", false},
         {}},
        {"FBD Configuration",
         cmd::kFbdConfiguration,
         3,
         {},
         FbdBlockForm{"cmp", "", ">", false},
         {}},
        {"Modify FBD Parameter",
         cmd::kFbdModifyParameter,
         0,
         {0},
         {},
         FbdParamForm{"EN", "system", "Logic_True", true}},
        {"Modify FBD Parameter",
         cmd::kFbdModifyParameter,
         1,
         {0},
         {},
         FbdParamForm{"EN", "plant", "on", true}},
        {"Modify FBD Parameter",
         cmd::kFbdModifyParameter,
         2,
         {3},
         {},
         FbdParamForm{"MV", "loop", "out", false}},
    };
    for (const Row& row : table) {
        SCOPED_TRACE(std::string(row.name) + " on block " + std::to_string(row.block));
        dialogs.blocks = {row.blockForm};
        dialogs.params = {row.paramForm};
        const std::string before = bytes();
        const std::size_t steps = history.index();
        ASSERT_TRUE(
            run(row.command, row.block == 9 ? nullptr : block(row.block), row.rows).changed);
        EXPECT_EQ(history.index(), steps + 1);
        EXPECT_EQ(history.undoText(), std::string("Undo ") + row.name);
        const std::string after = bytes();
        EXPECT_NE(after, before);
        ASSERT_TRUE(history.undo());
        EXPECT_EQ(bytes(), before);
        ASSERT_TRUE(history.redo());
        EXPECT_EQ(bytes(), after);
        ASSERT_TRUE(history.undo());
    }
    EXPECT_EQ(bytes(), rqtest::readFile(rqtest::dataPath("fbd", "blocks", "input.xml").string()));
}

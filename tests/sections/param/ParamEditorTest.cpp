// The parameter editor without a display: the form's checks, the command flows
// with a scripted dialog host and a recording sink (records found by their pair),
// and the bytes of param.xml through undo and redo of every command.

#include "core/CommandIds.h"
#include "core/StorableValue.h"
#include "sections/param/ParamSectionEditor.h"
#include "support/EditorTestKit.h"

#include <gtest/gtest.h>

using namespace rq;
using Texts = std::vector<std::string>;

namespace {

struct Dialogs : ParamDialogHost {
    explicit Dialogs(MessageSink& s) : sink(s) {}
    MessageSink& sink;
    rqtest::ScriptedDialog<ParamForm> param;
    bool paramDialog(ParamForm& f) override { return param.answer(f, sink, validateParamForm); }
};

struct ParamEditorTest : ::testing::Test {
    ParamEditorTest() { EXPECT_TRUE(rqtest::readSection(section, rqtest::demoFile("param.xml"))); }
    std::string text() const { return rqtest::written(section); }
    bool run(int command, std::vector<std::size_t> rows = {}) {
        return editor.run(command, EditorSelection{nullptr, std::move(rows)}).changed;
    }
    Texts rows() const { return rqtest::listRows(editor.list(nullptr)); }

    ParamSection section;
    rqtest::RecordingSink sink;
    Dialogs dialogs{sink};
    UndoHistory history;
    ParamSectionEditor editor{section, dialogs, sink, history};
};

} // namespace

TEST(ParamForms, ChecksInOrder) {
    EXPECT_EQ(validateParamForm({"", "x", "1"}), "Please choose data!");
    EXPECT_EQ(validateParamForm({"db", "", "1"}), "Please choose data!");
    EXPECT_EQ(validateParamForm({"db", "x", ""}), std::nullopt); // a value is not required
    EXPECT_EQ(validateParamForm({"db", "x", "a<b"}), checkStorableValue("Initial Value", "a<b"));
    // The value stays as typed: 70000 is kept even for a short.
    EXPECT_EQ(validateParamForm({"db", "x", "70000"}), std::nullopt);
    EXPECT_EQ(validateParamForm({"d&b", "x", "1"}), checkStorableValue("Database Name", "d&b"));
}

TEST_F(ParamEditorTest, TheListShowsEveryRecord) {
    EXPECT_TRUE(editor.nodes().empty());
    EXPECT_EQ(rows(), (Texts{"plant|Level_SetPoint|2.5", "hmi|Page|1"}));
}

TEST_F(ParamEditorTest, AddRefusesAnExistingPairAndKeepsWhatWasTyped) {
    dialogs.param.script = {ParamForm{"", "", "7"}, ParamForm{"hmi", "Page", "7"},
                            ParamForm{"hmi", "Mode", "7"}};
    ASSERT_TRUE(run(cmd::kNewParameter));
    EXPECT_EQ(sink.texts(), (Texts{"Please choose data!", "The data already exist!"}));
    // The dialog opened empty, then again with the refused pair.
    ASSERT_EQ(dialogs.param.opened.size(), 2u);
    EXPECT_EQ(dialogs.param.opened[1].dataname, "Page");
    EXPECT_EQ(rows().back(), "hmi|Mode|7");
    dialogs.param.script = {std::nullopt};
    EXPECT_FALSE(run(cmd::kNewParameter));
    EXPECT_EQ(history.count(), 1u);
}

TEST_F(ParamEditorTest, ModifyAndDeleteGoByThePair) {
    // Two records of one pair, as a file may hold them.
    section.items.push_back({"plant", "Level_SetPoint", "9"});
    dialogs.param.script = {ParamForm{"plant", "Level_SetPoint", "3"}};
    ASSERT_TRUE(run(cmd::kModifyParameter, {2}));
    EXPECT_EQ(dialogs.param.opened[0].value, "2.5"); // filled from the pair's first record
    EXPECT_EQ(rows(), (Texts{"plant|Level_SetPoint|3", "hmi|Page|1", "plant|Level_SetPoint|9"}));
    // Another record's pair is refused; what was typed comes back.
    dialogs.param.script = {ParamForm{"hmi", "Page", "4"}, std::nullopt};
    EXPECT_FALSE(run(cmd::kModifyParameter, {0}));
    EXPECT_EQ(sink.texts(), (Texts{"The data already exist!"}));
    EXPECT_EQ(dialogs.param.opened.back().value, "4");
    EXPECT_FALSE(run(cmd::kModifyParameter, {})); // no row: no dialog
    EXPECT_EQ(dialogs.param.opened.size(), 3u);

    // Deleting the second record of the pair takes the first; cancelled, nothing.
    sink.entries.clear();
    sink.answers = {false, true};
    EXPECT_FALSE(run(cmd::kDeleteParameter, {2}));
    ASSERT_TRUE(run(cmd::kDeleteParameter, {2}));
    EXPECT_EQ(sink.texts(), (Texts{"Are you sure to delete current data ?",
                                   "Are you sure to delete current data ?"}));
    EXPECT_EQ(rows(), (Texts{"hmi|Page|1", "plant|Level_SetPoint|9"}));
    EXPECT_FALSE(run(cmd::kDeleteParameter, {5})); // past the list: no question
    EXPECT_EQ(sink.entries.size(), 2u);
}

// Every command is one step: undo gives the file's bytes as before, redo as after.
TEST_F(ParamEditorTest, EveryCommandUndoesAndRedoesToTheSameBytes) {
    const std::vector<std::string> texts = rqtest::expectEveryStepUndoesAndRedoes(
        history,
        {
            {"Undo Add Parameter",
             [&] {
                 return dialogs.param.script = {ParamForm{"plant", "x", ""}},
                        run(cmd::kNewParameter);
             }},
            {"Undo Modify Parameter",
             [&] {
                 return dialogs.param.script = {ParamForm{"hmi", "Page2", "5"}},
                        run(cmd::kModifyParameter, {1});
             }},
            {"Undo Add Parameter",
             [&] {
                 return dialogs.param.script = {ParamForm{"a", "b", "c"}}, run(cmd::kNewParameter);
             }},
            {"Undo Delete Parameter",
             [&] {
                 return sink.answers = {true}, run(cmd::kDeleteParameter, {0, 2, 3});
             }},
        },
        [&] { return text(); });
    EXPECT_EQ(rows(), (Texts{"hmi|Page2|5"}));
    EXPECT_EQ(texts.front(), rqtest::readFile(rqtest::demoFile("param.xml")));
}

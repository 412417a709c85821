// The parameter editor without a display: the form's checks, the command flows
// with a scripted dialog host and a recording sink (records found by their pair),
// and the bytes of param.xml through undo and redo of every command.

#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "core/StorableValue.h"
#include "sections/param/ParamSectionEditor.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <deque>
#include <functional>
#include <optional>

using namespace rq;
using Texts = std::vector<std::string>;

namespace {

std::string demoParamFile() {
    const char* src = std::getenv("RQ_SOURCE_DIR");
    return std::string(src ? src : ".") + "/data/examples/demo/param.xml";
}

// Answers the dialog from a script, like the real dialog: OK on a form that fails
// its check shows the message and takes the next scripted form; nothing is
// Cancel. Records the forms the dialog opened with.
class ScriptedDialogs : public ParamDialogHost {
public:
    explicit ScriptedDialogs(MessageSink& sink) : sink_(sink) {}
    std::deque<std::optional<ParamForm>> script;
    std::vector<ParamForm> opened;

    bool paramDialog(ParamForm& f) override {
        opened.push_back(f);
        while (!script.empty()) {
            std::optional<ParamForm> next = script.front();
            script.pop_front();
            if (!next)
                return false;
            if (auto msg = validateParamForm(*next)) {
                sink_.showMessage(*msg, MessageIcon::Stop);
                continue;
            }
            f = *next;
            return true;
        }
        return false;
    }

private:
    MessageSink& sink_;
};

struct ParamEditorTest : ::testing::Test {
    ParamEditorTest() {
        rqtest::RecordingSink readSink;
        ReadContext ctx{readSink, nullptr, nullptr, {}};
        EXPECT_TRUE(section.read(demoParamFile(), ctx));
    }
    std::string text() const {
        std::string out;
        section.write(out);
        return out;
    }
    bool run(int command, std::vector<std::size_t> rows = {}) {
        return editor.run(command, EditorSelection{nullptr, std::move(rows)}).changed;
    }
    std::vector<std::string> rows() const {
        std::vector<std::string> out;
        EditorList l = editor.list(nullptr);
        for (std::size_t r = 0; r < l.rows(); ++r)
            out.push_back(std::string(l.cell(r, 0)) + "|" + std::string(l.cell(r, 1)) + "|" +
                          std::string(l.cell(r, 2)));
        return out;
    }

    ParamSection section;
    rqtest::RecordingSink sink;
    ScriptedDialogs dialogs{sink};
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

TEST_F(ParamEditorTest, ListMenuAndKeys) {
    EXPECT_TRUE(editor.nodes().empty());
    EXPECT_EQ(editor.treeMenu(nullptr), 0);
    EXPECT_EQ(editor.listMenu(nullptr), menuid::kParamList);
    EditorList l = editor.list(nullptr);
    ASSERT_EQ(l.columns.size(), 3u);
    EXPECT_EQ(l.columns[1].title, "Real-time data name");
    EXPECT_EQ(l.columns[2].width, 150);
    EXPECT_EQ(rows(), (Texts{"plant|Level_SetPoint|2.5", "hmi|Page|1"}));
    EditorKeys k = editor.keys(nullptr);
    EXPECT_EQ(k.add, cmd::kNewParameter);
    EXPECT_EQ(k.modify, cmd::kModifyParameter);
    EXPECT_EQ(k.remove, cmd::kDeleteParameter);
}

TEST_F(ParamEditorTest, AddRefusesAnExistingPairAndKeepsWhatWasTyped) {
    dialogs.script = {ParamForm{"", "", "7"}, ParamForm{"hmi", "Page", "7"},
                      ParamForm{"hmi", "Mode", "7"}};
    ASSERT_TRUE(run(cmd::kNewParameter));
    EXPECT_EQ(sink.texts(), (Texts{"Please choose data!", "The data already exist!"}));
    // The dialog opened empty, then again with the refused pair.
    ASSERT_EQ(dialogs.opened.size(), 2u);
    EXPECT_EQ(dialogs.opened[1].dataname, "Page");
    EXPECT_EQ(rows().back(), "hmi|Mode|7");
    dialogs.script = {std::nullopt};
    EXPECT_FALSE(run(cmd::kNewParameter));
    EXPECT_EQ(history.count(), 1u);
}

TEST_F(ParamEditorTest, ModifyAndDeleteGoByThePair) {
    // Two records of one pair, as a file may hold them.
    section.items.push_back({"plant", "Level_SetPoint", "9"});
    dialogs.script = {ParamForm{"plant", "Level_SetPoint", "3"}};
    ASSERT_TRUE(run(cmd::kModifyParameter, {2}));
    EXPECT_EQ(dialogs.opened[0].value, "2.5"); // filled from the pair's first record
    EXPECT_EQ(rows(), (Texts{"plant|Level_SetPoint|3", "hmi|Page|1", "plant|Level_SetPoint|9"}));
    // Another record's pair is refused; what was typed comes back.
    dialogs.script = {ParamForm{"hmi", "Page", "4"}, std::nullopt};
    EXPECT_FALSE(run(cmd::kModifyParameter, {0}));
    EXPECT_EQ(sink.texts(), (Texts{"The data already exist!"}));
    EXPECT_EQ(dialogs.opened.back().value, "4");
    EXPECT_FALSE(run(cmd::kModifyParameter, {})); // no row: no dialog
    EXPECT_EQ(dialogs.opened.size(), 3u);

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
    struct Step {
        const char* undoText;
        std::function<bool()> run;
    } steps[] = {
        {"Undo Add Parameter",
         [&] {
             return dialogs.script = {ParamForm{"plant", "x", ""}}, run(cmd::kNewParameter);
         }},
        {"Undo Modify Parameter",
         [&] {
             return dialogs.script = {ParamForm{"hmi", "Page2", "5"}},
                    run(cmd::kModifyParameter, {1});
         }},
        {"Undo Add Parameter",
         [&] {
             return dialogs.script = {ParamForm{"a", "b", "c"}}, run(cmd::kNewParameter);
         }},
        {"Undo Delete Parameter",
         [&] {
             return sink.answers = {true}, run(cmd::kDeleteParameter, {0, 2, 3});
         }},
    };
    std::vector<std::string> texts{text()};
    for (const Step& step : steps) {
        ASSERT_TRUE(step.run()) << step.undoText;
        EXPECT_EQ(history.undoText(), step.undoText);
        texts.push_back(text());
        ASSERT_NE(texts.back(), texts[texts.size() - 2]) << step.undoText;
    }
    EXPECT_EQ(rows(), (Texts{"hmi|Page2|5"}));
    for (std::size_t i = texts.size() - 1; i > 0; --i) {
        ASSERT_TRUE(history.undo());
        EXPECT_EQ(text(), texts[i - 1]) << steps[i - 1].undoText;
    }
    for (std::size_t i = 1; i < texts.size(); ++i) {
        ASSERT_TRUE(history.redo());
        EXPECT_EQ(text(), texts[i]) << steps[i - 1].undoText;
    }
    EXPECT_EQ(texts.front(), rqtest::readFile(demoParamFile()));
}

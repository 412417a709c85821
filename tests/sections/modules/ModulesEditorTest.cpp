// The module editor without a display: the form's checks, the command flows with a
// scripted dialog and a recording sink, and the bytes of modules.xml through undo
// and redo of every command.

#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "core/StorableValue.h"
#include "sections/modules/ModulesSectionEditor.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <optional>

using namespace rq;
using Texts = std::vector<std::string>;

namespace {

// Answers "Module Setting" from a script as the real dialog does: OK on a form
// that fails its check shows the message and takes the next form; nothing left
// (or nullopt) is Cancel. Records the forms the dialog opened with.
struct ScriptedDialogs : ModuleDialogHost {
    explicit ScriptedDialogs(MessageSink& sink) : sink(sink) {}
    bool moduleDialog(ModuleForm& f) override {
        opened.push_back(f);
        for (; !script.empty(); script.pop_front()) {
            if (!script.front())
                break;
            if (auto msg = validateModuleForm(*script.front())) {
                sink.showMessage(*msg, MessageIcon::Stop);
                continue;
            }
            f = *script.front();
            script.pop_front();
            return true;
        }
        script.clear();
        return false;
    }
    MessageSink& sink;
    std::deque<std::optional<ModuleForm>> script;
    std::vector<ModuleForm> opened;
};

struct ModulesEditorTest : ::testing::Test {
    ModulesEditorTest() {
        section.modules() = {{"filter", "-DWINDOW=8", "\"%PRJ_DIR%/src/filter.c\" ", "w=8", true},
                             {"pid", "", "\"pid.c\" ", "", false}};
    }
    std::string text() const {
        std::string out;
        section.write(out);
        return out;
    }
    bool run(int command, std::vector<std::size_t> rows = {}) {
        return editor.run(command, EditorSelection{nullptr, std::move(rows)}).changed;
    }
    Texts rows() const {
        Texts out;
        EditorList l = editor.list(nullptr);
        for (std::size_t r = 0; r < l.rows(); ++r) {
            std::string row;
            for (int c = 0; c < 5; ++c)
                row += std::string(c ? "|" : "") + std::string(l.cell(r, c));
            out.push_back(row);
        }
        return out;
    }

    ModulesSection section;
    rqtest::RecordingSink sink;
    ScriptedDialogs dialogs{sink};
    UndoHistory history;
    ModulesSectionEditor editor{section, dialogs, sink, history};
};

} // namespace

TEST(ModuleForms, ChecksAndTheSourceBrowser) {
    EXPECT_EQ(validateModuleForm({"", "-DX", "\"a.c\" ", "", false}),
              "module name is empty,please input module name!");
    EXPECT_EQ(validateModuleForm({"m", "", "", "", true}), std::nullopt); // sources at compile
    // Only the name is stored unescaped.
    EXPECT_EQ(validateModuleForm({"a<b", "", "", "", false}),
              checkStorableValue("Module Name", "a<b"));
    EXPECT_EQ(validateModuleForm({"m", "-DT=\"x\"&", "\"<.c\" ", "a&b", false}), std::nullopt);
    EXPECT_EQ(appendSourceFiles("\"a.c\" ", {"/p/b c.c", "d.c"}), "\"a.c\" \"/p/b c.c\" \"d.c\" ");
    EXPECT_EQ(appendSourceFiles("", {}), "");
}

TEST_F(ModulesEditorTest, ListMenuKeysAndColumns) {
    EXPECT_TRUE(editor.nodes().empty());
    EXPECT_EQ(editor.treeMenu(nullptr), 0);
    EXPECT_EQ(editor.listMenu(nullptr), menuid::kModulesList);
    EditorList l = editor.list(nullptr);
    Texts titles;
    for (const EditorColumn& c : l.columns) {
        titles.push_back(c.title);
        EXPECT_EQ(c.width, 100);
    }
    EXPECT_EQ(titles, (Texts{"Module name", "Compile additional define", "Source file name",
                             "Parameters", "Enable"}));
    EXPECT_EQ(rows(), (Texts{"filter|-DWINDOW=8|\"%PRJ_DIR%/src/filter.c\" |w=8|Enable",
                             "pid||\"pid.c\" ||Disable"}));
    EditorKeys k = editor.keys(nullptr);
    EXPECT_EQ(k.add, cmd::kAddModule);
    EXPECT_EQ(k.modify, cmd::kModifyModule);
    EXPECT_EQ(k.remove, cmd::kDeleteModule);
}

TEST_F(ModulesEditorTest, AddModifyAndDeleteFlows) {
    // OK without a name stays open with its message; then the module is added.
    dialogs.script = {ModuleForm{"", "-DA", "", "", false},
                      ModuleForm{"pid", "-DA", "\"p2.c\" ", "k=1", true}};
    ASSERT_TRUE(run(cmd::kAddModule));
    EXPECT_EQ(sink.texts(), (Texts{"module name is empty,please input module name!"}));
    EXPECT_EQ(dialogs.opened[0], ModuleForm{});
    // A second module of an existing name is kept apart by its row.
    EXPECT_EQ(rows().back(), "pid|-DA|\"p2.c\" |k=1|Disable");
    dialogs.script = {std::nullopt};
    EXPECT_FALSE(run(cmd::kAddModule));

    // Modify opens the first selected row's module, "Disable Module" the inverse.
    dialogs.script = {ModuleForm{"pid", "", "\"pid.c\" ", "", false}};
    ASSERT_TRUE(run(cmd::kModifyModule, {2, 1}));
    EXPECT_EQ(dialogs.opened.back(), (ModuleForm{"pid", "", "\"pid.c\" ", "", true}));
    EXPECT_EQ(rows()[1], "pid||\"pid.c\" ||Enable");
    EXPECT_EQ(rows()[2], "pid|-DA|\"p2.c\" |k=1|Disable");
    dialogs.script = {moduleFormFromRecord(section.modules()[0])}; // OK, nothing changed
    EXPECT_FALSE(run(cmd::kModifyModule, {0}));
    EXPECT_FALSE(run(cmd::kModifyModule, {})); // no row: no dialog
    EXPECT_FALSE(run(cmd::kModifyModule, {7}));
    EXPECT_EQ(dialogs.opened.size(), 4u);
    EXPECT_EQ(history.count(), 2u);

    // Delete: no row, no question; Cancel keeps all; OK removes every selected row.
    sink.entries.clear();
    EXPECT_FALSE(run(cmd::kDeleteModule, {}));
    EXPECT_TRUE(sink.entries.empty());
    sink.answers = {false, true};
    EXPECT_FALSE(run(cmd::kDeleteModule, {0, 2}));
    ASSERT_TRUE(run(cmd::kDeleteModule, {2, 0, 9}));
    EXPECT_EQ(sink.texts(), (Texts{"Are you sure to delete current data ?",
                                   "Are you sure to delete current data ?"}));
    EXPECT_EQ(rows(), (Texts{"pid||\"pid.c\" ||Enable"}));
    EXPECT_EQ(history.undoText(), "Undo Delete Module");
}

// Every command is one step: undo gives the file's bytes as before, redo as after.
TEST_F(ModulesEditorTest, EveryCommandUndoesAndRedoesToTheSameBytes) {
    struct Step {
        const char* undoText;
        std::function<bool()> run;
    } steps[] = {
        {"Undo Add Module",
         [&] {
             dialogs.script = {ModuleForm{"m", "-DQ=\"1\"", "\"a&b.c\" ", "x<y", false}};
             return run(cmd::kAddModule);
         }},
        {"Undo Modify Module",
         [&] {
             dialogs.script = {ModuleForm{"filter", "", "\"f.c\" ", "", true}};
             return run(cmd::kModifyModule, {0});
         }},
        {"Undo Delete Module",
         [&] {
             sink.answers = {true};
             return run(cmd::kDeleteModule, {0, 2});
         }},
        {"Undo Add Module",
         [&] {
             dialogs.script = {ModuleForm{"\u6ce8\u6c34", "", "", "", false}};
             return run(cmd::kAddModule);
         }},
    };
    Texts texts{text()};
    for (const Step& step : steps) {
        ASSERT_TRUE(step.run()) << step.undoText;
        EXPECT_EQ(history.undoText(), step.undoText);
        texts.push_back(text());
        ASSERT_NE(texts.back(), texts[texts.size() - 2]) << step.undoText;
    }
    EXPECT_EQ(texts.back(),
              "<?xml version=\"1.0\" ?>\r\n<modules>\r\n"
              "\t<module name=\"pid\" defines=\"\" srcfiles=\"&quot;pid.c&quot; \" "
              "params=\"\" enable=\"0\"/>\r\n"
              "\t<module name=\"\u6ce8\u6c34\" defines=\"\" srcfiles=\"\" params=\"\" "
              "enable=\"1\"/>\r\n</modules>\r\n");
    for (std::size_t i = texts.size() - 1; i > 0; --i) {
        ASSERT_TRUE(history.undo());
        EXPECT_EQ(text(), texts[i - 1]) << steps[i - 1].undoText;
    }
    for (std::size_t i = 1; i < texts.size(); ++i) {
        ASSERT_TRUE(history.redo());
        EXPECT_EQ(text(), texts[i]) << steps[i - 1].undoText;
    }
}

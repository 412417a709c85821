// The module editor without a display: the form's checks, the command flows with a
// scripted dialog and a recording sink, and the bytes of modules.xml through undo
// and redo of every command.

#include "core/CommandIds.h"
#include "core/StorableValue.h"
#include "sections/modules/ModulesSectionEditor.h"
#include "support/EditorTestKit.h"

#include <gtest/gtest.h>

using namespace rq;
using Texts = std::vector<std::string>;

namespace {

struct Dialogs : ModuleDialogHost {
    explicit Dialogs(MessageSink& s) : sink(s) {}
    MessageSink& sink;
    rqtest::ScriptedDialog<ModuleForm> module;
    bool moduleDialog(ModuleForm& f) override { return module.answer(f, sink, validateModuleForm); }
};

struct ModulesEditorTest : ::testing::Test {
    ModulesEditorTest() {
        section.modules() = {{"filter", "-DWINDOW=8", "\"%PRJ_DIR%/src/filter.c\" ", "w=8", true},
                             {"pid", "", "\"pid.c\" ", "", false}};
    }
    std::string text() const { return rqtest::written(section); }
    bool run(int command, std::vector<std::size_t> rows = {}) {
        return editor.run(command, EditorSelection{nullptr, std::move(rows)}).changed;
    }
    Texts rows() const { return rqtest::listRows(editor.list(nullptr)); }

    ModulesSection section;
    rqtest::RecordingSink sink;
    Dialogs dialogs{sink};
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

TEST_F(ModulesEditorTest, TheListShowsEveryModule) {
    EXPECT_TRUE(editor.nodes().empty());
    EXPECT_EQ(rows(), (Texts{"filter|-DWINDOW=8|\"%PRJ_DIR%/src/filter.c\" |w=8|Enable",
                             "pid||\"pid.c\" ||Disable"}));
}

TEST_F(ModulesEditorTest, AddModifyAndDeleteFlows) {
    // OK without a name stays open with its message; then the module is added.
    dialogs.module.script = {ModuleForm{"", "-DA", "", "", false},
                             ModuleForm{"pid", "-DA", "\"p2.c\" ", "k=1", true}};
    ASSERT_TRUE(run(cmd::kAddModule));
    EXPECT_EQ(sink.texts(), (Texts{"module name is empty,please input module name!"}));
    EXPECT_EQ(dialogs.module.opened[0], ModuleForm{});
    // A second module of an existing name is kept apart by its row.
    EXPECT_EQ(rows().back(), "pid|-DA|\"p2.c\" |k=1|Disable");
    dialogs.module.script = {std::nullopt};
    EXPECT_FALSE(run(cmd::kAddModule));

    // Modify opens the first selected row's module, "Disable Module" the inverse.
    dialogs.module.script = {ModuleForm{"pid", "", "\"pid.c\" ", "", false}};
    ASSERT_TRUE(run(cmd::kModifyModule, {2, 1}));
    EXPECT_EQ(dialogs.module.opened.back(), (ModuleForm{"pid", "", "\"pid.c\" ", "", true}));
    EXPECT_EQ(rows()[1], "pid||\"pid.c\" ||Enable");
    EXPECT_EQ(rows()[2], "pid|-DA|\"p2.c\" |k=1|Disable");
    dialogs.module.script = {moduleFormFromRecord(section.modules()[0])}; // OK, nothing changed
    EXPECT_FALSE(run(cmd::kModifyModule, {0}));
    EXPECT_FALSE(run(cmd::kModifyModule, {})); // no row: no dialog
    EXPECT_FALSE(run(cmd::kModifyModule, {7}));
    EXPECT_EQ(dialogs.module.opened.size(), 4u);
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
    const std::vector<std::string> texts = rqtest::expectEveryStepUndoesAndRedoes(
        history,
        {
            {"Undo Add Module",
             [&] {
                 dialogs.module.script = {ModuleForm{"m", "-DQ=\"1\"", "\"a&b.c\" ", "x<y", false}};
                 return run(cmd::kAddModule);
             }},
            {"Undo Modify Module",
             [&] {
                 dialogs.module.script = {ModuleForm{"filter", "", "\"f.c\" ", "", true}};
                 return run(cmd::kModifyModule, {0});
             }},
            {"Undo Delete Module",
             [&] {
                 sink.answers = {true};
                 return run(cmd::kDeleteModule, {0, 2});
             }},
            {"Undo Add Module",
             [&] {
                 dialogs.module.script = {ModuleForm{"\u6ce8\u6c34", "", "", "", false}};
                 return run(cmd::kAddModule);
             }},
        },
        [&] { return text(); });
    EXPECT_EQ(texts.back(),
              "<?xml version=\"1.0\" ?>\r\n<modules>\r\n"
              "\t<module name=\"pid\" defines=\"\" srcfiles=\"&quot;pid.c&quot; \" "
              "params=\"\" enable=\"0\"/>\r\n"
              "\t<module name=\"\u6ce8\u6c34\" defines=\"\" srcfiles=\"\" params=\"\" "
              "enable=\"1\"/>\r\n</modules>\r\n");
}

// The windows editor without a display, on a copy of the demo project: the form's
// checks, the command flows with their messages, the layout files they make, the
// designer's command lines, and the bytes of hmiwindow.xml and of the project
// directory's files through undo and redo of every command.

#include "core/CommandIds.h"
#include "core/HmiDeviceCatalog.h"
#include "core/StorableValue.h"
#include "sections/hmiwindow/HmiWindowSectionEditor.h"
#include "sections/hmiwindow/WindowFiles.h"
#include "support/EditorTestKit.h"

#include <gtest/gtest.h>

#include <map>

using namespace rq;
using Texts = std::vector<std::string>;
namespace fs = std::filesystem;

namespace {

struct Dialogs : WindowDialogHost {
    explicit Dialogs(MessageSink& sink) : sink(sink) {}
    bool windowDialog(WindowForm& f) override { return s.answer(f, sink, validateWindowForm); }
    MessageSink& sink;
    rqtest::ScriptedDialog<WindowForm> s;
};

struct Launcher : ProgramLauncher {
    Texts lines;
    bool fail = false;
    bool launch(const std::string& dir, const std::string& line, std::string* error) override {
        if (fail) {
            *error = "Cannot start the program \"RQDev\" from the directory \"" + dir + "\"";
            return false;
        }
        lines.push_back(line);
        return true;
    }
};

WindowForm form(std::string name, std::string file, bool create = true, std::string title = "") {
    WindowForm f;
    f.name = std::move(name);
    f.caption = std::move(title);
    f.filename = std::move(file);
    f.createFile = create;
    return f;
}

struct HmiWindowEditorTest : ::testing::Test {
    HmiWindowEditorTest() {
        for (const char* f : {"hmiwindow.xml", "main.xml", "trend.xml", "service.xml", "rtdb.xml"})
            fs::copy_file(rqtest::demoFile(f), dir.path() / f);
        EXPECT_TRUE(rqtest::readSection(section, dir.file("hmiwindow.xml")));
        fs::remove(dir.path() / "hmiwindow.xml"); // the section's bytes come from the model
        project.projectDirectory = dir.str();
    }
    std::string text() const { return rqtest::written(section); }
    // The section's bytes and every file of the project directory.
    std::string snapshot() const {
        std::string out = text();
        std::map<std::string, std::string> files;
        for (const auto& e : fs::directory_iterator(dir.path()))
            files[e.path().filename().string()] = rqtest::readFile(e.path());
        for (const auto& [name, bytes] : files)
            out += "\n== " + name + "\n" + bytes;
        return out;
    }
    bool run(int command, std::vector<std::size_t> rows = {}) {
        return editor.run(command, EditorSelection{nullptr, std::move(rows)}).changed;
    }
    Texts rows() const { return rqtest::listRows(editor.list(nullptr)); }

    rqtest::TempDir dir;
    HmiWindowSection section;
    ProjectModel project;
    rqtest::RecordingSink sink;
    Dialogs dialogs{sink};
    Launcher launcher;
    UndoHistory history;
    HmiWindowSectionEditor editor{section, dialogs, sink, history, project, launcher, "/opt/rq"};
};

} // namespace

TEST(WindowForms, ChecksInOrder) {
    const std::string need = windowtext::kInputNameAndFile;
    EXPECT_EQ(validateWindowForm(form("", "f")), need);
    EXPECT_EQ(validateWindowForm(form("w", "")), need);
    EXPECT_EQ(validateWindowForm(form("w", "f")), std::nullopt); // a title is not required
    EXPECT_EQ(validateWindowForm(form("w<", "f")), checkStorableValue("Name", "w<"));
    EXPECT_EQ(validateWindowForm(form("w", "f", true, "a&b")), checkStorableValue("Title", "a&b"));
    EXPECT_EQ(validateWindowForm(form("w", "f\"")), checkStorableValue("File Name", "f\""));
}

TEST_F(HmiWindowEditorTest, TheListShowsEveryWindow) {
    EXPECT_TRUE(editor.nodes().empty());
    EXPECT_EQ(rows(), (Texts{"main|Tank farm overview|main.xml|Show|Enable",
                             "trend|Level trend|trend.xml|Hide|Enable",
                             "service|Service|service.xml|Hide|Disable"}));
}

TEST_F(HmiWindowEditorTest, AddChecksTypedNamesAndMakesTheLayoutFile) {
    // Not saved yet: the message, and no dialog.
    project.projectDirectory.clear();
    EXPECT_FALSE(run(cmd::kNewWindow));
    EXPECT_EQ(sink.texts(), Texts{windowtext::kSaveFirst});
    EXPECT_TRUE(dialogs.s.opened.empty());
    project.projectDirectory = dir.str();

    // Each refusal opens the dialog again with what was typed. "rtdb" passes the
    // reserved test and becomes rtdb.xml, which is there and stays untouched.
    sink.entries.clear();
    const std::string rtdb = rqtest::readFile(dir.file("rtdb.xml"));
    WindowForm last = form("pump", "rtdb", true, "Pumps");
    last.startupShowing = last.disableShowing = true;
    dialogs.s.script = {form("", "x"), form("pump", "rtdb.xml"), form("main", "p"),
                        form("pump", "no-dir/p.xml"), last};
    ASSERT_TRUE(run(cmd::kNewWindow));
    ASSERT_EQ(sink.texts().size(), 4u);
    EXPECT_EQ(sink.texts()[0], windowtext::kInputNameAndFile);
    EXPECT_EQ(sink.texts()[1], windowtext::kReserved);
    EXPECT_EQ(sink.texts()[2], windowtext::kWindowExists);
    EXPECT_EQ(sink.texts()[3].rfind("Cannot create " + dir.file("no-dir/p.xml") + ": ", 0), 0u);
    ASSERT_EQ(dialogs.s.opened.size(), 4u);
    EXPECT_TRUE(dialogs.s.opened[0].createFile);
    EXPECT_EQ(dialogs.s.opened[1].filename, "rtdb.xml");
    EXPECT_EQ(dialogs.s.opened[3].filename, "no-dir/p.xml");
    EXPECT_EQ(rows().back(), "pump|Pumps|rtdb.xml|Show|Disable");
    EXPECT_EQ(rqtest::readFile(dir.file("rtdb.xml")), rtdb);
    EXPECT_FALSE(fs::exists(dir.file("no-dir")));

    // A new file takes the HMI type's screen size; "myxmlscreen" keeps its name.
    HmiDeviceType type;
    type.screenWidth = 800;
    type.screenHeight = 480;
    project.hmiType = &type;
    dialogs.s.script = {form("wide", "myxmlscreen")};
    ASSERT_TRUE(run(cmd::kNewWindow));
    EXPECT_EQ(rqtest::readFile(dir.file("myxmlscreen")), windowTemplateText(800, 480));
    dialogs.s.script = {form("bare", "bare", false)};
    ASSERT_TRUE(run(cmd::kNewWindow));
    EXPECT_EQ(rows().back(), "bare||bare.xml|Hide|Enable");
    EXPECT_FALSE(fs::exists(dir.file("bare.xml")));
    dialogs.s.script = {std::nullopt};
    EXPECT_FALSE(run(cmd::kNewWindow));
    EXPECT_EQ(history.count(), 3u);
}

TEST_F(HmiWindowEditorTest, ModifyDeleteAndTheDesigner) {
    section.windows[1].enable = "2"; // as a file may hold it
    WindowForm trend = form("trend", "trend", false, "T");
    trend.disableShowing = true;
    dialogs.s.script = {form("trend", "param.xml", false), trend};
    ASSERT_TRUE(run(cmd::kModifyWindow, {2, 1}));
    EXPECT_EQ(sink.texts(), Texts{windowtext::kReserved});
    EXPECT_EQ(dialogs.s.opened[0].caption, "Level trend"); // filled from the first row
    EXPECT_FALSE(dialogs.s.opened[0].createFile);
    EXPECT_TRUE(dialogs.s.opened[0].disableShowing);
    EXPECT_EQ(section.windows[1].enable, "2"); // still disabled as typed: kept
    EXPECT_EQ(rows()[1], "trend|T|trend.xml|Hide|Disable");
    // No duplicate test; a missing file is made empty; no change, no step.
    dialogs.s.script = {form("main", "new", true)};
    ASSERT_TRUE(run(cmd::kModifyWindow, {2}));
    EXPECT_EQ(rows()[2], "main||new.xml|Hide|Enable");
    EXPECT_EQ(rqtest::readFile(dir.file("new.xml")), "");
    dialogs.s.script = {form("main", "new.xml", true)};
    EXPECT_FALSE(run(cmd::kModifyWindow, {2}));
    EXPECT_FALSE(run(cmd::kModifyWindow, {9}));
    EXPECT_EQ(history.count(), 2u);

    // The designer for every selected row; a failure is reported and stops.
    editor.run(cmd::kEditWindow, {nullptr, {0, 2}});
    EXPECT_EQ(launcher.lines, (Texts{"RQDev *\"" + dir.str() + "\"*main.xml",
                                     "RQDev *\"" + dir.str() + "\"*new.xml"}));
    launcher.fail = true;
    sink.entries.clear();
    EXPECT_FALSE(editor.run(cmd::kEditWindow, {nullptr, {0, 1}}).changed);
    EXPECT_EQ(sink.texts(),
              Texts{"Cannot start the program \"RQDev\" from the directory \"/opt/rq\""});

    // Delete asks once; Cancel changes nothing; the layout files stay.
    sink.entries.clear();
    sink.answers = {false, true};
    EXPECT_FALSE(run(cmd::kDeleteWindow, {0, 2}));
    ASSERT_TRUE(run(cmd::kDeleteWindow, {0, 2}));
    EXPECT_EQ(sink.texts(), Texts(2, windowtext::kDeleteWindow));
    EXPECT_EQ(rows(), Texts{"trend|T|trend.xml|Hide|Disable"});
    EXPECT_TRUE(fs::exists(dir.file("main.xml")));
    EXPECT_FALSE(run(cmd::kDeleteWindow, {}));
    EXPECT_EQ(sink.entries.size(), 2u);
}

// Every command is one step: undo gives the section's and the directory's bytes as
// before, redo as after.
TEST_F(HmiWindowEditorTest, EveryCommandUndoesAndRedoesToTheSameBytes) {
    rqtest::expectEveryStepUndoesAndRedoes(
        history,
        {
            {"Undo Add Window",
             [&] { return dialogs.s.script = {form("w1", "w1")}, run(cmd::kNewWindow); }},
            {"Undo Modify Window",
             [&] {
                 return dialogs.s.script = {form("t2", "t2.xml", true, "x")},
                        run(cmd::kModifyWindow, {1});
             }},
            {"Undo Add Window",
             [&] { return dialogs.s.script = {form("w2", "w2", false)}, run(cmd::kNewWindow); }},
            {"Undo Add Window",
             [&] { return dialogs.s.script = {form("w3", "main")}, run(cmd::kNewWindow); }},
            {"Undo Delete Window",
             [&] {
                 return sink.answers = {true}, run(cmd::kDeleteWindow, {0, 3, 4});
             }},
        },
        [&] { return snapshot(); });
    EXPECT_EQ(sink.texts(), Texts{windowtext::kDeleteWindow});

    // A layout file the designer has changed since is the user's: undo leaves it.
    for (int i = 0; i < 3; ++i)
        history.undo();
    rqtest::writeFile(dir.file("t2.xml"), "designed");
    ASSERT_TRUE(history.undo());
    EXPECT_EQ(rqtest::readFile(dir.file("t2.xml")), "designed");
    ASSERT_TRUE(history.redo());
    EXPECT_EQ(rqtest::readFile(dir.file("t2.xml")), "designed");
}

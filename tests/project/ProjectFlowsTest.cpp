#include "project/ProjectFlows.h"

#include "core/FileUtil.h"
#include "core/StorableValue.h"
#include "core/ValueChecks.h"
#include "project/Project.h"

#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <deque>
#include <filesystem>

namespace {

namespace fs = std::filesystem;
using rq::OnlineSimulationForm;
using rq::ProjectDialogMode;
using rq::ProjectForm;
using rq::SaveAnswer;

// Presses OK with each scripted form in turn until the dialog closes; an empty
// entry presses Cancel.
class ScriptedHost : public rq::ProjectDialogHost {
public:
    std::deque<std::optional<ProjectForm>> projectPresses;
    std::deque<std::optional<OnlineSimulationForm>> onlinePresses;
    std::deque<std::optional<std::string>> folders;
    std::deque<SaveAnswer> saveAnswers;

    std::vector<ProjectDialogMode> modes;
    std::vector<ProjectForm> shownForms;
    std::vector<OnlineSimulationForm> shownOnline;
    std::vector<std::string> browseTitles;
    std::vector<std::string> questions;
    std::vector<std::string> recent;
    std::vector<std::string> removed;
    int cleared = 0;
    int loaded = 0;

    bool runProjectDialog(ProjectForm& form, ProjectDialogMode mode,
                          const std::function<bool(const ProjectForm&)>& accept) override {
        modes.push_back(mode);
        shownForms.push_back(form);
        while (!projectPresses.empty()) {
            std::optional<ProjectForm> press = projectPresses.front();
            projectPresses.pop_front();
            if (!press)
                return false;
            if (accept(*press)) {
                form = *press;
                return true;
            }
        }
        return false;
    }
    std::optional<std::string> browseFolder(const std::string& title) override {
        browseTitles.push_back(title);
        if (folders.empty())
            return std::nullopt;
        auto f = folders.front();
        folders.pop_front();
        return f;
    }
    void runOnlineSimulationDialog(
        OnlineSimulationForm& form,
        const std::function<bool(const OnlineSimulationForm&)>& run) override {
        shownOnline.push_back(form);
        while (!onlinePresses.empty()) {
            auto press = onlinePresses.front();
            onlinePresses.pop_front();
            if (!press || run(*press))
                return;
        }
    }
    SaveAnswer askSaveChanges(const std::string& text) override {
        questions.push_back(text);
        SaveAnswer a = saveAnswers.empty() ? SaveAnswer::Cancel : saveAnswers.front();
        if (!saveAnswers.empty())
            saveAnswers.pop_front();
        return a;
    }
    void projectCleared() override { ++cleared; }
    void projectLoaded() override { ++loaded; }
    void addRecent(const std::string& dir) override { recent.push_back(dir); }
    void removeRecent(const std::string& dir) override { removed.push_back(dir); }
};

class RecordingLauncher : public rq::ProgramLauncher {
public:
    std::vector<std::pair<std::string, std::string>> launches;
    std::string failWith;
    bool launch(const std::string& dir, const std::string& line, std::string* error) override {
        launches.emplace_back(dir, line);
        if (failWith.empty())
            return true;
        *error = failWith;
        return false;
    }
};

const char* kCatalog = "<?xml version=\"1.0\" ?>\n<hmidevices>\n"
                       "<hmidevice name=\"P7\" display=\"Panel 7\" ladder=\"1\" fbd=\"1\" "
                       "redundancy=\"0\"/>\n"
                       "<hmidevice name=\"P4\" display=\"Panel 4\" ladder=\"0\" fbd=\"0\" "
                       "redundancy=\"1\"/>\n</hmidevices>\n";

class Flows : public ::testing::Test {
protected:
    Flows() {
        rqtest::writeFile(tmp.path() / "hmidevice.xml", kCatalog);
        catalogs.hmi.LoadHmiDeviceCatalog(tmp.file("hmidevice.xml"));
        fs::create_directory(tmp.path() / "work");
    }
    std::string work() const { return tmp.file("work"); }
    ProjectForm form(std::string name, std::string display = "Panel 7") const {
        return ProjectForm{name, "d", work() + "/", display, "10.1.1.2"};
    }
    std::vector<std::string> messages() const { return sink.texts(); }

    rqtest::TempDir tmp;
    rq::Catalogs catalogs;
    rqtest::RecordingSink sink;
    rq::Project project{catalogs, sink};
    ScriptedHost host;
    RecordingLauncher launcher;
    rq::ProjectFlows flows{project.doc, host, launcher, "/opt/rq"};
};

TEST_F(Flows, ProjectDialogChecksInOrderAndStaysOpen) {
    struct Case {
        ProjectDialogMode mode;
        ProjectForm form;
        std::optional<std::string> message;
        bool accepted;
    };
    const ProjectDialogMode create = ProjectDialogMode::Create, prop = ProjectDialogMode::Property;
    const std::string w = tmp.file("work") + "/";
    const auto storable = [](const char* field, const char* value) {
        return rq::checkStorableValue(field, value);
    };
    const char* slave = "Default Slave IP Address";
    const Case cases[] = {
        {create, {"", "", "", std::nullopt, ""}, "Please input project name!", false},
        {create, {"a", "", "", "Panel 7", ""}, "Please choose project path!", false},
        {create, {"a", "", w, std::nullopt, ""}, "Please HMI type!", false},
        {create, {"a", "", w + "missing/", "Panel 7", ""}, "Create directory failed!", false},
        // Values the project file stores unescaped, checked before any directory.
        {create, {"R&D", "", w, "Panel 7", ""}, storable("Project Name", "R&D"), false},
        {prop, {"e", "<b>", w, "Panel 7", ""}, storable("Project Description", "<b>"), false},
        {prop, {"e", "", w, "Panel 7", "1.2.3.4\""}, storable(slave, "1.2.3.4\""), false},
        // An address the device could not use, after the checks above.
        {prop, {"e", "", w, "Panel 7", "10.1.1"}, rq::checkIpv4Address(slave, "10.1.1"), false},
        {create, {"b", "", w, "Panel 9", ""}, std::nullopt, false},
        {create, {"c", "", w, "Panel 4", ""}, std::nullopt, true},
        {prop, {"d", "", w, "Panel 4", ""}, std::nullopt, true},
    };
    for (const Case& c : cases) {
        sink.entries.clear();
        const rq::HmiDeviceType* t = rq::acceptProjectForm(c.form, c.mode, project.doc);
        EXPECT_EQ(t != nullptr, c.accepted) << c.form.name;
        EXPECT_EQ(messages(),
                  c.message ? std::vector<std::string>{*c.message} : std::vector<std::string>{})
            << c.form.name;
        for (const auto& e : sink.entries)
            EXPECT_EQ(e.icon, rq::MessageIcon::Stop);
    }
    EXPECT_FALSE(fs::exists(tmp.path() / "work/R&D"));
    // An unknown display text still made the directories; property mode makes none.
    EXPECT_TRUE(fs::is_directory(tmp.path() / "work/b/hisdata"));
    EXPECT_TRUE(fs::is_directory(tmp.path() / "work/c/data"));
    EXPECT_FALSE(fs::exists(tmp.path() / "work/d"));
    // A second creation of the same directory fails.
    sink.entries.clear();
    EXPECT_EQ(rq::acceptProjectForm(cases[9].form, ProjectDialogMode::Create, project.doc),
              nullptr);
    EXPECT_EQ(messages(), std::vector<std::string>{"Create directory failed!"});
}

TEST_F(Flows, NewTakesTheDialogAndWritesNoSectionFile) {
    project.model().libs = "m";
    host.projectPresses = {form(""), form("demo")};
    EXPECT_TRUE(flows.newProject());
    EXPECT_EQ(host.modes, std::vector<ProjectDialogMode>{ProjectDialogMode::Create});
    EXPECT_EQ(messages(), std::vector<std::string>{"Please input project name!"});
    const rq::ProjectModel& m = project.model();
    EXPECT_EQ(m.name, "demo");
    EXPECT_EQ(m.slaveIp, "10.1.1.2");
    EXPECT_EQ(m.hmiType->name, "P7");
    EXPECT_EQ(m.projectDirectory, work() + "/demo");
    EXPECT_TRUE(m.modified);
    EXPECT_EQ(m.libs, "");
    EXPECT_EQ(host.cleared, 1);
    EXPECT_EQ(host.recent, std::vector<std::string>{m.projectDirectory});
    std::vector<std::string> entries;
    for (const auto& e : fs::directory_iterator(m.projectDirectory))
        entries.push_back(e.path().filename().string());
    std::sort(entries.begin(), entries.end());
    EXPECT_EQ(entries, (std::vector<std::string>{"data", "hisdata"}));
}

TEST_F(Flows, NewCancelledLeavesAnEmptyProjectWithoutDirectory) {
    host.projectPresses = {std::nullopt};
    EXPECT_TRUE(flows.newProject());
    EXPECT_EQ(project.model().name, "");
    EXPECT_EQ(project.model().projectDirectory, "");
    EXPECT_FALSE(project.model().modified);
}

TEST_F(Flows, SaveQuestionBeforeNewAndOpen) {
    project.model().name = "old";
    project.model().modified = true;

    host.saveAnswers = {SaveAnswer::Cancel};
    EXPECT_FALSE(flows.newProject());
    EXPECT_EQ(host.questions, std::vector<std::string>{"Save changes to old?"});
    EXPECT_EQ(project.model().name, "old");
    EXPECT_EQ(host.cleared, 0);

    // A folder that is no project is refused before the question.
    host.saveAnswers = {SaveAnswer::Cancel};
    host.folders = {work()};
    EXPECT_FALSE(flows.openProject());
    EXPECT_EQ(project.model().name, "old");
    EXPECT_EQ(host.questions.size(), 1u);

    // Yes saves first: the browser for the parent, then the files.
    host.saveAnswers = {SaveAnswer::Yes};
    host.folders = {work()};
    host.projectPresses = {std::nullopt};
    EXPECT_TRUE(flows.newProject());
    EXPECT_TRUE(fs::exists(tmp.path() / "work/old/rqrun.xml"));
    EXPECT_EQ(project.model().name, "");

    project.model().modified = true;
    host.saveAnswers = {SaveAnswer::No};
    host.projectPresses = {std::nullopt};
    EXPECT_TRUE(flows.newProject());
    EXPECT_EQ(host.questions.size(), 3u);
}

TEST_F(Flows, SaveAskFolderCreatesDirectoryAndWritesAllFiles) {
    // No name: the dialog in creation mode; Cancel fails the save quietly.
    host.projectPresses = {std::nullopt};
    EXPECT_FALSE(flows.save());
    EXPECT_EQ(host.modes, std::vector<ProjectDialogMode>{ProjectDialogMode::Create});
    EXPECT_TRUE(messages().empty());

    project.model().name = "p";
    project.model().modified = true;
    EXPECT_FALSE(flows.save()); // browser cancelled
    EXPECT_EQ(host.browseTitles.back(),
              "Please choose project directory(Not including project name):");

    host.folders = {tmp.file("nowhere")};
    EXPECT_FALSE(flows.save());
    EXPECT_EQ(messages(), std::vector<std::string>{"Create directory failed!"});

    host.folders = {work() + "/"};
    EXPECT_TRUE(flows.save());
    EXPECT_EQ(project.model().projectDirectory, work() + "/p");
    EXPECT_FALSE(project.model().modified);
    EXPECT_EQ(host.recent, std::vector<std::string>{work() + "/p"});
    for (const char* f : rq::kSectionFiles)
        EXPECT_TRUE(fs::exists(tmp.path() / "work/p" / f)) << f;
}

// An untitled project is saved where its dialog made the directory: no second
// folder question, no "Create directory failed!", no empty folder left behind.
TEST_F(Flows, SaveOfAnUntitledProjectUsesTheDialogsDirectory) {
    project.model().modified = true;
    host.projectPresses = {form("u")};
    ASSERT_TRUE(flows.save());
    EXPECT_TRUE(host.browseTitles.empty());
    EXPECT_TRUE(messages().empty());
    EXPECT_EQ(project.model().projectDirectory, work() + "/u");
    EXPECT_TRUE(fs::exists(tmp.path() / "work/u/rqrun.xml"));
    EXPECT_EQ(host.recent, std::vector<std::string>{work() + "/u"});

    // A directory the dialog made and could not finish goes again when the save is
    // given up: here its data directory cannot be made (the path grows too long).
    project.doc.clear();
    fs::path deep = tmp.path();
    while (deep.string().size() < 4000)
        deep /= std::string(std::min<size_t>(200, 4000 - deep.string().size() + 1), 'd');
    fs::create_directories(deep);
    // DIR/NAME takes 4090 bytes, within the path limit; DIR/NAME/hisdata does not.
    const std::string name(4090 - deep.string().size() - 1, 'n');
    host.projectPresses = {ProjectForm{name, "", deep.string(), "Panel 7", ""}, std::nullopt};
    sink.entries.clear();
    EXPECT_FALSE(flows.save());
    EXPECT_EQ(messages(), std::vector<std::string>{"Create directory failed!"});
    EXPECT_TRUE(fs::is_empty(deep));
    EXPECT_EQ(project.model().projectDirectory, "");
}

TEST_F(Flows, SaveReportsAFileThatCannotBeWrittenAndWritesTheOthers) {
    project.model().name = "p";
    project.model().description = "changed";
    project.model().projectDirectory = work();
    project.model().modified = true;
    fs::create_directory(tmp.path() / "work/hmidb.xml"); // a directory in the file's place
    rqtest::writeFile(tmp.path() / "work/hmidb.xml/keep", "x");
    EXPECT_TRUE(flows.save());
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].rfind("Failed to save document.\n" + work() + "/hmidb.xml: ", 0), 0u)
        << messages()[0];
    EXPECT_TRUE(fs::exists(tmp.path() / "work/printer.xml")); // written after the failure
    EXPECT_NE(rqtest::readFile(tmp.path() / "work/rqrun.xml").find("changed"), std::string::npos);
    for (const auto& e : fs::directory_iterator(work()))
        EXPECT_NE(e.path().filename().string()[0], '.') << "temporary file left behind";
    // The save counts as done, but hmidb.xml is not on disk: closing asks again.
    EXPECT_TRUE(project.model().modified);
}

TEST_F(Flows, OpenReadsTheProjectAndReportsFailures) {
    host.projectPresses = {form("demo")};
    flows.newProject();
    ASSERT_TRUE(flows.save());
    const std::string dir = project.model().projectDirectory;

    host.folders = {std::nullopt};
    EXPECT_FALSE(flows.openProject());
    EXPECT_EQ(host.browseTitles.back(), "Please choose project directory:");

    host.folders = {dir};
    ASSERT_TRUE(flows.openProject());
    EXPECT_EQ(project.model().name, "demo");
    EXPECT_EQ(project.model().hmiType->name, "P7");
    EXPECT_EQ(host.loaded, 1);
    EXPECT_EQ(host.recent.back(), dir);

    // A relative directory is opened as an absolute one.
    ASSERT_TRUE(flows.openDirectory(fs::relative(dir).string() + "/"));
    EXPECT_EQ(project.model().projectDirectory, dir);

    // A failed open keeps the open project, unsaved changes included; what shows
    // before reading needs no save question, a recent entry that fails leaves the list.
    project.model().description = "edited";
    project.model().modified = true;
    fs::copy(dir, work() + "/copy", fs::copy_options::recursive);
    fs::remove(fs::path(work()) / "copy/hmidb.xml");
    EXPECT_FALSE(flows.openRecent(work() + "/copy"));
    EXPECT_FALSE(flows.openDirectory(work() + "/gone"));
    EXPECT_FALSE(flows.openDirectory(tmp.file("hmidevice.xml")));
    ASSERT_EQ(messages().size(), 3u);
    EXPECT_NE(messages()[0].find("copy/hmidb.xml: missing"), std::string::npos) << messages()[0];
    EXPECT_NE(messages()[1].find("does not exist"), std::string::npos) << messages()[1];
    EXPECT_EQ(host.removed, std::vector<std::string>{work() + "/copy"});
    EXPECT_TRUE(host.questions.empty());
    EXPECT_EQ(project.model().description, "edited");
    EXPECT_TRUE(project.model().modified);

    // A required file that fails only in the full read: the previous project comes
    // back from its directory.
    rqtest::writeFile(fs::path(work()) / "copy/hmidb.xml", "<hmidb><data");
    host.saveAnswers = {SaveAnswer::No};
    EXPECT_FALSE(flows.openDirectory(work() + "/copy"));
    EXPECT_EQ(host.questions.size(), 1u);
    EXPECT_EQ(project.model().projectDirectory, dir);
    EXPECT_EQ(project.model().name, "demo");
    EXPECT_EQ(host.loaded, 3);
}

// Damaged optional files: one message after the open lists them all, and Save says
// which files it left as they were.
TEST_F(Flows, OpenListsUnreadableFilesInOneMessageAndSaveKeepsThem) {
    host.projectPresses = {form("demo")};
    flows.newProject();
    ASSERT_TRUE(flows.save());
    const fs::path dir = project.model().projectDirectory;
    rqtest::writeFile(dir / "device.xml", "");
    rqtest::writeFile(dir / "alarm.xml", "<devices/>");
    sink.entries.clear();
    ASSERT_TRUE(flows.openDirectory(dir.string()));
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].rfind(rq::kMsgUnreadableFiles, 0), 0u);
    EXPECT_NE(messages()[0].find("\n" + (dir / "device.xml").string() + ": "), std::string::npos);
    EXPECT_NE(messages()[0].find("\n" + (dir / "alarm.xml").string() + ": the root element"),
              std::string::npos)
        << messages()[0];

    sink.entries.clear();
    ASSERT_TRUE(flows.save());
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].rfind(rq::kMsgFilesKept, 0), 0u);
    EXPECT_EQ(rqtest::readFile(dir / "alarm.xml"), "<devices/>");
    EXPECT_EQ(rqtest::readFile(dir / "device.xml"), "");
}

TEST_F(Flows, PropertyReplacesFieldsButKeepsTheDirectory) {
    host.projectPresses = {form("demo")};
    flows.newProject();
    host.projectPresses = {ProjectForm{"renamed", "x", "/elsewhere/", "Panel 4", "10.9.9.9"}};
    EXPECT_TRUE(flows.property());
    EXPECT_EQ(host.modes.back(), ProjectDialogMode::Property);
    EXPECT_EQ(host.shownForms.back().path, work() + "/demo");
    EXPECT_EQ(host.shownForms.back().hmiDisplay, std::optional<std::string>("Panel 7"));
    EXPECT_EQ(project.model().name, "renamed");
    EXPECT_EQ(project.model().hmiType->name, "P4");
    EXPECT_EQ(project.model().slaveIp, "10.9.9.9");
    EXPECT_EQ(project.model().projectDirectory, work() + "/demo");
    EXPECT_FALSE(fs::exists("/elsewhere/renamed"));

    // Property of an untitled project: creation mode, and the directory it makes
    // is the project's, so that Save writes there without asking.
    project.doc.clear();
    host.projectPresses = {form("untitled")};
    EXPECT_TRUE(flows.property());
    EXPECT_EQ(host.modes.back(), ProjectDialogMode::Create);
    EXPECT_EQ(project.model().projectDirectory, work() + "/untitled");
    host.browseTitles.clear();
    EXPECT_TRUE(flows.save());
    EXPECT_TRUE(host.browseTitles.empty());
    EXPECT_TRUE(fs::exists(tmp.path() / "work/untitled/rqrun.xml"));
}

TEST_F(Flows, SimulationCommandLines) {
    flows.offlineSimulation();
    host.onlinePresses = {OnlineSimulationForm{"1.2.3.4", 1, 2, 3}};
    flows.onlineSimulation();
    EXPECT_EQ(messages(), std::vector<std::string>(2, rq::kMsgSaveFirst));
    EXPECT_TRUE(launcher.launches.empty());

    sink.entries.clear();
    project.model().projectDirectory = "/p/my demo";
    project.model().slaveIp = "10.0.0.7";
    flows.offlineSimulation();
    host.onlinePresses = {OnlineSimulationForm{"", 8200, 200, 200},
                          OnlineSimulationForm{"10.0.0", 8200, 200, 200},
                          OnlineSimulationForm{"10.0.0.8", 8201, 300, 400}};
    flows.onlineSimulation();
    ASSERT_EQ(messages().size(), 2u);
    EXPECT_EQ(messages()[0], "Please input corresponding HMI IP address!");
    EXPECT_EQ(messages()[1].rfind("The field \"IP Address\" must hold an IPv4 address", 0), 0u);
    EXPECT_EQ(host.shownOnline.back().ip, "10.0.0.7");
    ASSERT_EQ(launcher.launches.size(), 2u);
    EXPECT_EQ(launcher.launches[0].first, "/opt/rq");
    EXPECT_EQ(launcher.launches[0].second, "rqrun \"/p/my demo\"");
    EXPECT_EQ(launcher.launches[1].second, "rqrun \"/p/my demo\" 1 10.0.0.8 8201 300 400 ");

    sink.entries.clear();
    launcher.failWith = "Cannot start the program \"rqrun\" from the directory \"/opt/rq\"";
    flows.offlineSimulation();
    EXPECT_EQ(messages(), std::vector<std::string>{launcher.failWith});
}

TEST_F(Flows, LadderLaunch) {
    project.model().projectDirectory = work();
    const fs::path ladder = tmp.path() / "work/ladder.xml";
    flows.launchLadder(); // no HMI type: nothing at all
    EXPECT_TRUE(messages().empty());

    project.model().hmiType = catalogs.hmi.FindByName("P4");
    flows.launchLadder();
    EXPECT_EQ(messages(), std::vector<std::string>{rq::kMsgNoLadder});
    EXPECT_FALSE(fs::exists(ladder));

    project.model().hmiType = catalogs.hmi.FindByName("P7");
    flows.launchLadder();
    EXPECT_EQ(rqtest::readFile(ladder), "<?xml version=\"1.0\" ?>\r\n<ladder>\r\n</ladder>\r\n");
    rqtest::writeFile(ladder, "<ladder>kept</ladder>");
    flows.launchLadder();
    EXPECT_EQ(rqtest::readFile(ladder), "<ladder>kept</ladder>");
    ASSERT_EQ(launcher.launches.size(), 2u);
    EXPECT_EQ(launcher.launches[1].second, "Ladrune *\"" + work() + "\"*ladder.xml");
    // A FIFO in its place neither blocks the launch nor is replaced.
    fs::remove(ladder);
    ASSERT_EQ(::mkfifo(ladder.c_str(), 0644), 0);
    flows.launchLadder();
    EXPECT_TRUE(fs::is_fifo(ladder));
    EXPECT_EQ(launcher.launches.size(), 3u);

    sink.entries.clear();
    project.model().projectDirectory.clear();
    flows.launchLadder();
    EXPECT_EQ(messages(), std::vector<std::string>{rq::kMsgSaveFirst});
}

TEST(CommandTable, SectionsAndHmiGating) {
    EXPECT_EQ(rq::sectionOfCommand(32906), rq::SectionObject::Rtdb);
    EXPECT_EQ(rq::sectionOfCommand(32874), rq::SectionObject::HmiDb);
    EXPECT_EQ(rq::sectionOfCommand(32916), rq::SectionObject::Device);
    EXPECT_EQ(rq::sectionOfCommand(32919), rq::SectionObject::Param);
    EXPECT_EQ(rq::sectionOfCommand(32909), rq::SectionObject::Alarm);
    EXPECT_EQ(rq::sectionOfCommand(32868), rq::SectionObject::Fbd);
    EXPECT_EQ(rq::sectionOfCommand(32911), rq::SectionObject::Printer);
    EXPECT_EQ(rq::sectionOfCommand(32809), rq::SectionObject::None);

    rq::HmiDeviceType none, fbd, red;
    fbd.fbd = 0x10;
    red.redundancy = 1;
    struct Case {
        int command;
        const rq::HmiDeviceType* type;
        bool allowed;
    };
    const Case cases[] = {
        {32864, nullptr, false}, {32865, &none, false},  {32866, &fbd, true},
        {32864, &red, false},    {32863, &fbd, false},   {32863, &red, true},
        {32863, nullptr, false}, {32868, nullptr, true}, {32807, nullptr, true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(rq::commandAllowedByHmiType(c.command, c.type), c.allowed) << c.command;
}

} // namespace

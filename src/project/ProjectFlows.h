#pragma once
// The project commands of the workspace: New, Open, Save, Property, the save question
// before a project is replaced, offline and online simulation and the ladder launch.
// They run on the one ProjectDocument; dialogs, folder browsers and questions reach
// the user through ProjectDialogHost and the message sink, so every flow runs in
// tests with a scripted host.

#include "core/CommandIds.h"
#include "core/CommandLine.h"
#include "core/MessageSink.h"
#include "core/ProjectDocument.h"
#include "core/RecordingSink.h"

#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rq {

struct HmiDeviceType;
class HmiDeviceCatalog;

// The fields of the project dialog ("Project Property").
struct ProjectForm {
    std::string name;
    std::string description;
    std::string path;                      // "Project Path:"; the parent folder when creating
    std::optional<std::string> hmiDisplay; // the chosen "HMI Type:" entry, none when unset
    std::string slaveIp;
};

enum class ProjectDialogMode {
    Create,   // heading "Please Setting Project Property"; OK creates the directories
    Property, // heading "Project property"; browse disabled, no directories made
};

// The fields of the "Online Simulation" dialog.
struct OnlineSimulationForm {
    std::string ip;
    int port = 8200;
    int overtime = 200;
    int period = 200;
};

enum class SaveAnswer { Yes, No, Cancel };

// What the project flows need from the user interface.
class ProjectDialogHost {
public:
    virtual ~ProjectDialogHost() = default;
    // Runs the project dialog on `form`. Its OK calls `accept`, which shows its own
    // messages and returns true to close; the dialog stays open otherwise. Returns
    // true when the dialog closed with OK (form then holds the accepted fields).
    virtual bool runProjectDialog(ProjectForm& form, ProjectDialogMode mode,
                                  const std::function<bool(const ProjectForm&)>& accept) = 0;
    // A folder browser with the given title; nothing on Cancel.
    virtual std::optional<std::string> browseFolder(const std::string& title) = 0;
    // Runs the "Online Simulation" dialog; "Run" calls `run`, which returns true to
    // close the dialog. "Quit" closes it.
    virtual void
    runOnlineSimulationDialog(OnlineSimulationForm& form,
                              const std::function<bool(const OnlineSimulationForm&)>& run) = 0;
    // The save question (Yes / No / Cancel).
    virtual SaveAnswer askSaveChanges(const std::string& text) = 0;

    // Notifications to the tree and the recent-file list.
    virtual void projectCleared() {} // the tree is emptied
    virtual void projectLoaded() {}  // the tree shows the opened project, no selection
    virtual void addRecent(const std::string& dir) {}
    // A recent entry that no longer opens leaves the list.
    virtual void removeRecent(const std::string& dir) {}
};

// Messages shown by the flows.
inline constexpr const char* kMsgInputName = "Please input project name!";
inline constexpr const char* kMsgChoosePath = "Please choose project path!";
inline constexpr const char* kMsgChooseHmi = "Please HMI type!";
inline constexpr const char* kMsgCreateDirFailed = "Create directory failed!";
inline constexpr const char* kMsgSaveFirst =
    "Do not choose project directory, please save project before!";
inline constexpr const char* kMsgInputIp = "Please input corresponding HMI IP address!";
inline constexpr const char* kMsgNoLadder = "Current selected HMI type can't support ladder!";
// After an open, before the "FILE: reason" lines of the optional files that could
// not be read; after a save, before those that Save therefore left as they were.
inline constexpr const char* kMsgUnreadableFiles =
    "These project files could not be read. Their sections are empty; Save leaves the "
    "files as they are on disk unless you edit the section:";
inline constexpr const char* kMsgFilesKept = "Save left these files as they are on disk:";
inline constexpr const char* kTitleParentFolder =
    "Please choose project directory(Not including project name):";
inline constexpr const char* kTitleProjectFolder = "Please choose project directory:";

// The fields of the project file that are stored unescaped: the message naming the
// first one that holds '"', '<' or '&', or nothing.
std::optional<std::string> checkProjectFields(std::string_view name, std::string_view description,
                                              std::string_view slaveIp);

// The project dialog's OK check: the three field checks, the values that the
// project file could not store (checkProjectFields), in creation mode the
// directories (path + name, then hisdata and data inside it), then the catalog
// lookup by display text. Returns the HMI type when the dialog may close; nullptr
// when it stays open (a message has been shown for every failure but the lookup).
const HmiDeviceType* acceptProjectForm(const ProjectForm& form, ProjectDialogMode mode,
                                       ProjectDocument& doc);

// The project directory made of the dialog's path field and the name.
std::string projectDirectoryOf(const std::string& path, const std::string& name);

// The command lines of the sibling programs.
std::string offlineSimulationCommandLine(const std::string& projectDir);
std::string onlineSimulationCommandLine(const std::string& projectDir,
                                        const OnlineSimulationForm& form);
std::string ladderCommandLine(const std::string& projectDir);
// What a new ladder.xml holds.
inline constexpr const char* kEmptyLadder = "<?xml version=\"1.0\" ?>\r\n<ladder>\r\n</ladder>\r\n";

// An open that ran before the flows on its document existed: the command line's
// project, read off the GUI thread while the splash shows. readAhead() fills it,
// ProjectFlows::finishOpen() ends it as openDirectory() would have.
struct OpenAhead {
    std::string dir;            // the directory, absolute
    bool openable = false;      // what canOpen() said
    bool opened = false;        // what the full read said
    std::string error;          // "FILE: reason" when one of them failed
    RecordingSink messages;     // what the readers showed, in file order
    std::exception_ptr failure; // what the read threw
};

// Reads the project in `given` into `doc`, as openDirectory() reads it, showing
// nothing: doc's messages go to `into.messages` from now on. It touches only
// `doc` and `into`, so it may run on any thread while nothing else uses them.
void readAhead(ProjectDocument& doc, const std::string& given, OpenAhead& into);

class ProjectFlows {
public:
    ProjectFlows(ProjectDocument& doc, ProjectDialogHost& host, ProgramLauncher& launcher,
                 std::string programDir);

    // The save question, if the project is modified: Yes saves (a failed save
    // cancels), No goes on, Cancel stops. True when the caller may go on.
    bool saveModified();

    // "New(&N)": offers to save, empties the project, runs the project dialog in
    // creation mode. False only when the save question was cancelled.
    bool newProject();
    // "Open(&O)...": offers to save, asks for the directory, opens it.
    bool openProject();
    // Opens a directory (command line, another start, upload) after the save
    // question. A directory that cannot be a project is reported before the
    // question and the open project stays; so does a project whose files fail to
    // read later, where it can be read back from its directory.
    bool openDirectory(const std::string& dir);
    // The same for an entry of the recent list; an entry that fails to open is
    // removed from the list.
    bool openRecent(const std::string& dir);
    // Ends an open that readAhead() ran into this document (which is new and
    // unmodified, so no save question is due), now that its messages can be
    // shown: the same messages in the same order, the same tree, recent list and
    // failure handling as openDirectory() of the same directory. A read that
    // wanted to ask a question is done again here, where it can be answered.
    bool finishOpen(const OpenAhead& read);
    // "Save(&S)".
    bool save();
    // "Property...".
    bool property();
    // Closing: the save question, then the tree is emptied. False when cancelled.
    bool close();

    // "Offline Simulation" and "OnLine Simulation...".
    void offlineSimulation();
    void onlineSimulation();
    // Double-click on "Ladder".
    void launchLadder();

    // The title that the save question names.
    std::string documentTitle() const;

private:
    enum class OpenResult { Opened, Cancelled, Failed };
    OpenResult openChecked(const std::string& dir);
    bool openWithoutQuestion(const std::string& dir);
    // What follows the read of `dir`: the failure and the previous project
    // brought back, or the tree, the recent list and the unreadable files.
    bool afterRead(const std::string& dir, bool opened, const std::string& error,
                   const std::string& previous);
    // `made`, when given, collects the directories that the dialog's OK created.
    const HmiDeviceType* runProjectDialog(ProjectForm& form, ProjectDialogMode mode,
                                          std::vector<std::string>* made = nullptr);
    void reportOpenFailure(const std::string& dir, const std::string& error);
    void reportSave(const SaveReport& report);
    bool runProgram(const std::string& commandLine);

    ProjectDocument& doc_;
    ProjectDialogHost& host_;
    ProgramLauncher& launcher_;
    std::string programDir_;
};

} // namespace rq

namespace rq {

enum class SectionObject {
    None,
    Rtdb,
    HmiDb,
    HmiWindow,
    Device,
    Param,
    DataLog,
    History,
    Alarm,
    Modules,
    Redundancy,
    Fbd,
    Printer,
};

// The section object that handles a section command; None for other numbers.
SectionObject sectionOfCommand(int command);
// Availability by the project's HMI type, checked each time a menu is shown: the
// function-block commands 32864-32866 need a type whose fbd flag is not 0, the
// redundancy configuration 32863 one whose redundancy flag is not 0; every other
// command is available.
bool commandAllowedByHmiType(int command, const HmiDeviceType* type);

} // namespace rq

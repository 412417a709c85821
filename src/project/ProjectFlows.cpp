#include "project/ProjectFlows.h"

#include "core/FileUtil.h"
#include "core/HmiDeviceCatalog.h"
#include "core/StorableValue.h"
#include "core/ValueChecks.h"

#include <filesystem>

namespace rq {

std::string projectDirectoryOf(const std::string& path, const std::string& name) {
    std::string parent = path;
    while (parent.size() > 1 && parent.back() == '/')
        parent.pop_back();
    return joinPath(parent, name);
}

std::optional<std::string> checkProjectFields(std::string_view name, std::string_view description,
                                              std::string_view slaveIp) {
    if (auto m = checkStorableValue("Project Name", name))
        return m;
    if (auto m = checkStorableValue("Project Description", description))
        return m;
    if (auto m = checkStorableValue("Default Slave IP Address", slaveIp))
        return m;
    return checkIpv4Address("Default Slave IP Address", slaveIp);
}

const HmiDeviceType* acceptProjectForm(const ProjectForm& form, ProjectDialogMode mode,
                                       ProjectDocument& doc) {
    MessageSink& sink = doc.sink();
    if (form.name.empty()) {
        sink.showMessage(kMsgInputName, MessageIcon::Stop);
        return nullptr;
    }
    if (form.path.empty()) {
        sink.showMessage(kMsgChoosePath, MessageIcon::Stop);
        return nullptr;
    }
    if (!form.hmiDisplay) {
        sink.showMessage(kMsgChooseHmi, MessageIcon::Stop);
        return nullptr;
    }
    if (auto message = checkProjectFields(form.name, form.description, form.slaveIp)) {
        sink.showMessage(*message, MessageIcon::Stop);
        return nullptr;
    }
    if (mode == ProjectDialogMode::Create) {
        std::string parent = form.path;
        while (parent.size() > 1 && parent.back() == '/')
            parent.pop_back();
        if (!doc.createDirectories(parent, form.name))
            return nullptr;
    }
    // A display text that the catalog lacks keeps the dialog open without a word.
    return doc.catalogs().hmi.FindByDisplay(*form.hmiDisplay);
}

std::string offlineSimulationCommandLine(const std::string& projectDir) {
    return "rqrun \"" + projectDir + "\"";
}

std::string onlineSimulationCommandLine(const std::string& projectDir,
                                        const OnlineSimulationForm& form) {
    return "rqrun \"" + projectDir + "\" 1 " + form.ip + " " + std::to_string(form.port) + " " +
           std::to_string(form.overtime) + " " + std::to_string(form.period) + " ";
}

std::string ladderCommandLine(const std::string& projectDir) {
    return "Ladrune *\"" + projectDir + "\"*ladder.xml";
}

ProjectFlows::ProjectFlows(ProjectDocument& doc, ProjectDialogHost& host, ProgramLauncher& launcher,
                           std::string programDir)
    : doc_(doc), host_(host), launcher_(launcher), programDir_(std::move(programDir)) {}

namespace {

// The project's fields as the project dialog shows them.
ProjectForm formOf(const ProjectModel& m) {
    return {m.name, m.description, m.projectDirectory,
            m.hmiType ? std::optional<std::string>(m.hmiType->display) : std::nullopt, m.slaveIp};
}

// What the project dialog's OK takes over: name, description, address and HMI type.
void takeProjectForm(ProjectModel& m, const ProjectForm& form, const HmiDeviceType* type) {
    m.name = form.name;
    m.description = form.description;
    m.slaveIp = form.slaveIp;
    m.hmiType = type;
}

} // namespace

// Removes the directories that a save created, deepest first, each only while it
// is empty: a failed save leaves no empty project folder behind.
static void removeEmptyDirectories(const std::vector<std::string>& made) {
    for (auto it = made.rbegin(); it != made.rend(); ++it) {
        std::error_code ec;
        if (std::filesystem::is_directory(*it, ec) && std::filesystem::is_empty(*it, ec) && !ec)
            std::filesystem::remove(*it, ec);
    }
}

// The project dialog with its checks on OK; the HMI type chosen, or null after
// Cancel.
const HmiDeviceType* ProjectFlows::runProjectDialog(ProjectForm& form, ProjectDialogMode mode,
                                                    std::vector<std::string>* made) {
    const HmiDeviceType* chosen = nullptr;
    auto accept = [&](const ProjectForm& f) {
        std::vector<std::string> fresh;
        if (made && mode == ProjectDialogMode::Create && !f.name.empty() && !f.path.empty()) {
            const std::string dir = projectDirectoryOf(f.path, f.name);
            for (const std::string& d : {dir, joinPath(dir, "hisdata"), joinPath(dir, "data")})
                if (!pathExists(d))
                    fresh.push_back(d);
        }
        chosen = acceptProjectForm(f, mode, doc_);
        for (const std::string& d : fresh)
            if (directoryExists(d))
                made->push_back(d);
        return chosen != nullptr;
    };
    if (!host_.runProjectDialog(form, mode, accept))
        return nullptr;
    return chosen;
}

std::string ProjectFlows::documentTitle() const {
    const ProjectModel& m = doc_.model();
    return m.name.empty() ? std::string("Untitled") : m.name;
}

bool ProjectFlows::saveModified() {
    if (!doc_.model().modified)
        return true;
    switch (host_.askSaveChanges("Save changes to " + documentTitle() + "?")) {
    case SaveAnswer::Yes:
        return save();
    case SaveAnswer::No:
        return true;
    case SaveAnswer::Cancel:
        break;
    }
    return false;
}

bool ProjectFlows::newProject() {
    if (!saveModified())
        return false;
    host_.projectCleared();
    doc_.clear();
    ProjectModel& m = doc_.model();
    m.defines.clear();
    m.libs.clear();
    m.include.clear();
    m.libs_linux.clear();

    ProjectForm form;
    if (const HmiDeviceType* chosen = runProjectDialog(form, ProjectDialogMode::Create)) {
        takeProjectForm(m, form, chosen);
        m.projectDirectory = projectDirectoryOf(form.path, form.name);
        m.modified = true;
        // The directory exists from now on: it belongs in the recent list.
        host_.addRecent(m.projectDirectory);
    }
    return true;
}

bool ProjectFlows::openProject() {
    std::optional<std::string> dir = host_.browseFolder(kTitleProjectFolder);
    if (!dir)
        return false;
    return openDirectory(*dir);
}

bool ProjectFlows::openDirectory(const std::string& dir) {
    return openChecked(dir) == OpenResult::Opened;
}

bool ProjectFlows::openRecent(const std::string& dir) {
    OpenResult result = openChecked(dir);
    if (result == OpenResult::Failed)
        host_.removeRecent(dir);
    return result == OpenResult::Opened;
}

void ProjectFlows::reportOpenFailure(const std::string& dir, const std::string& error) {
    doc_.sink().showMessage("Failed to open the project \"" + dir + "\".\n" + error,
                            MessageIcon::Stop);
}

// The runtime and the ladder editor run in the program directory: the project
// directory they are given must not depend on the current one.
static std::string absoluteDirectory(const std::string& given) {
    std::error_code ec;
    std::filesystem::path absolute = std::filesystem::absolute(given, ec);
    std::string dir = ec ? given : absolute.lexically_normal().string();
    while (dir.size() > 1 && dir.back() == '/')
        dir.pop_back();
    return dir;
}

ProjectFlows::OpenResult ProjectFlows::openChecked(const std::string& given) {
    // What can be known without reading the whole project is checked before the
    // save question, so that a directory that is no project (or no longer there)
    // costs the open project nothing.
    const std::string dir = absoluteDirectory(given);
    std::string error;
    if (!doc_.canOpen(dir, &error)) {
        reportOpenFailure(dir, error);
        return OpenResult::Failed;
    }
    if (!saveModified())
        return OpenResult::Cancelled;
    return openWithoutQuestion(dir) ? OpenResult::Opened : OpenResult::Failed;
}

bool ProjectFlows::openWithoutQuestion(const std::string& given) {
    const std::string dir = absoluteDirectory(given);
    // A required file that fails to read only shows itself in the full read, which
    // replaces the sections; the previous project then comes back from its
    // directory (it was saved, or its changes were declined at the question).
    const std::string previous = doc_.model().projectDirectory;
    host_.projectCleared();
    std::string error;
    const bool opened = doc_.open(dir, &error);
    return afterRead(dir, opened, error, previous);
}

bool ProjectFlows::afterRead(const std::string& dir, bool opened, const std::string& error,
                             const std::string& previous) {
    if (!opened) {
        reportOpenFailure(dir, error);
        std::string again;
        if (!previous.empty() && previous != dir && doc_.open(previous, &again))
            host_.projectLoaded();
        else
            host_.projectCleared();
        return false;
    }
    host_.addRecent(doc_.model().projectDirectory);
    host_.projectLoaded();
    if (!doc_.unreadableFiles().empty()) {
        std::string text = std::string(kMsgUnreadableFiles) + "\n";
        for (const std::string& line : doc_.unreadableFiles())
            text += "\n" + line;
        doc_.sink().showMessage(text, MessageIcon::Stop);
    }
    return true;
}

void readAhead(ProjectDocument& doc, const std::string& given, OpenAhead& into) {
    doc.setSink(into.messages);
    into.dir = absoluteDirectory(given);
    try {
        into.openable = doc.canOpen(into.dir, &into.error);
        if (into.openable)
            into.opened = doc.open(into.dir, &into.error);
    } catch (...) {
        into.failure = std::current_exception();
    }
}

bool ProjectFlows::finishOpen(const OpenAhead& read) {
    if (read.messages.askedQuestion())
        return openDirectory(read.dir);
    if (!read.openable && !read.failure) {
        // Known before anything was replaced: the new project stays.
        read.messages.replayTo(doc_.sink());
        reportOpenFailure(read.dir, read.error);
        return false;
    }
    host_.projectCleared();
    read.messages.replayTo(doc_.sink());
    if (read.failure)
        std::rethrow_exception(read.failure);
    return afterRead(read.dir, read.opened, read.error, std::string());
}

bool ProjectFlows::save() {
    ProjectModel& m = doc_.model();
    std::vector<std::string> made; // directories this save created
    if (m.name.empty()) {
        // The property dialog, in creation mode because the name is empty. Its OK
        // has just made PATH/NAME with hisdata and data: a project without a
        // directory is saved there, instead of asking for a folder again (where
        // making the same directory a second time could only fail).
        ProjectForm form = formOf(m);
        const HmiDeviceType* chosen = runProjectDialog(form, ProjectDialogMode::Create, &made);
        if (chosen)
            takeProjectForm(m, form, chosen);
        if (chosen && m.projectDirectory.empty()) {
            m.projectDirectory = projectDirectoryOf(form.path, form.name);
        } else {
            // Cancelled, or the project already has its directory and keeps it:
            // what the dialog made is not wanted.
            removeEmptyDirectories(made);
            made.clear();
        }
        if (m.name.empty())
            return false;
    }
    if (m.projectDirectory.empty()) {
        std::optional<std::string> parent = host_.browseFolder(kTitleParentFolder);
        if (!parent)
            return false;
        std::string dir = projectDirectoryOf(*parent, m.name);
        if (!makeDirectory(dir)) {
            doc_.sink().showMessage(kMsgCreateDirFailed, MessageIcon::Stop);
            return false;
        }
        made.push_back(dir);
        m.projectDirectory = dir;
    }
    SaveReport report = doc_.saveAll();
    if (!made.empty() && report.failures.size() == static_cast<size_t>(kSectionCount)) {
        // Not one file could be written into the directory made for it: it goes
        // again, and the project stays without a directory.
        reportSave(report);
        removeEmptyDirectories(made);
        m.projectDirectory.clear();
        return false;
    }
    if (!made.empty())
        host_.addRecent(m.projectDirectory);
    reportSave(report);
    return true;
}

void ProjectFlows::reportSave(const SaveReport& report) {
    // Each file that could not be written is reported; the others have been
    // written and the save counts as done.
    for (const std::string& line : report.failures)
        doc_.sink().showMessage("Failed to save document.\n" + line, MessageIcon::Stop);
    if (!report.kept.empty()) {
        std::string text = std::string(kMsgFilesKept) + "\n";
        for (const std::string& line : report.kept)
            text += "\n" + line;
        doc_.sink().showMessage(text, MessageIcon::Information);
    }
}

bool ProjectFlows::property() {
    ProjectModel& m = doc_.model();
    ProjectDialogMode mode =
        m.name.empty() ? ProjectDialogMode::Create : ProjectDialogMode::Property;
    ProjectForm form = formOf(m);
    std::vector<std::string> made;
    const HmiDeviceType* chosen = runProjectDialog(form, mode, &made);
    if (chosen && mode == ProjectDialogMode::Create && m.projectDirectory.empty()) {
        // An untitled project gets the directory its dialog made, as after New:
        // a later Save asking for a folder again could only fail to make it.
        m.projectDirectory = projectDirectoryOf(form.path, form.name);
        host_.addRecent(m.projectDirectory);
    } else {
        removeEmptyDirectories(made);
    }
    if (!chosen)
        return false;
    takeProjectForm(m, form, chosen);
    // The project file changes with these fields, so Save must not be skipped.
    m.modified = true;
    return true;
}

bool ProjectFlows::close() {
    if (!saveModified())
        return false;
    host_.projectCleared();
    doc_.clear();
    return true;
}

bool ProjectFlows::runProgram(const std::string& commandLine) {
    std::string error;
    if (launcher_.launch(programDir_, commandLine, &error))
        return true;
    doc_.sink().showMessage(error, MessageIcon::Stop);
    return false;
}

void ProjectFlows::offlineSimulation() {
    const ProjectModel& m = doc_.model();
    if (m.projectDirectory.empty()) {
        doc_.sink().showMessage(kMsgSaveFirst, MessageIcon::Stop);
        return;
    }
    runProgram(offlineSimulationCommandLine(m.projectDirectory));
}

void ProjectFlows::onlineSimulation() {
    OnlineSimulationForm form;
    form.ip = doc_.model().slaveIp;
    host_.runOnlineSimulationDialog(form, [this](const OnlineSimulationForm& f) {
        const ProjectModel& m = doc_.model();
        if (m.projectDirectory.empty()) {
            doc_.sink().showMessage(kMsgSaveFirst, MessageIcon::Stop);
            return false;
        }
        if (f.ip.empty()) {
            doc_.sink().showMessage(kMsgInputIp, MessageIcon::Stop);
            return false;
        }
        // rqrun takes the address as it is written.
        if (auto message = checkIpv4Address("IP Address", f.ip)) {
            doc_.sink().showMessage(*message, MessageIcon::Stop);
            return false;
        }
        runProgram(onlineSimulationCommandLine(m.projectDirectory, f));
        return true;
    });
}

void ProjectFlows::launchLadder() {
    const ProjectModel& m = doc_.model();
    if (!m.hmiType)
        return;
    if (m.hmiType->ladder == 0) {
        doc_.sink().showMessage(kMsgNoLadder, MessageIcon::Stop);
        return;
    }
    if (m.projectDirectory.empty()) {
        doc_.sink().showMessage(kMsgSaveFirst, MessageIcon::Stop);
        return;
    }
    const std::string path = joinPath(m.projectDirectory, "ladder.xml");
    // Opening a FIFO here would block: only a path where nothing stands gets the
    // empty ladder.
    if (!pathExists(path)) {
        std::string error;
        if (!writeFileAtomic(path, kEmptyLadder, &error)) {
            doc_.sink().showMessage("Cannot create " + path + ": " + error, MessageIcon::Stop);
            return;
        }
    }
    runProgram(ladderCommandLine(m.projectDirectory));
}

SectionObject sectionOfCommand(int command) {
    struct Range {
        std::initializer_list<int> numbers;
        SectionObject section;
    };
    static const Range table[] = {
        {{32802, 32803, 32806, 32807, 32808, 32810, 32811, 32812, 32906}, SectionObject::Rtdb},
        {{32813, 32814, 32874, 32816, 32817, 32818}, SectionObject::HmiDb},
        {{32819, 32820, 32821, 32822}, SectionObject::HmiWindow},
        {{32827, 32828, 32829, 32830, 32831, 32833, 32834, 32914, 32916, 32835, 32836, 32837, 32839,
          32840, 32841},
         SectionObject::Device},
        {{32917, 32918, 32919}, SectionObject::Param},
        {{32842, 32843, 32844, 32845, 32846, 32848, 32849}, SectionObject::DataLog},
        {{32853, 32912, 32913, 32850, 32851, 32852}, SectionObject::History},
        {{32854, 32855, 32856, 32857, 32858, 32859, 32909}, SectionObject::Alarm},
        {{32860, 32861, 32862}, SectionObject::Modules},
        {{32863}, SectionObject::Redundancy},
        {{32864, 32865, 32866, 32868}, SectionObject::Fbd},
        {{32911}, SectionObject::Printer},
    };
    for (const Range& r : table)
        for (int n : r.numbers)
            if (n == command)
                return r.section;
    return SectionObject::None;
}

bool commandAllowedByHmiType(int command, const HmiDeviceType* type) {
    switch (command) {
    case cmd::kNewFbd:
    case cmd::kDeleteFbd:
    case cmd::kFbdConfiguration:
        return type && type->fbd != 0;
    case cmd::kRedundantConfiguration:
        return type && type->redundancy != 0;
    default:
        return true;
    }
}

} // namespace rq

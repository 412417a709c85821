#include "core/ProjectDocument.h"

#include "core/FileUtil.h"
#include "core/ProjectFile.h"
#include "core/TextEncoding.h"

#include "core/XmlStream.h"

#include <filesystem>
#include <sys/stat.h>

namespace rq {

ProjectDocument::ProjectDocument(const Catalogs& catalogs, MessageSink& sink,
                                 std::array<ConfigSection*, kSectionCount - 1> sections)
    : catalogs_(catalogs), sink_(sink), sections_(sections) {
    // Every step (done, undone or redone) edits its section since the open.
    history_.setListener([this](const EditCommand& c) {
        model_.modified = true;
        for (int s : c.sections())
            markSectionEdited(s);
    });
    markSaved();
}

void ProjectDocument::clear() {
    for (ConfigSection* s : sections_)
        s->clear();
    model_ = ProjectModel{};
    forgetFileStates();
    markSaved();
}

void ProjectDocument::markSaved() {
    history_.clear();
    savedProjectText_ = sectionText(0);
}

EditCommand* ProjectDocument::undo() {
    EditCommand* c = history_.undo();
    if (c)
        updateModified();
    return c;
}

EditCommand* ProjectDocument::redo() {
    EditCommand* c = history_.redo();
    if (c)
        updateModified();
    return c;
}

void ProjectDocument::updateModified() {
    model_.modified = !history_.isClean() || sectionText(0) != savedProjectText_;
}

void ProjectDocument::forgetFileStates() {
    for (auto& r : unreadableReason_)
        r.clear();
    edited_.fill(false);
    unreadable_.clear();
    dropped_.clear();
}

namespace {

// Whether anything (a file, a link, even a dangling one) stands at the path.
bool somethingAt(const std::string& path) {
    struct stat st;
    return ::lstat(path.c_str(), &st) == 0;
}

// Removes ".FILE.XXXXXX", the temporaries of writeFileAtomic that a killed save
// left behind, for the thirteen files.
void removeStaleTemporaries(const std::string& dir) {
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator(dir, ec)) {
        const std::string name = entry.path().filename().string();
        for (const char* file : kSectionFiles) {
            const std::string prefix = std::string(".") + file + ".";
            if (name.size() == prefix.size() + 6 && name.compare(0, prefix.size(), prefix) == 0 &&
                entry.is_regular_file(ec) && !entry.is_symlink(ec)) {
                std::filesystem::remove(entry.path(), ec);
                break;
            }
        }
    }
}

} // namespace

bool ProjectDocument::createDirectories(const std::string& parent, const std::string& name) {
    std::string dir = joinPath(parent, name);
    if (!makeDirectory(dir) || !makeDirectory(joinPath(dir, "hisdata")) ||
        !makeDirectory(joinPath(dir, "data"))) {
        sink_.showMessage("Create directory failed!", MessageIcon::Stop);
        return false;
    }
    return true;
}

// The full path of a directory, without a trailing separator.
static std::string fullDirectoryPath(const std::string& dir) {
    std::error_code ec;
    std::string full = std::filesystem::absolute(dir, ec).lexically_normal().string();
    if (ec)
        full = dir;
    while (full.size() > 1 && full.back() == '/')
        full.pop_back();
    return full;
}

bool ProjectDocument::open(const std::string& directory, std::string* error, OpenPurpose purpose) {
    const std::string dir = fullDirectoryPath(directory);
    clear();
    std::vector<DroppedRecord> dropped;
    collectDropped_ = &dropped;
    for (int i = 0; i < kSectionCount; ++i) {
        std::string reason;
        if (loadSection(i, dir, &reason))
            continue;
        const std::string path = joinPath(dir, kSectionFiles[i]);
        if (i < kRequiredSections) {
            collectDropped_ = nullptr;
            if (error)
                *error = path + ": " + reason;
            clear();
            return false;
        }
        // An optional file that is missing leaves its section empty; one that is
        // there but cannot be read does too, and Save must not replace it.
        section(i).clear();
        if (somethingAt(path)) {
            unreadableReason_[i] = reason;
            unreadable_.push_back(path + ": " + reason);
        }
    }
    collectDropped_ = nullptr;
    dropped_ = std::move(dropped);
    if (purpose == OpenPurpose::Edit) {
        makeDirectory(joinPath(dir, "data"));
        makeDirectory(joinPath(dir, "hisdata"));
        removeStaleTemporaries(dir);
    }
    model_.projectDirectory = dir;
    model_.modified = false;
    markSaved();
    return true;
}

bool ProjectDocument::canOpen(const std::string& directory, std::string* error) const {
    const std::string dir = fullDirectoryPath(directory);
    auto fail = [&](const std::string& path, const std::string& reason) {
        if (error)
            *error = path + ": " + reason;
        return false;
    };
    if (!directoryExists(dir))
        return fail(dir, "the directory does not exist");
    const std::string projectFile = joinPath(dir, kSectionFiles[0]);
    if (!canOpenRegularFile(projectFile))
        return fail(projectFile, "missing or not a readable file: this is not a project directory");
    ProjectModel scratch;
    std::string reason;
    if (!readProjectFile(projectFile, scratch, catalogs_.hmi, &reason))
        return fail(projectFile, reason);
    for (int i = 1; i < kRequiredSections; ++i) {
        const std::string path = joinPath(dir, kSectionFiles[i]);
        if (!canOpenRegularFile(path))
            return fail(path, "missing or not a readable file");
    }
    return true;
}

bool ProjectDocument::loadSection(int index, const std::string& dir, std::string* error) {
    model_.currentSection = index;
    const std::string path = joinPath(dir, kSectionFiles[index]);
    if (index == 0)
        return readProjectFile(path, model_, catalogs_.hmi, error);
    ReadContext ctx{sink_, &catalogs_.hmi, &catalogs_.io, {}};
    bool ok = section(index).read(path, ctx);
    if (!ok && error)
        *error = ctx.error.empty() ? "cannot be read" : ctx.error;
    if (collectDropped_)
        for (DroppedRecord& d : ctx.dropped) {
            d.file = kSectionFiles[index];
            collectDropped_->push_back(std::move(d));
        }
    return ok;
}

std::string ProjectDocument::sectionText(int index) const {
    std::string text;
    if (index == 0)
        writeProjectFile(model_, text);
    else
        section(index).write(text);
    return text;
}

bool ProjectDocument::saveSection(int index, const std::string& dir, std::string* error) {
    model_.currentSection = index;
    std::string text = sectionText(index);
    const std::string path = joinPath(dir, kSectionFiles[index]);
    if (!isAscii(text) && !deviceCodePageIsUtf8())
        text = toDeviceXml(text);
    // The writers store most values unescaped: a file that its own reader would
    // refuse is never written over the old one.
    std::string why;
    if (!checkXmlWellFormed(text, path, &why)) {
        if (error)
            *error = "not saved, the file on disk is kept: the section holds a value with '\"', "
                     "'<' or '&', which the file cannot store (" +
                     why + ")";
        return false;
    }
    return writeFileAtomic(path, text, error);
}

SaveReport ProjectDocument::saveAll() {
    SaveReport report;
    bool unsaved = false; // what the user changed is not all on disk
    const std::string& dir = model_.projectDirectory;
    for (int i = 0; i < kSectionCount; ++i) {
        const std::string path = joinPath(dir, kSectionFiles[i]);
        if (sectionUnreadable(i)) {
            const std::string why =
                "it could not be read when the project was opened (" + unreadableReason_[i] + ")";
            if (!edited_[i] ||
                !sink_.askYesNo(path + ": " + why +
                                    ".\nYou have edited this section since. Replace the file "
                                    "with the section as it is now?",
                                MessageIcon::Question, true)) {
                report.kept.push_back(path + ": left as it is on disk, because " + why);
                unsaved = unsaved || edited_[i];
                continue;
            }
        }
        std::string reason;
        if (!saveSection(i, dir, &reason)) {
            report.failures.push_back(path + ": " + reason);
            unsaved = true;
            continue;
        }
        if (sectionUnreadable(i)) {
            unreadableReason_[i].clear();
            std::erase_if(unreadable_, [&](const std::string& line) {
                return line.compare(0, path.size() + 2, path + ": ") == 0;
            });
        }
    }
    // A file that was not written, or an edited section whose damaged file was
    // kept, does not hold this state: the project stays modified, so that closing
    // asks again instead of dropping the edits, and undoing back to this state
    // must not make the project look saved.
    model_.modified = unsaved;
    if (unsaved)
        history_.leaveClean();
    else
        history_.setClean();
    savedProjectText_ = sectionText(0);
    return report;
}

} // namespace rq

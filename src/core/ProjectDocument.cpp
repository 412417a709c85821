#include "core/ProjectDocument.h"

#include "core/FileUtil.h"
#include "core/ProjectFile.h"
#include "core/RecordingSink.h"
#include "core/SectionSave.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <filesystem>
#include <iterator>
#include <libxml/parser.h>
#include <sys/stat.h>
#include <thread>

namespace rq {

ProjectDocument::ProjectDocument(const Catalogs& catalogs, MessageSink& sink,
                                 std::array<ConfigSection*, kSectionCount - 1> sections)
    : catalogs_(catalogs), sink_(&sink), sections_(sections) {
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
        sink_->showMessage("Create directory failed!", MessageIcon::Stop);
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

// What reading one file gave, kept until it is the file's turn in file order.
struct ProjectDocument::SectionRead {
    bool ok = false;
    std::string reason;
    RecordingSink messages;
    std::vector<DroppedRecord> dropped;
    std::exception_ptr failure; // what the reader threw, thrown again in file order
};

// Reads one file into its section (index 0: the project's fields) with its own
// context: nothing that another file's reader touches.
void ProjectDocument::readSection(int index, const std::string& dir, SectionRead& into,
                                  MessageSink& sink) {
    const std::string path = joinPath(dir, kSectionFiles[index]);
    try {
        if (index == 0) {
            into.ok = readProjectFile(path, model_, catalogs_.hmi, &into.reason);
            return;
        }
        ReadContext ctx{sink, &catalogs_.hmi, &catalogs_.io, {}};
        into.ok = section(index).read(path, ctx);
        if (!into.ok)
            into.reason = ctx.error.empty() ? "cannot be read" : ctx.error;
        into.dropped = std::move(ctx.dropped);
        for (DroppedRecord& d : into.dropped)
            d.file = kSectionFiles[index];
    } catch (...) {
        into.failure = std::current_exception();
    }
}

namespace {

// Below this many bytes in the files besides the biggest one, a second thread
// saves less than it costs to start (measured with bench/open).
constexpr std::uintmax_t kParallelOpenBytes = 256 * 1024;

std::uintmax_t fileBytes(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode)
               ? static_cast<std::uintmax_t>(st.st_size)
               : 0;
}

} // namespace

unsigned ProjectDocument::threadsFor(const std::string& dir) const {
    if (openThreads_ > 0)
        return openThreads_;
    std::uintmax_t total = 0, biggest = 0;
    unsigned big = 0;
    for (const char* file : kSectionFiles) {
        std::uintmax_t n = fileBytes(joinPath(dir, file));
        total += n;
        biggest = std::max(biggest, n);
        big += n >= kParallelOpenBytes / 4;
    }
    if (total - biggest < kParallelOpenBytes)
        return 1;
    return std::max(1u, std::min(std::thread::hardware_concurrency(), big));
}

bool ProjectDocument::open(const std::string& directory, std::string* error, OpenPurpose purpose) {
    const std::string dir = fullDirectoryPath(directory);
    clear();
    std::array<SectionRead, kSectionCount> reads;
    const unsigned threads = std::min<unsigned>(threadsFor(dir), kSectionCount);
    if (threads > 1) {
        // The biggest files first, so that no thread is left with a big one at
        // the end. Readers share only the catalogs, which they do not change;
        // the parser's global state is set up here, before any thread parses.
        std::array<int, kSectionCount> order;
        std::array<std::uintmax_t, kSectionCount> bytes;
        for (int i = 0; i < kSectionCount; ++i) {
            order[i] = i;
            bytes[i] = fileBytes(joinPath(dir, kSectionFiles[i]));
        }
        std::stable_sort(order.begin(), order.end(),
                         [&](int a, int b) { return bytes[a] > bytes[b]; });
        xmlInitParser();
        std::atomic<int> next{0};
        auto work = [&] {
            for (int k; (k = next.fetch_add(1)) < kSectionCount;)
                readSection(order[k], dir, reads[order[k]], reads[order[k]].messages);
        };
        std::vector<std::thread> helpers;
        for (unsigned t = 1; t < threads; ++t)
            helpers.emplace_back(work);
        work();
        for (std::thread& t : helpers)
            t.join();
    }
    // File order: what a one-by-one open shows and keeps, up to the first
    // required file that cannot be read.
    std::vector<DroppedRecord> dropped;
    for (int i = 0; i < kSectionCount; ++i) {
        SectionRead& r = reads[i];
        if (threads <= 1) {
            readSection(i, dir, r, *sink_);
        } else if (r.messages.askedQuestion()) {
            // Nobody could answer on the side: read it again, asking for real.
            section(i).clear();
            r = SectionRead{};
            readSection(i, dir, r, *sink_);
        } else {
            r.messages.replayTo(*sink_);
        }
        if (r.failure) {
            clear();
            std::rethrow_exception(r.failure);
        }
        const std::string path = joinPath(dir, kSectionFiles[i]);
        if (!r.ok && i < kRequiredSections) {
            if (error)
                *error = path + ": " + r.reason;
            clear();
            return false;
        }
        if (!r.ok) {
            // An optional file that is missing leaves its section empty; one that
            // is there but cannot be read does too, and Save must not replace it.
            section(i).clear();
            if (somethingAt(path)) {
                unreadableReason_[i] = r.reason;
                unreadable_.push_back(path + ": " + r.reason);
            }
        }
        std::move(r.dropped.begin(), r.dropped.end(), std::back_inserter(dropped));
    }
    dropped_ = std::move(dropped);
    if (purpose == OpenPurpose::Edit) {
        makeDirectory(joinPath(dir, "data"));
        makeDirectory(joinPath(dir, "hisdata"));
        removeStaleTemporaries(dir);
    }
    model_.projectDirectory = dir;
    model_.currentSection = kSectionCount - 1;
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
    SectionRead r;
    readSection(index, dir, r, *sink_);
    if (r.failure)
        std::rethrow_exception(r.failure);
    if (!r.ok && error)
        *error = r.reason;
    return r.ok;
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
    // The file as it is now tells how big the new one will be, near enough.
    const std::uintmax_t old = fileBytes(joinPath(dir, kSectionFiles[index]));
    return writeSectionFile(index, dir, sectionFileBytes(*this, index, old + old / 8), error);
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
                !sink_->askYesNo(path + ": " + why +
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

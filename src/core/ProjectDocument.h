#pragma once
// The one open project: its fields and its twelve section files, and the headless
// flows on them: new, create the directory, open by directory, save all.

#include "core/Catalogs.h"
#include "core/ConfigSection.h"
#include "core/MessageSink.h"
#include "core/ProjectModel.h"
#include "core/SectionTable.h"
#include "core/UndoHistory.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace rq {

struct SaveReport {
    std::vector<std::string> failures; // one line per file that could not be written
    // One line per file left as it was on disk because it could not be read when
    // the project was opened (and its section was not replaced on purpose).
    std::vector<std::string> kept;
    bool ok() const { return failures.empty(); }
    // Every file now holds what is in memory.
    bool complete() const { return failures.empty() && kept.empty(); }
};

// Why a project is opened. Read-only commands (information, checks) inspect it and
// must write nothing: no working directories made, no stale temporaries removed.
enum class OpenPurpose { Edit, Inspect };

class ProjectDocument {
public:
    // `sections` are the section objects of indexes 1..12 in table order.
    ProjectDocument(const Catalogs& catalogs, MessageSink& sink,
                    std::array<ConfigSection*, kSectionCount - 1> sections);

    ProjectModel& model() { return model_; }
    const ProjectModel& model() const { return model_; }
    const Catalogs& catalogs() const { return catalogs_; }
    MessageSink& sink() { return *sink_; }
    // Where messages go from now on (a project opened before its window existed
    // is handed to the window's sink).
    void setSink(MessageSink& sink) { sink_ = &sink; }
    // Index 1..12.
    ConfigSection& section(int index) const { return *sections_.at(index - 1); }

    // New: clears every section and the project's fields (the project is then new,
    // without directory).
    void clear();

    // The project dialog's OK in creation mode: makes PARENT/NAME, then hisdata and
    // data inside it. False after showing "Create directory failed!".
    bool createDirectories(const std::string& parent, const std::string& name);

    // Opens the project in `dir`: the thirteen files in order, the first four
    // required. False with "FILE: reason" in *error; the document is then cleared.
    // Big files are read side by side on several threads; their messages still
    // reach the sink, and their dropped records the list, in file order, as a
    // one-by-one open gives them, and the first required file in file order that
    // cannot be read decides the error.
    // An optional file that is missing leaves its section empty; one that exists but
    // cannot be read (not a regular file, no permission, empty, cut short, wrong
    // root, bytes in no known code page...) leaves its section empty too, and is
    // marked unreadable and listed in unreadableFiles(). For OpenPurpose::Edit, data/
    // and hisdata/ are made and temporaries left by a killed save are removed.
    bool open(const std::string& dir, std::string* error, OpenPurpose purpose = OpenPurpose::Edit);
    // What an open can tell before it replaces anything: the project file reads and
    // the other three required files are there as readable files. False with
    // "FILE: reason" in *error; the open project is not touched.
    bool canOpen(const std::string& dir, std::string* error) const;

    // How many threads open() reads with: 0 (the default) decides by the files'
    // sizes and the machine's cores; 1 reads one file after the other; more forces
    // that many threads whatever the sizes (tests, benchmarks).
    void setOpenThreads(unsigned threads) { openThreads_ = threads; }

    // "FILE: reason" for each optional file that could not be read at the open.
    const std::vector<std::string>& unreadableFiles() const { return unreadable_; }
    bool sectionUnreadable(int index) const { return unreadableReason_.at(index).size() > 0; }
    // What the readers left out at the open, with the file's name.
    const std::vector<DroppedRecord>& droppedRecords() const { return dropped_; }

    // Every editor calls this when it changes section `index` (1..12; 0 is the
    // project file). A section that could not be read is saved over its file only
    // when it has been edited since the open, and then only after asking. The
    // real-time database editor calls it through the shell's mark-modified hook.
    void markSectionEdited(int index) { edited_.at(index) = true; }
    bool sectionEdited(int index) const { return edited_.at(index); }

    // Writes the thirteen files in order into the project directory. A file that
    // cannot be written is reported and the others are still written; `modified`
    // is cleared, unless a file could not be written or an edited section's
    // damaged file was kept (the edits are then not on disk). A file whose bytes would not read
    // back (a value holding '"', '<' or '&', which the writers store unescaped) is not written: the
    // old file stays and the failure names it. A section marked unreadable leaves its file as it is
    // (reported in `kept`), unless it was edited since the open and the user agrees
    // to replace the file.
    SaveReport saveAll();

    // Loads or saves one index (0 = the project file), through currentSection.
    bool loadSection(int index, const std::string& dir, std::string* error);
    bool saveSection(int index, const std::string& dir, std::string* error);
    // The text of one file as Save writes it (UTF-8, before the device code page).
    std::string sectionText(int index) const;

    // The project's edit history. Opening and New clear it, Save marks it clean.
    // The section commands push their steps on it; every step marks the project
    // modified.
    UndoHistory& history() { return history_; }
    const UndoHistory& history() const { return history_; }
    // Undo and Redo of the latest step (null when there is none). Back at the
    // saved state, with the project's own fields as saved, the project is no
    // longer modified.
    EditCommand* undo();
    EditCommand* redo();

private:
    const Catalogs& catalogs_;
    MessageSink* sink_;
    unsigned openThreads_ = 0;
    void forgetFileStates();

    std::array<ConfigSection*, kSectionCount - 1> sections_;
    void updateModified();
    void markSaved();

    ProjectModel model_;
    std::array<std::string, kSectionCount> unreadableReason_;
    std::array<bool, kSectionCount> edited_{};
    std::vector<std::string> unreadable_;
    std::vector<DroppedRecord> dropped_;

    struct SectionRead;
    void readSection(int index, const std::string& dir, SectionRead& into, MessageSink& sink);
    unsigned threadsFor(const std::string& dir) const;
    UndoHistory history_;
    std::string savedProjectText_; // the project file as last saved or opened
};

} // namespace rq

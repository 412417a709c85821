#pragma once
// The one open project: its fields and its twelve section files, and the headless
// flows on them: new, create the directory, open by directory, save all.

#include "core/Catalogs.h"
#include "core/ConfigSection.h"
#include "core/MessageSink.h"
#include "core/ProjectModel.h"
#include "core/SectionTable.h"

#include <array>
#include <string>
#include <vector>

namespace rq {

struct SaveReport {
    std::vector<std::string> failures; // one line per file that could not be written
    bool ok() const { return failures.empty(); }
};

class ProjectDocument {
public:
    // `sections` are the section objects of indexes 1..12 in table order.
    ProjectDocument(const Catalogs& catalogs, MessageSink& sink,
                    std::array<ConfigSection*, kSectionCount - 1> sections);

    ProjectModel& model() { return model_; }
    const ProjectModel& model() const { return model_; }
    const Catalogs& catalogs() const { return catalogs_; }
    MessageSink& sink() { return sink_; }
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
    bool open(const std::string& dir, std::string* error);

    // Writes the thirteen files in order into the project directory. A file that
    // cannot be written is reported and the others are still written; `modified`
    // is cleared.
    SaveReport saveAll();

    // Loads or saves one index (0 = the project file), through currentSection.
    bool loadSection(int index, const std::string& dir, std::string* error);
    bool saveSection(int index, const std::string& dir, std::string* error);
    // The text of one file as Save writes it (UTF-8, before the device code page).
    std::string sectionText(int index) const;

private:
    const Catalogs& catalogs_;
    MessageSink& sink_;
    std::array<ConfigSection*, kSectionCount - 1> sections_;
    ProjectModel model_;
};

} // namespace rq

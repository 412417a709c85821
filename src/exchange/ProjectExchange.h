#pragma once
// Export of a project's table-like sections to spreadsheet files and import back:
// the sections by name, and an import that writes the one changed section file
// through the project's read-back-checked save, or nothing.

#include "exchange/TableMerge.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace rq {

class Project;

// The sections that have a table, by the base name of their file: rtdb, hmidb,
// device, param, datalog, history, alarm.
const std::vector<std::string>& tableSectionNames();
// The section index (SectionTable.h) of a name; -1 when it has no table.
int tableSectionIndex(std::string_view name);
// The table of a section of the project; null for a name without one.
std::unique_ptr<TableExchange> makeSectionTable(Project& project, std::string_view name);

// Parses the CSV text and merges it into the section's table; the step it gives
// is not yet made (rqpdev pushes it on the history after showing the merge).
TableMerge mergeSectionText(Project& project, std::string_view section, std::string_view csvText,
                            bool replace);

struct ImportOptions {
    bool dryRun = false;
    bool replace = false;     // rows the file does not hold are removed
    bool skipInvalid = false; // refused rows are left out and the rest is written
};

struct ImportResult {
    TableMerge merge;
    bool written = false; // the section file was written
    // Why nothing was written though the file could be merged (refused rows, a
    // file the save would change otherwise, a failed write); empty otherwise.
    std::string error;
};

// Merges the CSV text into the section and, unless a dry run, writes its file
// when something changed. Nothing is written when the text cannot be parsed or
// merged, when a row is refused (unless skipInvalid), when the section's file
// could not be read at the open, or when a save would change more of the file
// than the imported rows (a file another program wrote: 'rqpcli resave' first).
ImportResult importSection(Project& project, std::string_view section, std::string_view csvText,
                           const ImportOptions& options);

} // namespace rq

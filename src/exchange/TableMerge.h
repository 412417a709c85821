#pragma once
// The merge of a spreadsheet file with a section's table: which rows of the file
// are new, which change a row of the section, which leave it as it is, and which
// are refused with the message of the section's dialog.
//
// A row stands for the row of the section with the same key; when a key occurs
// more than once, its n-th row of the file stands for its n-th row of the section
// and any further one is new. Header texts are matched by name, so the columns may
// come in any order, but each must be there once and no other.

#include "core/Csv.h"
#include "core/TableExchange.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace rq {

struct RefusedRow {
    std::size_t line = 0;
    std::string reason;
};

struct TableMerge {
    std::size_t added = 0, changed = 0, unchanged = 0, removed = 0;
    std::vector<RefusedRow> refused;
    // A file that cannot be merged at all (no header, a wrong column): the reason.
    std::string error;
    // The step that makes the accepted changes; null when there is none.
    std::unique_ptr<EditCommand> step;

    bool ok() const { return error.empty(); }
    bool changes() const { return step != nullptr; }
};

// The export of a table: its header and every row, CRLF after each.
std::string exportTable(TableExchange& table);

// Merges the records of a CSV file (header first) into the table. Rows of the section
// that the file does not hold stay, unless `replace` (they are then removed). The
// step is made even when rows are refused; the caller decides whether to use it.
TableMerge mergeTable(TableExchange& table, std::string_view csvText, bool replace,
                      const std::string& stepName);

} // namespace rq

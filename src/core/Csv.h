#pragma once
// Comma-separated values as RFC 4180 describes them, in UTF-8: fields separated
// by ',', records ended by CRLF or LF; a field that holds ',', '"', CR or LF is
// written between double quotes with each '"' doubled. Records are written with
// CRLF. On input a leading UTF-8 byte order mark is skipped, blank lines are
// skipped, and a missing line end after the last record is accepted.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace rq {

using CsvRow = std::vector<std::string>;

// One record of a file and the line it starts on (1 = the first line).
struct CsvRecord {
    std::size_t line = 0;
    CsvRow fields;
};

// Reads the records of `text` one by one, each into the same record, whose
// strings are used again. After the last record, or at the first fault, next()
// returns false; failed() tells which, and error() is "line N: reason".
class CsvReader {
public:
    explicit CsvReader(std::string_view text);
    bool next(CsvRecord& record);
    bool failed() const { return !error_.empty(); }
    const std::string& error() const { return error_; }

private:
    bool fail(std::size_t line, const std::string& why);
    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t line_ = 1;
    std::string error_;
};

// Parses `text`. False with "line N: reason" in *error for text that is not
// UTF-8, a quote inside a field that does not start with one, text after a
// closing quote, or a quoted field that never ends; *records then holds nothing.
bool parseCsv(std::string_view text, std::vector<CsvRecord>* records, std::string* error);

// Appends one record ended by CRLF.
void appendCsvRecord(std::string& out, const CsvRow& fields);

} // namespace rq

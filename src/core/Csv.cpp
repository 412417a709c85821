#include "core/Csv.h"

#include "core/TextEncoding.h"

namespace rq {

namespace {

bool needsQuotes(std::string_view field) {
    return field.find_first_of(",\"\r\n") != std::string_view::npos;
}

} // namespace

bool parseCsv(std::string_view text, std::vector<CsvRecord>* records, std::string* error) {
    records->clear();
    auto fail = [&](std::size_t line, const std::string& why) {
        records->clear();
        if (error)
            *error = "line " + std::to_string(line) + ": " + why;
        return false;
    };
    if (text.substr(0, 3) == "\xEF\xBB\xBF")
        text.remove_prefix(3);
    std::size_t line = 1;
    std::size_t i = 0;
    const std::size_t n = text.size();
    while (i < n) {
        // A blank line (LF or CRLF alone) is no record.
        if (text[i] == '\n') {
            ++i, ++line;
            continue;
        }
        if (text[i] == '\r' && i + 1 < n && text[i + 1] == '\n') {
            i += 2, ++line;
            continue;
        }
        CsvRecord record;
        record.line = line;
        const std::size_t recordStart = i;
        bool endOfRecord = false;
        while (!endOfRecord) {
            std::string field;
            if (i < n && text[i] == '"') {
                ++i;
                for (;;) {
                    if (i >= n)
                        return fail(record.line, "a quoted field does not end");
                    char c = text[i++];
                    if (c == '"') {
                        if (i < n && text[i] == '"') {
                            field += '"';
                            ++i;
                            continue;
                        }
                        break;
                    }
                    if (c == '\n')
                        ++line;
                    field += c;
                }
                if (i < n && text[i] != ',' && text[i] != '\n' &&
                    !(text[i] == '\r' && i + 1 < n && text[i + 1] == '\n'))
                    return fail(line, "text after the closing quote of a field");
            } else {
                std::size_t end = i;
                while (end < n && text[end] != ',' && text[end] != '\n' &&
                       !(text[end] == '\r' && end + 1 < n && text[end + 1] == '\n')) {
                    if (text[end] == '"')
                        return fail(line, "a quote inside a field that does not start with one");
                    ++end;
                }
                field.assign(text.substr(i, end - i));
                i = end;
            }
            record.fields.push_back(std::move(field));
            if (i < n && text[i] == ',') {
                ++i;
                continue;
            }
            if (i < n)
                i += text[i] == '\r' ? 2 : 1;
            ++line;
            endOfRecord = true;
        }
        if (!isValidUtf8(text.substr(recordStart, i - recordStart)))
            return fail(record.line, "the text is not UTF-8");
        records->push_back(std::move(record));
    }
    return true;
}

void appendCsvRecord(std::string& out, const CsvRow& fields) {
    for (std::size_t f = 0; f < fields.size(); ++f) {
        if (f)
            out += ',';
        const std::string& field = fields[f];
        if (!needsQuotes(field)) {
            out += field;
            continue;
        }
        out += '"';
        for (char c : field) {
            if (c == '"')
                out += '"';
            out += c;
        }
        out += '"';
    }
    out += "\r\n";
}

} // namespace rq

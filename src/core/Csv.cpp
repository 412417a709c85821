#include "core/Csv.h"

#include "core/TextEncoding.h"

namespace rq {

namespace {

bool needsQuotes(std::string_view field) {
    return field.find_first_of(",\"\r\n") != std::string_view::npos;
}

// Whether the character ends the text of an unquoted field, or may: ',', a line
// end, or a quote (which is wrong there).
bool endsPlainText(char c) {
    return c == ',' || c == '\n' || c == '\r' || c == '"';
}

} // namespace

CsvReader::CsvReader(std::string_view text) : text_(text) {
    if (text_.substr(0, 3) == "\xEF\xBB\xBF")
        text_.remove_prefix(3);
}

bool CsvReader::fail(std::size_t line, const std::string& why) {
    error_ = "line " + std::to_string(line) + ": " + why;
    at_ = text_.size();
    return false;
}

bool CsvReader::next(CsvRecord& record) {
    const std::string_view text = text_;
    const std::size_t n = text.size();
    std::size_t i = at_;
    // A blank line (LF or CRLF alone) is no record.
    for (;;) {
        if (i < n && text[i] == '\n') {
            ++i, ++line_;
            continue;
        }
        if (i + 1 < n && text[i] == '\r' && text[i + 1] == '\n') {
            i += 2, ++line_;
            continue;
        }
        break;
    }
    if (i >= n) {
        at_ = n;
        return false;
    }
    record.line = line_;
    // The fields' strings are used again from record to record.
    std::size_t count = 0;
    auto field = [&]() -> std::string& {
        if (count == record.fields.size())
            record.fields.emplace_back();
        std::string& f = record.fields[count++];
        f.clear();
        return f;
    };
    const std::size_t recordStart = i;
    for (;;) {
        std::string& f = field();
        if (i < n && text[i] == '"') {
            ++i;
            for (;;) {
                if (i >= n)
                    return fail(record.line, "a quoted field does not end");
                char c = text[i++];
                if (c == '"') {
                    if (i < n && text[i] == '"') {
                        f += '"';
                        ++i;
                        continue;
                    }
                    break;
                }
                if (c == '\n')
                    ++line_;
                f += c;
            }
            if (i < n && text[i] != ',' && text[i] != '\n' &&
                !(text[i] == '\r' && i + 1 < n && text[i + 1] == '\n'))
                return fail(line_, "text after the closing quote of a field");
        } else {
            std::size_t end = i;
            for (;;) {
                while (end < n && !endsPlainText(text[end]))
                    ++end;
                if (end < n && text[end] == '"')
                    return fail(line_, "a quote inside a field that does not start with one");
                // A CR alone is text.
                if (end < n && text[end] == '\r' && !(end + 1 < n && text[end + 1] == '\n')) {
                    ++end;
                    continue;
                }
                break;
            }
            f.assign(text.substr(i, end - i));
            i = end;
        }
        if (i < n && text[i] == ',') {
            ++i;
            continue;
        }
        if (i < n)
            i += text[i] == '\r' ? 2 : 1;
        ++line_;
        break;
    }
    record.fields.resize(count);
    if (!isValidUtf8(text.substr(recordStart, i - recordStart)))
        return fail(record.line, "the text is not UTF-8");
    at_ = i;
    return true;
}

bool parseCsv(std::string_view text, std::vector<CsvRecord>* records, std::string* error) {
    records->clear();
    CsvReader reader(text);
    CsvRecord record;
    while (reader.next(record))
        records->push_back(record);
    if (reader.failed()) {
        records->clear();
        if (error)
            *error = reader.error();
        return false;
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

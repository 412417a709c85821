#include "exchange/TableMerge.h"

#include <map>
#include <unordered_map>

namespace rq {

namespace {

std::string keyOf(const CsvRow& row, const std::vector<std::size_t>& keyColumns) {
    // Fields joined with a separator that UTF-8 text cannot hold.
    std::string key;
    for (std::size_t c : keyColumns) {
        key += row[c];
        key += '\xFF';
    }
    return key;
}

std::string joinColumns(const std::vector<std::string>& columns) {
    std::string text;
    appendCsvRecord(text, columns);
    text.resize(text.size() - 2);
    return text;
}

} // namespace

std::string exportTable(TableExchange& table) {
    std::string out;
    appendCsvRecord(out, table.columns());
    for (const CsvRow& row : table.rows())
        appendCsvRecord(out, row);
    return out;
}

TableMerge mergeTable(TableExchange& table, const std::vector<CsvRecord>& records, bool replace,
                      const std::string& stepName) {
    TableMerge merge;
    const std::vector<std::string> columns = table.columns();
    if (records.empty()) {
        merge.error = "the file has no header line (" + joinColumns(columns) + ")";
        return merge;
    }
    // Where each column of the table is in the file.
    const CsvRow& header = records.front().fields;
    std::vector<std::size_t> from(columns.size(), columns.size());
    for (std::size_t f = 0; f < header.size(); ++f) {
        std::size_t c = 0;
        while (c < columns.size() && columns[c] != header[f])
            ++c;
        if (c == columns.size()) {
            merge.error = "line " + std::to_string(records.front().line) + ": unknown column \"" +
                          header[f] + "\" (the columns are " + joinColumns(columns) + ")";
            return merge;
        }
        if (from[c] != columns.size()) {
            merge.error = "line " + std::to_string(records.front().line) + ": column \"" +
                          header[f] + "\" is given twice";
            return merge;
        }
        from[c] = f;
    }
    for (std::size_t c = 0; c < columns.size(); ++c)
        if (from[c] == columns.size()) {
            merge.error = "line " + std::to_string(records.front().line) + ": column \"" +
                          columns[c] + "\" is missing";
            return merge;
        }

    const std::vector<std::size_t> keyColumns = table.keyColumns();
    const std::vector<CsvRow> existing = table.rows();
    // Each key's rows of the section, in order, and how many the file has used.
    std::unordered_map<std::string, std::vector<std::size_t>> byKey;
    byKey.reserve(existing.size());
    for (std::size_t i = 0; i < existing.size(); ++i)
        byKey[keyOf(existing[i], keyColumns)].push_back(i);
    std::unordered_map<std::string, std::size_t> used;
    std::vector<bool> matched(existing.size(), false);

    CsvRow row(columns.size());
    for (std::size_t r = 1; r < records.size(); ++r) {
        const CsvRecord& record = records[r];
        if (record.fields.size() != header.size()) {
            merge.refused.push_back({record.line, std::to_string(record.fields.size()) +
                                                      " fields where the header has " +
                                                      std::to_string(header.size())});
            continue;
        }
        for (std::size_t c = 0; c < columns.size(); ++c)
            row[c] = record.fields[from[c]];
        const std::string key = keyOf(row, keyColumns);
        std::size_t target = TableExchange::kNewRow;
        auto it = byKey.find(key);
        std::size_t* count = nullptr;
        if (it != byKey.end()) {
            count = &used[key];
            if (*count < it->second.size())
                target = it->second[*count];
        }
        if (target != TableExchange::kNewRow && existing[target] == row) {
            ++merge.unchanged;
            matched[target] = true;
            ++*count;
            continue;
        }
        bool same = false;
        if (auto message = table.take(row, target, &same)) {
            merge.refused.push_back({record.line, *message});
            // The row it stands for stays as it is, also with `replace`.
            if (target != TableExchange::kNewRow) {
                matched[target] = true;
                ++*count;
            }
            continue;
        }
        if (target == TableExchange::kNewRow) {
            ++merge.added;
        } else {
            matched[target] = true;
            ++*count;
            ++(same ? merge.unchanged : merge.changed);
        }
    }
    if (replace)
        for (std::size_t i = 0; i < existing.size(); ++i)
            if (!matched[i]) {
                table.drop(i);
                ++merge.removed;
            }
    merge.step = table.step(stepName);
    return merge;
}

} // namespace rq

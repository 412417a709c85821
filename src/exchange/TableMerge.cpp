#include "exchange/TableMerge.h"

#include <functional>
#include <string_view>

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

constexpr std::size_t kNone = TableExchange::kNewRow;

// The section's rows by key, in order: for each key the first of its rows that no
// row of the file has stood for yet. Open addressing over the rows' keys, which
// must outlive the table.
class RowsByKey {
public:
    explicit RowsByKey(const std::vector<std::string>& keys)
        : keys_(keys), after_(keys.size(), kNone) {
        std::size_t size = 16;
        while (size < 2 * keys.size())
            size *= 2;
        slots_.resize(size);
        // Backwards, so that each key ends with its first row, the others chained.
        for (std::size_t i = keys.size(); i-- > 0;) {
            const std::size_t h = hash(keys[i]);
            Slot& slot = find(keys[i], h);
            if (slot.row != kNone)
                after_[i] = slot.next;
            slot.row = i;
            slot.hash = h;
            slot.next = i;
        }
    }
    // The next row of the key not stood for (kNone when there is none); `take`
    // marks it stood for.
    std::size_t next(std::string_view key) {
        const Slot& slot = find(key, hash(key));
        return slot.row == kNone ? kNone : slot.next;
    }
    void take(std::size_t row) {
        Slot& slot = find(keys_[row], hash(keys_[row]));
        slot.next = after_[row];
    }

private:
    struct Slot {
        std::size_t row = kNone; // a row with the key (none: the slot is free)
        std::size_t next = kNone;
        std::size_t hash = 0;
    };
    static std::size_t hash(std::string_view key) { return std::hash<std::string_view>{}(key); }
    // The key's slot, or the free slot where it would go.
    Slot& find(std::string_view key, std::size_t h) {
        const std::size_t mask = slots_.size() - 1;
        for (std::size_t at = h & mask;; at = (at + 1) & mask) {
            Slot& slot = slots_[at];
            if (slot.row == kNone || (slot.hash == h && keys_[slot.row] == key))
                return slot;
        }
    }

    const std::vector<std::string>& keys_;
    std::vector<std::size_t> after_; // the next row with the same key
    std::vector<Slot> slots_;
};

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
    std::vector<std::string> keys(existing.size());
    for (std::size_t i = 0; i < existing.size(); ++i)
        keys[i] = keyOf(existing[i], keyColumns);
    RowsByKey byKey(keys);
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
        const std::size_t target = byKey.next(keyOf(row, keyColumns));
        // The file's row stands for that row of the section.
        auto standFor = [&] {
            matched[target] = true;
            byKey.take(target);
        };
        if (target != kNone && existing[target] == row) {
            ++merge.unchanged;
            standFor();
            continue;
        }
        bool same = false;
        if (auto message = table.take(row, target, &same)) {
            merge.refused.push_back({record.line, *message});
            // The row it stands for stays as it is, also with `replace`.
            if (target != kNone)
                standFor();
            continue;
        }
        if (target == kNone) {
            ++merge.added;
        } else {
            standFor();
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

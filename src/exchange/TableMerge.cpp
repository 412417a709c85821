#include "exchange/TableMerge.h"

#include <cstdint>
#include <functional>
#include <string_view>

namespace rq {

namespace {

constexpr std::size_t kNone = TableExchange::kNewRow;

// The section's rows by key, in order: for each key the first of its rows that no
// row of the file has stood for yet. Open addressing over the hashes of the key
// cells; the cells are compared where they are, in the table and in the file.
// A key is named by its first row.
class RowsByKey {
    // The cells of a row of the table.
    struct RowCells {
        const TableExchange& table;
        std::size_t row;
        std::string_view operator()(std::size_t column) const { return table.cell(row, column); }
    };
    static constexpr std::uint32_t kFree = UINT32_MAX;

public:
    RowsByKey(const TableExchange& table, std::size_t count,
              const std::vector<std::size_t>& keyColumns)
        : table_(table), keyColumns_(keyColumns), next_(count), after_(count, kFree), sole_(count) {
        std::size_t size = 16;
        while (size < 2 * count)
            size *= 2;
        slots_.resize(size);
        std::vector<std::size_t> hashes(count);
        for (std::size_t i = 0; i < count; ++i)
            hashes[i] = hash(RowCells{table_, i});
        // Backwards, so that each key ends named by its first row, the others
        // chained. The slot of a row some rows on is fetched ahead.
        constexpr std::size_t kAhead = 16;
        for (std::size_t i = count; i-- > 0;) {
            if (i >= kAhead)
                __builtin_prefetch(&slots_[hashes[i - kAhead] & (size - 1)]);
            Slot& slot = find(RowCells{table_, i}, hashes[i]);
            after_[i] = slot.row;
            slot.row = static_cast<std::uint32_t>(i);
            slot.hash = static_cast<std::uint32_t>(hashes[i]);
            next_[i] = static_cast<std::uint32_t>(i);
        }
        std::vector<bool> first(count, true);
        for (std::size_t i = 0; i < count; ++i)
            if (after_[i] != kFree)
                first[after_[i]] = false;
        for (std::size_t i = 0; i < count; ++i)
            sole_[i] = first[i] && after_[i] == kFree;
    }
    // Whether the row is the one row of its key.
    bool sole(std::size_t row) const { return sole_[row]; }
    // The key whose cells are `cells(column)`; kNone when no row has it.
    template <class Cells> std::size_t key(const Cells& cells) {
        const Slot& slot = find(cells, hash(cells));
        return slot.row == kFree ? kNone : slot.row;
    }
    // The key's next row not stood for (kNone when there is none, or no key);
    // `take` marks it stood for.
    std::size_t next(std::size_t key) const {
        return key == kNone || next_[key] == kFree ? kNone : next_[key];
    }
    void take(std::size_t key) { next_[key] = after_[next_[key]]; }

private:
    struct Slot {
        std::uint32_t row = kFree; // the key's first row (free: the slot is free)
        std::uint32_t hash = 0;
    };
    template <class Cells> std::size_t hash(const Cells& cells) const {
        std::size_t h = 0;
        for (std::size_t c : keyColumns_)
            h = (h ^ std::hash<std::string_view>{}(cells(c))) * 0x100000001b3ULL;
        return h;
    }
    // The key's slot, or the free slot where it would go.
    template <class Cells> Slot& find(const Cells& cells, std::size_t h) {
        const std::size_t mask = slots_.size() - 1;
        const auto tag = static_cast<std::uint32_t>(h);
        for (std::size_t at = h & mask;; at = (at + 1) & mask) {
            Slot& slot = slots_[at];
            if (slot.row == kFree || (slot.hash == tag && sameKey(slot.row, cells)))
                return slot;
        }
    }
    template <class Cells> bool sameKey(std::size_t row, const Cells& cells) const {
        for (std::size_t c : keyColumns_)
            if (table_.cell(row, c) != cells(c))
                return false;
        return true;
    }

    const TableExchange& table_;
    const std::vector<std::size_t>& keyColumns_;
    std::vector<std::uint32_t> next_;  // for a key's first row: its next row not stood for
    std::vector<std::uint32_t> after_; // the next row with the same key
    std::vector<bool> sole_;
    std::vector<Slot> slots_;
};

std::string joinColumns(const std::vector<std::string>& columns) {
    std::string text;
    appendCsvRecord(text, columns);
    text.resize(text.size() - 2);
    return text;
}

// Where each column of the table is in the file, from its header; the reason
// when the header does not name each column once.
std::string columnsOfHeader(const std::vector<std::string>& columns, const CsvRecord& header,
                            std::vector<std::size_t>& from) {
    from.assign(columns.size(), columns.size());
    const std::string line = "line " + std::to_string(header.line);
    for (std::size_t f = 0; f < header.fields.size(); ++f) {
        std::size_t c = 0;
        while (c < columns.size() && columns[c] != header.fields[f])
            ++c;
        if (c == columns.size())
            return line + ": unknown column \"" + header.fields[f] + "\" (the columns are " +
                   joinColumns(columns) + ")";
        if (from[c] != columns.size())
            return line + ": column \"" + header.fields[f] + "\" is given twice";
        from[c] = f;
    }
    for (std::size_t c = 0; c < columns.size(); ++c)
        if (from[c] == columns.size())
            return line + ": column \"" + columns[c] + "\" is missing";
    return {};
}

} // namespace

std::string exportTable(TableExchange& table) {
    std::string out;
    appendCsvRecord(out, table.columns());
    for (const CsvRow& row : table.rows())
        appendCsvRecord(out, row);
    return out;
}

TableMerge mergeTable(TableExchange& table, std::string_view csvText, bool replace,
                      const std::string& stepName) {
    TableMerge merge;
    // The records are read one by one into the same strings. A fault anywhere in
    // the file is its one error, before any other.
    CsvReader reader(csvText);
    CsvRecord record;
    auto fileFault = [&] {
        TableMerge faulty;
        faulty.error = reader.error();
        return faulty;
    };
    const std::vector<std::string> columns = table.columns();
    if (!reader.next(record)) {
        if (reader.failed())
            return fileFault();
        merge.error = "the file has no header line (" + joinColumns(columns) + ")";
        return merge;
    }
    const std::size_t fieldCount = record.fields.size();
    std::vector<std::size_t> from;
    merge.error = columnsOfHeader(columns, record, from);
    if (!merge.ok()) {
        while (reader.next(record)) {
        }
        return reader.failed() ? fileFault() : std::move(merge);
    }

    const std::vector<std::size_t> keyColumns = table.keyColumns();
    const std::size_t count = table.prepareRows();
    RowsByKey byKey(table, count, keyColumns);
    std::vector<bool> matched(count, false);

    CsvRow row(columns.size());
    std::size_t guess = 0;
    while (reader.next(record)) {
        if (record.fields.size() != fieldCount) {
            merge.refused.push_back({record.line, std::to_string(record.fields.size()) +
                                                      " fields where the header has " +
                                                      std::to_string(fieldCount)});
            continue;
        }
        const auto field = [&](std::size_t c) { return std::string_view(record.fields[from[c]]); };
        // A file keeps the section's order where it was not edited: the row after
        // the last one stood for is tried first.
        auto isGuess = [&] {
            if (guess >= count || !byKey.sole(guess) || matched[guess])
                return false;
            for (std::size_t c : keyColumns)
                if (table.cell(guess, c) != field(c))
                    return false;
            return true;
        };
        const std::size_t key = isGuess() ? guess : byKey.key(field);
        const std::size_t target = byKey.next(key);
        // The file's row stands for that row of the section.
        auto standFor = [&] {
            matched[target] = true;
            byKey.take(key);
            guess = target + 1;
        };
        auto same = [&] {
            for (std::size_t c = 0; c < columns.size(); ++c)
                if (table.cell(target, c) != field(c))
                    return false;
            return true;
        };
        if (target != kNone && same()) {
            ++merge.unchanged;
            standFor();
            continue;
        }
        for (std::size_t c = 0; c < columns.size(); ++c)
            row[c] = record.fields[from[c]];
        bool unchanged = false;
        if (auto message = table.take(row, target, &unchanged)) {
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
            ++(unchanged ? merge.unchanged : merge.changed);
        }
    }
    if (reader.failed())
        return fileFault();
    if (replace)
        for (std::size_t i = 0; i < count; ++i)
            if (!matched[i]) {
                table.drop(i);
                ++merge.removed;
            }
    merge.step = table.step(stepName);
    return merge;
}

} // namespace rq

#pragma once
// Taking rows out of a list and putting them back where they were: the shared part
// of every step that deletes selected rows (the removed items are kept, moved, with
// their positions, so that undo restores the list exactly).
#include <cstddef>
#include <utility>
#include <vector>

namespace rq {

// Moves the items at `rows` (ascending, each < items.size()) out of `items`, in order.
template <class T>
std::vector<T> takeRows(std::vector<T>& items, const std::vector<std::size_t>& rows) {
    std::vector<T> taken;
    taken.reserve(rows.size());
    std::vector<T> kept;
    kept.reserve(items.size() - rows.size());
    std::size_t next = 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (next < rows.size() && rows[next] == i) {
            taken.push_back(std::move(items[i]));
            ++next;
        } else {
            kept.push_back(std::move(items[i]));
        }
    }
    items = std::move(kept);
    return taken;
}

// Puts what `takeRows(items, rows)` returned back at its positions; `taken` is emptied.
template <class T>
void putRowsBack(std::vector<T>& items, const std::vector<std::size_t>& rows,
                 std::vector<T>& taken) {
    std::vector<T> merged;
    merged.reserve(items.size() + taken.size());
    std::size_t kept = 0, next = 0;
    while (kept < items.size() || next < taken.size()) {
        if (next < taken.size() && rows[next] == merged.size())
            merged.push_back(std::move(taken[next++]));
        else
            merged.push_back(std::move(items[kept++]));
    }
    items = std::move(merged);
    taken.clear();
}

} // namespace rq

#include "sections/hmiwindow/HmiWindowEdits.h"

namespace rq {

RemoveWindows::RemoveWindows(std::string name, HmiWindowSection& s, std::vector<std::size_t> rows)
    : EditCommand(std::move(name), kHmiWindowSectionIndex), s_(s), rows_(std::move(rows)) {}

void RemoveWindows::redo() {
    auto& items = s_.windows;
    removed_.clear();
    removed_.reserve(rows_.size());
    std::vector<HmiWindow> kept;
    kept.reserve(items.size() - rows_.size());
    std::size_t next = 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (next < rows_.size() && rows_[next] == i) {
            removed_.push_back(std::move(items[i]));
            ++next;
        } else {
            kept.push_back(std::move(items[i]));
        }
    }
    items = std::move(kept);
}

void RemoveWindows::undo() {
    auto& items = s_.windows;
    std::vector<HmiWindow> merged;
    merged.reserve(items.size() + removed_.size());
    std::size_t kept = 0, next = 0;
    while (kept < items.size() || next < removed_.size()) {
        if (next < removed_.size() && rows_[next] == merged.size())
            merged.push_back(std::move(removed_[next++]));
        else
            merged.push_back(std::move(items[kept++]));
    }
    items = std::move(merged);
    removed_.clear();
}

} // namespace rq

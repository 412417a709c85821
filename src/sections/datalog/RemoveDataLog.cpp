#include "sections/datalog/DataLogEdits.h"

#include <iterator>

namespace rq {

RemoveDataLog::RemoveDataLog(std::string name, DataLogSection& s, std::size_t index)
    : EditCommand(std::move(name), kDataLogSectionIndex), s_(s), index_(index) {}

void RemoveDataLog::redo() {
    auto at = std::next(s_.logs.begin(), static_cast<std::ptrdiff_t>(index_));
    held_ = std::move(*at);
    s_.logs.erase(at);
}

void RemoveDataLog::undo() {
    s_.logs.insert(std::next(s_.logs.begin(), static_cast<std::ptrdiff_t>(index_)),
                   std::move(held_));
}

} // namespace rq

#include "sections/datalog/DataLogEdits.h"

#include <iterator>

namespace rq {

InsertDataLog::InsertDataLog(std::string name, DataLogSection& s, std::size_t index, DataLog log)
    : EditCommand(std::move(name), kDataLogSectionIndex), s_(s), index_(index),
      held_(std::move(log)) {}

void InsertDataLog::redo() {
    s_.logs.insert(std::next(s_.logs.begin(), static_cast<std::ptrdiff_t>(index_)),
                   std::move(held_));
}

void InsertDataLog::undo() {
    auto at = std::next(s_.logs.begin(), static_cast<std::ptrdiff_t>(index_));
    held_ = std::move(*at);
    s_.logs.erase(at);
}

} // namespace rq

#include "sections/datalog/DataLogEdits.h"

#include <utility>

namespace rq {

ChangeDataLogSettings::ChangeDataLogSettings(std::string name, DataLogSection& s, std::size_t index,
                                             DataLog settings)
    : EditCommand(std::move(name), kDataLogSectionIndex), s_(s), index_(index),
      other_(std::move(settings)) {
    other_.data.clear();
}

void ChangeDataLogSettings::redo() {
    DataLog& log = s_.logs[index_];
    std::swap(log.name, other_.name);
    std::swap(log.period, other_.period);
    std::swap(log.period_var, other_.period_var);
    std::swap(log.control_var, other_.control_var);
    std::swap(log.size, other_.size);
    std::swap(log.dbname, other_.dbname);
}

void ChangeDataLogSettings::undo() {
    redo();
}

} // namespace rq

#include "core/RowPositions.h"
#include "sections/modules/ModulesEdits.h"

namespace rq {

RemoveModules::RemoveModules(std::string name, ModulesSection& s, std::vector<std::size_t> rows)
    : EditCommand(std::move(name), kModulesSectionIndex), s_(s), rows_(std::move(rows)) {}

void RemoveModules::redo() {
    auto& modules = s_.modules();
    removed_ = takeRows(modules, rows_);
}

void RemoveModules::undo() {
    auto& modules = s_.modules();
    putRowsBack(modules, rows_, removed_);
}

} // namespace rq

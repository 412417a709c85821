#include "sections/modules/ModulesEdits.h"

#include <utility>

namespace rq {

ReplaceModule::ReplaceModule(std::string name, ModulesSection& s, std::size_t index,
                             UserModule module)
    : EditCommand(std::move(name), kModulesSectionIndex), s_(s), index_(index),
      other_(std::move(module)) {}

void ReplaceModule::redo() {
    std::swap(s_.modules()[index_], other_);
}

void ReplaceModule::undo() {
    redo();
}

} // namespace rq

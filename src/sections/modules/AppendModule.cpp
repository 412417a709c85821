#include "sections/modules/ModulesEdits.h"

namespace rq {

AppendModule::AppendModule(std::string name, ModulesSection& s, UserModule module)
    : EditCommand(std::move(name), kModulesSectionIndex), s_(s), module_(std::move(module)) {}

void AppendModule::redo() {
    s_.modules().push_back(module_);
}

void AppendModule::undo() {
    s_.modules().pop_back();
}

} // namespace rq

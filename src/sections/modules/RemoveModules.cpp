#include "sections/modules/ModulesEdits.h"

namespace rq {

RemoveModules::RemoveModules(std::string name, ModulesSection& s, std::vector<std::size_t> rows)
    : EditCommand(std::move(name), kModulesSectionIndex), s_(s), rows_(std::move(rows)) {}

void RemoveModules::redo() {
    auto& modules = s_.modules();
    removed_.clear();
    removed_.reserve(rows_.size());
    std::vector<UserModule> kept;
    kept.reserve(modules.size() - rows_.size());
    std::size_t next = 0;
    for (std::size_t i = 0; i < modules.size(); ++i) {
        if (next < rows_.size() && rows_[next] == i) {
            removed_.push_back(std::move(modules[i]));
            ++next;
        } else {
            kept.push_back(std::move(modules[i]));
        }
    }
    modules = std::move(kept);
}

void RemoveModules::undo() {
    auto& modules = s_.modules();
    std::vector<UserModule> merged;
    merged.reserve(modules.size() + removed_.size());
    std::size_t kept = 0, next = 0;
    while (kept < modules.size() || next < removed_.size()) {
        if (next < removed_.size() && rows_[next] == merged.size())
            merged.push_back(std::move(removed_[next++]));
        else
            merged.push_back(std::move(modules[kept++]));
    }
    modules = std::move(merged);
    removed_.clear();
}

} // namespace rq

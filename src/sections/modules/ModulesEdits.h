#pragma once
// The steps that the module commands push on the project's history. A module has
// no file of its own: every step changes modules.xml only. Modules are addressed
// by their positions, which a linear history keeps valid; a step holds only what
// it took out or overwrote.

#include "core/EditCommand.h"
#include "core/SectionTable.h"
#include "sections/modules/ModulesSection.h"

#include <cstddef>
#include <vector>

namespace rq {

inline constexpr int kModulesSectionIndex = sectionIndexOf("modules.xml");

// One module appended at the end of the list.
class AppendModule : public EditCommand {
public:
    AppendModule(std::string name, ModulesSection& s, UserModule module);
    void redo() override;
    void undo() override;

private:
    ModulesSection& s_;
    UserModule module_;
};

// Modules taken out by position; undo puts each back where it was.
class RemoveModules : public EditCommand {
public:
    // `rows` in increasing order, each below the list's size.
    RemoveModules(std::string name, ModulesSection& s, std::vector<std::size_t> rows);
    void redo() override;
    void undo() override;

private:
    ModulesSection& s_;
    std::vector<std::size_t> rows_;
    std::vector<UserModule> removed_;
};

// One module's fields overwritten.
class ReplaceModule : public EditCommand {
public:
    ReplaceModule(std::string name, ModulesSection& s, std::size_t index, UserModule module);
    void redo() override;
    void undo() override;

private:
    ModulesSection& s_;
    std::size_t index_;
    UserModule other_;
};

} // namespace rq

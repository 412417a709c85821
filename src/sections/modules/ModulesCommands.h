#pragma once
// The commands of the module editor: the modules of modules.xml are the rows of
// the list below "module  configuration". Each command runs the whole flow (the
// dialog, the delete question) and pushes its change as one step on the
// project's history (ModulesEdits.h). A row stands for the module at its
// position, so modules of one name are still told apart.

#include "core/MessageSink.h"
#include "core/UndoHistory.h"
#include "sections/modules/ModulesForms.h"

#include <cstddef>
#include <vector>

namespace rq {

// "Module Setting" as the commands see it: shown modally with the form's values,
// false on Cancel; on OK it runs validateModuleForm and, while that returns a
// message, shows it (stop icon) and stays open. Its "Compile" button compiles
// what the fields hold at that moment, without OK.
class ModuleDialogHost {
public:
    virtual ~ModuleDialogHost() = default;
    virtual bool moduleDialog(ModuleForm& form) = 0;
};

struct ModulesEditor {
    ModulesSection& section;
    ModuleDialogHost& dialogs;
    MessageSink& sink;
    UndoHistory& history;
};

// Opens the empty dialog and appends the module.
bool addModule(const ModulesEditor& ed);
// Opens the dialog with the module of the first selected row and stores it back;
// OK without a change is no step.
bool modifyModule(const ModulesEditor& ed, const std::vector<std::size_t>& rows);
// With at least one row selected, asks once and removes the modules of all
// selected rows; with none, does nothing.
bool deleteModules(const ModulesEditor& ed, const std::vector<std::size_t>& rows);

} // namespace rq

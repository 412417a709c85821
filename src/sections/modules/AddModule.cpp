#include "sections/modules/ModulesCommands.h"
#include "sections/modules/ModulesEdits.h"

namespace rq {

bool addModule(const ModulesEditor& ed) {
    ModuleForm form;
    if (!ed.dialogs.moduleDialog(form))
        return false;
    ed.history.push(std::make_unique<AppendModule>("Add Module", ed.section, moduleFromForm(form)));
    return true;
}

} // namespace rq

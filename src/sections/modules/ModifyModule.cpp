#include "core/SectionEditor.h"
#include "sections/modules/ModulesCommands.h"
#include "sections/modules/ModulesEdits.h"

namespace rq {

bool modifyModule(const ModulesEditor& ed, const std::vector<std::size_t>& rows) {
    const auto& modules = ed.section.modules();
    std::optional<std::size_t> row = firstSelectedRow(rows, modules.size());
    if (!row)
        return false;
    ModuleForm form = moduleFormFromRecord(modules[*row]);
    if (!ed.dialogs.moduleDialog(form))
        return false;
    UserModule changed = moduleFromForm(form);
    if (changed == modules[*row])
        return false;
    ed.history.push(
        std::make_unique<ReplaceModule>("Modify Module", ed.section, *row, std::move(changed)));
    return true;
}

} // namespace rq

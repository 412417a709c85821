#include "sections/modules/ModulesForms.h"

#include "core/StorableValue.h"

namespace rq {

std::optional<std::string> validateModuleForm(const ModuleForm& form) {
    if (form.name.empty())
        return std::string(moduletext::kNameEmpty);
    return checkStorableValue("Module Name", form.name);
}

std::string appendSourceFiles(std::string field, const std::vector<std::string>& paths) {
    for (const std::string& p : paths) {
        field += '"';
        field += p;
        field += "\" ";
    }
    return field;
}

std::string_view moduleCell(const UserModule& m, int column) {
    switch (column) {
    case 0:
        return m.name;
    case 1:
        return m.defines;
    case 2:
        return m.srcfiles;
    case 3:
        return m.params;
    case 4:
        return m.enable ? moduletext::kEnabled : moduletext::kDisabled;
    default:
        return {};
    }
}

} // namespace rq

#include "sections/param/ParamForms.h"

#include "core/StorableValue.h"

namespace rq {

std::optional<std::string> validateParamForm(const ParamForm& form,
                                             std::optional<DataShape> target) {
    if (form.dbname.empty() || form.dataname.empty())
        return std::string(paramtext::kChooseData);
    if (auto m = checkStorableValue("Database Name", form.dbname))
        return m;
    if (auto m = checkStorableValue("Realtime Data Name", form.dataname))
        return m;
    if (auto m = checkStorableValue("Initial Value", form.value))
        return m;
    if (target)
        return checkInitialValue(target->typeIndex, target->length, form.value);
    return std::nullopt;
}

std::string_view paramCell(const ParamItem& item, int column) {
    switch (column) {
    case 0:
        return item.dbname;
    case 1:
        return item.dataname;
    case 2:
        return item.value;
    default:
        return {};
    }
}

} // namespace rq

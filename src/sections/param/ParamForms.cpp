#include "sections/param/ParamForms.h"

#include "core/StorableValue.h"

namespace rq {

std::optional<std::string> validateParamForm(const ParamForm& form) {
    if (form.dbname.empty() || form.dataname.empty())
        return std::string(paramtext::kChooseData);
    if (auto m = checkStorableValue("Database Name", form.dbname))
        return m;
    if (auto m = checkStorableValue("Realtime Data Name", form.dataname))
        return m;
    // The value is kept as typed: it is not checked against the chosen data's type.
    return checkStorableValue("Initial Value", form.value);
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

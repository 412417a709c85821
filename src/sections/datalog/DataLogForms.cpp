#include "sections/datalog/DataLogForms.h"

#include "core/StorableValue.h"

namespace rq {

using namespace datalogtext;

DataLogForm dataLogFormFromRecord(const DataLog& log) {
    return DataLogForm{log.kind, log.name,   log.period,     log.period_var,
                       log.size, log.dbname, log.control_var};
}

DataLog dataLogFromForm(const DataLogForm& form) {
    DataLog log;
    log.kind = form.kind;
    log.name = form.name;
    log.period = form.period;
    log.period_var = form.period_var;
    log.control_var = form.control_var;
    log.size = form.size;
    if (form.kind == DataLogKind::Database)
        log.dbname = form.dbname;
    return log;
}

std::optional<std::string> validateDataLogForm(const DataLogForm& form) {
    if (form.name.empty())
        return std::string(kNoName);
    if (form.period.empty())
        return std::string(kNoPeriod);
    if (form.size.empty())
        return std::string(kNoSize);
    if (auto m = checkStorableValue("Record Name", form.name))
        return m;
    if (auto m = checkStorableValue("Default Record Period", form.period))
        return m;
    if (auto m = checkStorableValue("Period Variable", form.period_var))
        return m;
    if (auto m = checkStorableValue("Record Data Size", form.size))
        return m;
    if (form.kind == DataLogKind::Database)
        if (auto m = checkStorableValue("Realtime Database", form.dbname))
            return m;
    return checkStorableValue("Control Variable", form.control_var);
}

std::optional<std::string> validateLogDataForm(const LogDataForm& form) {
    if (auto m = checkStorableValue("Realtime Data", form.dataname))
        return m;
    return checkStorableValue("Database Name", form.dbname);
}

std::string_view logDataCell(const DataRef& ref, int column) {
    switch (column) {
    case 0:
        return ref.dbname;
    case 1:
        return ref.dataname;
    default:
        return {};
    }
}

} // namespace rq

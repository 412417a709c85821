#include "sections/alarm/AlarmForms.h"

#include "core/StorableValue.h"

namespace rq {

std::optional<std::string> validateAlarmConfigForm(const AlarmConfigForm& f) {
    bool nonZero = false;
    for (char c : f.bufferSize) {
        if (c < '0' || c > '9')
            return std::string(alarmtext::kBadBufferSize);
        nonZero = nonZero || c != '0';
    }
    if (!nonZero)
        return std::string(alarmtext::kBadBufferSize);
    return std::nullopt;
}

std::optional<std::string> validateAlarmGroupForm(const AlarmGroupForm& f) {
    if (f.name.empty())
        return std::string(alarmtext::kInputGroup);
    return checkStorableValue("Alarm Group", f.name);
}

AlarmDataForm alarmDataFormFromRecord(const AlarmDataItem& item) {
    AlarmDataForm f{item.dbname, item.dataname, item.priority, item.status_var, {}};
    for (int i = 0; i < kAlarmSlotCount; ++i) {
        const AlarmCondition& c = item.slots[i];
        if (c.set)
            f.conditions[i] = {c.enable_var, c.info, isAnalogSlot(i) ? c.value_var : std::string(),
                               c.restore_info};
    }
    return f;
}

AlarmDataItem alarmDataFromForm(const AlarmDataForm& f) {
    AlarmDataItem item{f.dbname, f.dataname, f.priority, f.statusVar, {}};
    for (int i = 0; i < kAlarmSlotCount; ++i) {
        const AlarmConditionForm& c = f.conditions[i];
        const bool set =
            isAnalogSlot(i) ? !c.limit.empty() : !c.variable.empty() || !c.text.empty();
        if (set)
            item.slots[i] = {true, c.variable, isAnalogSlot(i) ? c.limit : std::string(), c.text,
                             c.restoreText};
    }
    return item;
}

std::optional<std::string> validateAlarmDataForm(const AlarmDataForm& f) {
    using namespace alarmtext;
    if (f.dbname.empty() || f.dataname.empty())
        return std::string(kChooseData);
    const AlarmDataItem item = alarmDataFromForm(f);
    const std::pair<std::string, const std::string*> basic[] = {
        {"Database", &item.dbname},
        {"Realtime Data", &item.dataname},
        {"Priority", &item.priority},
        {"Status Variable", &item.status_var},
    };
    for (const auto& [label, value] : basic)
        if (auto m = checkStorableValue(label, *value))
            return m;
    for (int i = 0; i < kAlarmSlotCount; ++i) {
        const AlarmCondition& c = item.slots[i];
        if (!c.set)
            continue;
        std::string row = kSlotRows[i];
        row.pop_back(); // the colon
        const std::pair<const char*, const std::string*> cells[] = {
            {kVariable, &c.enable_var},
            {kAlarmText, &c.info},
            {kLimitedValue, &c.value_var},
            {kRestoreText, &c.restore_info},
        };
        for (const auto& [column, value] : cells)
            if (auto m = checkStorableValue(row + " " + column, *value))
                return m;
    }
    return std::nullopt;
}

std::string_view alarmCell(const AlarmDataItem& item, int column) {
    switch (column) {
    case 0:
        return item.dbname;
    case 1:
        return item.dataname;
    case 2:
        return item.priority;
    case 3:
        return item.status_var;
    default:
        return {};
    }
}

} // namespace rq

#include "sections/rtdb/RtdbForms.h"

#include "core/DataTypes.h"
#include "core/StorableValue.h"
#include "core/ValueChecks.h"
#include "core/Xml.h"
#include "sections/rtdb/RtdbListModel.h"

#include <string>

namespace rq {

namespace {
int sizeOfIndex(int typeIndex) {
    return typeIndex < 0 || typeIndex >= DataTypeTable::kCount ? 0
                                                               : DataTypeTable::row(typeIndex).size;
}
} // namespace

std::optional<std::string> validateDataForm(const DataForm& form) {
    if (form.alias) {
        if (form.name.empty() || form.aliasText.empty())
            return std::string(rtdbtext::kAliasMissing);
        if (auto m = checkStorableValue("Data", form.name))
            return m;
        return checkStorableValue("Alias", form.aliasText);
    }
    if (form.name.empty())
        return std::string(rtdbtext::kNameMissing);
    if (form.length < 1)
        return std::string(rtdbtext::kLengthError);
    if (form.typeIndex == 0 && form.length >= 8)
        return std::string(rtdbtext::kBitLengthError);
    if (auto m = checkStorableValue("Data", form.name))
        return m;
    if (auto m = checkStorableValue("Initial Value", form.init))
        return m;
    if (auto m = checkStorableValue("Description", form.description))
        return m;
    return checkInitialValue(form.typeIndex, form.length, form.init);
}

std::optional<std::string> validateDatabaseForm(const DatabaseForm& form) {
    return checkStorableValue("Database", form.name);
}

std::optional<std::string> validateDataGroupForm(const DataGroupForm& form) {
    return checkStorableValue("Data Group", form.name);
}

std::optional<std::string> validateBatchDataForm(const BatchDataForm& form) {
    if (auto message = validateDataForm(form.data))
        return message;
    // A range that would fill the memory is refused before anything is made.
    if (static_cast<long long>(form.to) - form.from + 1 > kMaxBatchData)
        return std::string(kBatchTooLargeMessage);
    return std::nullopt;
}

bool lengthEditable(const DataForm& form) {
    return sizeOfIndex(form.typeIndex) == 0;
}

void applyTypeSelection(DataForm& form) {
    int size = sizeOfIndex(form.typeIndex);
    if (size > 0)
        form.length = size;
}

DataForm newDataForm() {
    return DataForm{};
}

DataForm dataFormFromItem(const DataItem& item) {
    DataForm form;
    form.name = std::string(rtdbListCell(item, kListName));
    form.typeIndex = DataTypeTable::indexOfShown(rtdbListCell(item, kListType));
    std::string_view length = rtdbListCell(item, kListLength);
    form.length = length.empty() ? sizeOfIndex(form.typeIndex) : parseDecimal(length);
    form.init = std::string(rtdbListCell(item, kListInit));
    form.aliasText = std::string(rtdbListCell(item, kListAlias));
    form.alias = !form.aliasText.empty();
    form.description = std::string(rtdbListCell(item, kListDescription));
    return form;
}

DataItem itemFromForm(const DataForm& form) {
    if (form.alias)
        return DataItem::makeAlias(form.name, form.aliasText);
    return DataItem::makeData(form.name, DataTypeTable::keywordAt(form.typeIndex),
                              std::to_string(form.length), form.init, form.description);
}

} // namespace rq

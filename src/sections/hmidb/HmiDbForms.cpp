#include "sections/hmidb/HmiDbForms.h"

#include "core/DataTypes.h"
#include "core/StorableValue.h"
#include "core/ValueChecks.h"
#include "core/Xml.h"

namespace rq {

namespace {

int sizeOfIndex(int typeIndex) {
    return typeIndex < 0 || typeIndex >= DataTypeTable::kCount ? 0
                                                               : DataTypeTable::row(typeIndex).size;
}

} // namespace

std::optional<std::string> validateIoDataForm(const IoDataForm& form) {
    if (form.name.empty() || form.dbname.empty() || form.dataname.empty())
        return std::string(hmidbtext::kIoMissing);
    if (form.period <= 0)
        return std::string(hmidbtext::kPeriodError);
    if (auto m = checkStorableValue("Data Name", form.name))
        return m;
    if (auto m = checkStorableValue("Database Name", form.dbname))
        return m;
    return checkStorableValue("Variable Name", form.dataname);
}

std::optional<std::string> validateMemoryDataForm(const MemoryDataForm& form) {
    if (form.name.empty())
        return std::string(hmidbtext::kNameMissing);
    if (form.length < 1)
        return std::string(hmidbtext::kLengthError);
    if (form.typeIndex == 0 && form.length >= 8)
        return std::string(hmidbtext::kBitLengthError);
    if (auto m = checkStorableValue("Data Name", form.name))
        return m;
    if (auto m = checkStorableValue("Initial value", form.init))
        return m;
    return checkInitialValue(form.typeIndex, form.length, form.init);
}

std::optional<std::string> validateHmiGroupForm(const HmiGroupForm& form) {
    return checkStorableValue("Data Group", form.name);
}

bool lengthEditable(const MemoryDataForm& form) {
    return sizeOfIndex(form.typeIndex) == 0;
}

void applyTypeSelection(MemoryDataForm& form) {
    if (int size = sizeOfIndex(form.typeIndex); size > 0)
        form.length = size;
}

IoDataForm ioFormFromItem(const HmiIoItem& item) {
    return IoDataForm{item.name, item.dbname, item.dataname, item.period};
}

HmiIoItem ioItemFromForm(const IoDataForm& form) {
    return HmiIoItem{form.name, form.dbname, form.dataname, form.period};
}

MemoryDataForm memoryFormFromItem(const HmiMemoryItem& item) {
    MemoryDataForm form;
    form.name = item.name;
    form.typeIndex = DataTypeTable::indexOfKeyword(item.type);
    form.length = item.length.empty() ? sizeOfIndex(form.typeIndex) : parseDecimal(item.length);
    form.init = item.init;
    return form;
}

HmiMemoryItem memoryItemFromForm(const MemoryDataForm& form) {
    return HmiMemoryItem{form.name, DataTypeTable::keywordAt(form.typeIndex),
                         std::to_string(form.length), form.init};
}

std::string_view hmiCell(const HmiIoItem& item, int column, std::string& scratch) {
    switch (column) {
    case 0:
        return item.name;
    case 1:
        return item.dbname;
    case 2:
        return item.dataname;
    case 3:
        scratch = std::to_string(item.period);
        return scratch;
    default:
        return {};
    }
}

std::string_view hmiCell(const HmiMemoryItem& item, int column, std::string& scratch) {
    switch (column) {
    case 0:
        return item.name;
    case 1: {
        const int index = DataTypeTable::indexOfKeyword(item.type);
        return index < 0 ? std::string_view() : std::string_view(DataTypeTable::row(index).shown);
    }
    case 2:
        return item.length;
    case 3:
        return item.init;
    default:
        return {};
    }
}

} // namespace rq

#pragma once
// The HMI database editor's dialogs as plain records, their texts, the checks
// their OK button makes, and the columns of the two list layouts.

#include "sections/hmidb/HmiDbSection.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace rq {

// Texts of the dialogs and the commands, exactly as shown.
namespace hmidbtext {
inline constexpr const char* kIoCaption = "IO Data Setting";
inline constexpr const char* kMemoryCaption = "Memory Data Setting";
inline constexpr const char* kNameLabel = "Data Name:";
inline constexpr const char* kDatabaseLabel = "Database Name:";
inline constexpr const char* kVariableLabel = "Variable Name:";
inline constexpr const char* kPeriodLabel = "Refresh Period:";
inline constexpr const char* kTypeLabel = "Data Type:";
inline constexpr const char* kLengthLabel = "Data Length:";
inline constexpr const char* kInitLabel = "Initial value:";

inline constexpr const char* kIoMissing =
    "Please input data name, database name and variable name!";
inline constexpr const char* kPeriodError = "period value error!";
inline constexpr const char* kNameMissing = "Please input data name and initial value!";
inline constexpr const char* kLengthError = "data length error!";
inline constexpr const char* kBitLengthError = "bit data length error(must be 1~7)!";
inline constexpr const char* kDeleteData = "Are you sure to delete current data ?";
inline constexpr const char* kDeleteGroup = "Are you sure to delete current data group?";
} // namespace hmidbtext

// The two list layouts, each column 100 wide and centred.
inline constexpr std::array<const char*, 4> kHmiIoColumns = {"related data", "real-time database",
                                                             "data name", "refresh period"};
inline constexpr std::array<const char*, 4> kHmiMemoryColumns = {"data name", "data type", "length",
                                                                 "initial value"};
inline constexpr int kHmiColumnWidth = 100;

// "IO Data Setting". The pick button fills the database and variable names.
struct IoDataForm {
    std::string name;
    std::string dbname;
    std::string dataname;
    int32_t period = 500;
};

// "Memory Data Setting".
struct MemoryDataForm {
    std::string name;
    int typeIndex = -1; // row of the type drop-down (DataTypeTable), -1 = none selected
    int length = 0;
    std::string init = "0";
};

// "Setting Data Group": the name of a nested group.
struct HmiGroupForm {
    std::string name;
};

// The checks of OK in their fixed order: the message to show, or nothing. Last
// come the values that hmidb.xml stores unescaped (checkStorableValue).
std::optional<std::string> validateIoDataForm(const IoDataForm& form);
std::optional<std::string> validateMemoryDataForm(const MemoryDataForm& form);
std::optional<std::string> validateHmiGroupForm(const HmiGroupForm& form);

// Whether the length field is enabled: only for a type of size 0 (bit, string,
// array) or with no type selected.
bool lengthEditable(const MemoryDataForm& form);
// The drop-down's selection changed to form.typeIndex: a type of size above 0 sets
// the length to its size.
void applyTypeSelection(MemoryDataForm& form);

IoDataForm ioFormFromItem(const HmiIoItem& item);
HmiIoItem ioItemFromForm(const IoDataForm& form);
// The type selected by its keyword; the length from the item, or the type's size
// when the item's length is empty.
MemoryDataForm memoryFormFromItem(const HmiMemoryItem& item);
// Length as decimal text, type as the keyword of the selected row (empty when none).
HmiMemoryItem memoryItemFromForm(const MemoryDataForm& form);

// The text of a list cell; the memory list shows the type's shown text. `scratch`
// holds texts made for the cell (the period).
std::string_view hmiCell(const HmiIoItem& item, int column, std::string& scratch);
std::string_view hmiCell(const HmiMemoryItem& item, int column, std::string& scratch);

} // namespace rq

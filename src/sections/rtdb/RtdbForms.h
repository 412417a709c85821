#pragma once
// The fields of the real-time database's dialogs as plain records, and the checks
// their OK button makes. A dialog fills a form, calls the validator on OK and
// keeps itself open (after showing the message in an error box) while the
// validator returns a message.

#include "sections/rtdb/RtdbModel.h"

#include <optional>
#include <string>

namespace rq {

// Texts of the dialogs, exactly as shown.
namespace rtdbtext {
inline constexpr const char* kDatabaseCaption = "Realtime Database Setting";
inline constexpr const char* kDatabaseBox = "Setting";
inline constexpr const char* kDatabaseLabel = "Database:";
inline constexpr const char* kSyncCheck = "Synchronizing Database";

inline constexpr const char* kGroupCaption = "Setting Data Group";
inline constexpr const char* kGroupBox = "Setting";
inline constexpr const char* kGroupLabel = "Data Group:";

inline constexpr const char* kDataCaption = "Data Setting";
inline constexpr const char* kDataBox = "Data Setting";
inline constexpr const char* kDataLabel = "Data:";
inline constexpr const char* kTypeLabel = "Data Type:";
inline constexpr const char* kLengthLabel = "Data Length:";
inline constexpr const char* kInitLabel = "Initial Value:";
inline constexpr const char* kAliasCheck = "Alias";
inline constexpr const char* kAliasLabel = "Alias:";
inline constexpr const char* kDescriptionLabel = "Description:";

inline constexpr const char* kBatchCaption = "Batch Data Setting";
inline constexpr const char* kFromLabel = "From";
inline constexpr const char* kToLabel = "To";

// Messages of the dialogs and the commands.
inline constexpr const char* kAliasMissing = "Please input data name and alias!";
inline constexpr const char* kNameMissing = "Please input data name and initial value!";
inline constexpr const char* kLengthError = "data length error!";
inline constexpr const char* kBitLengthError = "bit data length error(must be 1~7)!";
inline constexpr const char* kDatabaseExists = "The database already exist!";
inline constexpr const char* kGroupExists = "The data group already exist!";
inline constexpr const char* kDataExists = "The data already exist!";
inline constexpr const char* kDeleteDatabase = "Are you sure to delete current database?";
inline constexpr const char* kDeleteGroup = "Are you sure to delete current data group?";
inline constexpr const char* kDeleteData = "Are you sure to delete current data ?";
} // namespace rtdbtext

// "Realtime Database Setting".
struct DatabaseForm {
    std::string name;
    bool sync = true; // "Synchronizing Database", checked by default
};

// "Setting Data Group".
struct DataGroupForm {
    std::string name;
};

// "Data Setting".
struct DataForm {
    std::string name;
    int typeIndex = -1; // row of the type drop-down (DataTypeTable), -1 = none selected
    int length = 0;
    std::string init = "0";
    bool alias = false; // "Alias" check box; the alias edit is enabled only while set
    std::string aliasText;
    std::string description;
};

// The most data one batch may add, and the message for a larger range.
inline constexpr long long kMaxBatchData = 1000000;
inline constexpr const char* kBatchTooLargeMessage =
    "Too many data in one batch (at most 1000000)!";

// "Batch Data Setting": the fields of "Data Setting" plus From and To.
struct BatchDataForm {
    DataForm data;
    int from = 0;
    int to = 0;
};

// The checks of OK, in their fixed order: the message to show, or nothing. Last
// come the values that rtdb.xml stores unescaped (checkStorableValue).
std::optional<std::string> validateDataForm(const DataForm& form);
// Only the storable-value check: the database and group dialogs have no other.
std::optional<std::string> validateDatabaseForm(const DatabaseForm& form);
std::optional<std::string> validateDataGroupForm(const DataGroupForm& form);
std::optional<std::string> validateBatchDataForm(const BatchDataForm& form);

// Whether the length field is enabled: only for a type of size 0 (bit, string,
// array) or with no type selected.
bool lengthEditable(const DataForm& form);
// The drop-down's selection changed to form.typeIndex: a type of size above 0 sets
// the length to its size.
void applyTypeSelection(DataForm& form);

// A form for a new item (nothing selected, initial value "0").
DataForm newDataForm();
// A form filled from an item's list-row texts, as the modify command opens it:
// alias mode when the alias column is not empty; the type selected by its shown
// text; the length from the row, or the selected type's size when it is empty.
DataForm dataFormFromItem(const DataItem& item);
// The item that an accepted form describes (length as decimal text, type as the
// keyword of the selected row, empty when none).
DataItem itemFromForm(const DataForm& form);

} // namespace rq

#pragma once
// The alarm editor's dialogs as plain records: "Alarm Configuration" (the size of
// the runtime's alarm buffer), "Setting Alarm Group" and "Alarm Data Information",
// their texts, the list's columns and the checks their OK buttons make.

#include "sections/alarm/AlarmSection.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace rq {

namespace alarmtext {
inline constexpr const char* kConfigCaption = "Alarm Configuration";
inline constexpr const char* kBufferSize = "Alarm Buffer Size:";
inline constexpr const char* kBadBufferSize =
    "The alarm buffer size must be a whole number greater than 0.";
inline constexpr const char* kConfigStepName = "Alarm Configuration";

inline constexpr const char* kGroupCaption = "Setting Alarm Group";
inline constexpr const char* kGroupLabel = "Alarm Group:";
inline constexpr const char* kInputGroup = "Please input alarm group!";
inline constexpr const char* kGroupExists = "The alarm group already exist!";
inline constexpr const char* kDeleteGroup = "Are you sure to delete current alarm group?";

inline constexpr const char* kDataCaption = "Alarm Data Information";
inline constexpr const char* kBasicBox = "Basic Information";
inline constexpr const char* kDatabase = "Database:";
inline constexpr const char* kRealtimeData = "Realtime Data:";
inline constexpr const char* kPriority = "Priority:";
inline constexpr const char* kStatusVar = "Status Variable:";
inline constexpr const char* kAnalogBox = "Analoge Alarm Setting";
inline constexpr const char* kDigitalBox = "Digital Property Setting";
inline constexpr const char* kVariable = "Variable";
inline constexpr const char* kAlarmText = "Alarm Text";
inline constexpr const char* kLimitedValue = "Limited Value";
inline constexpr const char* kRestoreText = "Alarm Restore Text";
// The row of each slot, in slot order: four analog rows, then the two digital ones.
inline constexpr std::array<const char*, kAlarmSlotCount> kSlotRows = {
    "Hight:", "High High:", "Low:", "Low Low:", "On:", "Off:"};

inline constexpr const char* kChooseData = "Please choose data!";
inline constexpr const char* kDataExists = "The data already exist!";
inline constexpr const char* kDeleteData = "Are you sure to delete current data ?";
} // namespace alarmtext

// The list of an alarm group: four columns of 100 pixels.
inline constexpr std::array<const char*, 4> kAlarmColumns = {"database name", "Real-time data name",
                                                             "priority", "status variable"};
inline constexpr int kAlarmColumnWidth = 100;

// The analog slots have a limit; the digital ones (Open, Close) have none.
inline constexpr bool isAnalogSlot(int slot) {
    return slot < kAlarmOpen;
}

struct AlarmConfigForm {
    std::string bufferSize;
};

// The runtime keeps that many alarm records: a whole number (decimal digits) of at
// least 1 is taken, anything else refused.
std::optional<std::string> validateAlarmConfigForm(const AlarmConfigForm& form);

// "Setting Alarm Group".
struct AlarmGroupForm {
    std::string name;
};

// An empty name, then a name the file cannot store.
std::optional<std::string> validateAlarmGroupForm(const AlarmGroupForm& form);

// One row of the condition grids.
struct AlarmConditionForm {
    std::string variable;    // enable_var
    std::string text;        // info
    std::string limit;       // value_var (analog rows only)
    std::string restoreText; // restore_info
};

// "Alarm Data Information". The database and data names come from the pick
// button only; the other references are picked or typed.
struct AlarmDataForm {
    std::string dbname;
    std::string dataname;
    std::string priority;
    std::string statusVar;
    std::array<AlarmConditionForm, kAlarmSlotCount> conditions;
};

// The form of a record: the rows of the slots that are set, the others empty.
AlarmDataForm alarmDataFormFromRecord(const AlarmDataItem& item);
// The record of a form: an analog slot is set when its limit is given, a digital
// one when its variable or its alarm text is given (its limit stays empty); every
// other slot is cleared.
AlarmDataItem alarmDataFromForm(const AlarmDataForm& form);

// No data chosen, then a value the file cannot store among the fields that are
// kept (a row that is dropped is not checked).
std::optional<std::string> validateAlarmDataForm(const AlarmDataForm& form);

// The text of a list cell (column 0..3).
std::string_view alarmCell(const AlarmDataItem& item, int column);

} // namespace rq

#pragma once
// The two dialogs of the history records as plain records, their texts, the
// list's columns, and the checks their OK buttons make.

#include "sections/history/HistorySection.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace rq {

// Texts of the dialogs and the commands, exactly as shown.
namespace historytext {
// "History Data Configuration": one history record.
inline constexpr const char* kRecordCaption = "History Data Configuration";
inline constexpr const char* kRecordBox = "History Record Data Setting";
inline constexpr const char* kNameLabel = "History Record Name:";
inline constexpr const char* kPeriodLabel = "Lowest Period(ms):";
inline constexpr const char* kLocationLabel = "File Location:";
inline constexpr const char* kRemainDaysLabel = "Saving Date:";
inline constexpr const char* kIndexPeriodLabel = "Interval of Index Time(s):";

// "History Data Record": one recorded variable.
inline constexpr const char* kDataCaption = "History Data Record";
inline constexpr const char* kDataBox = "History Data Setting";
inline constexpr const char* kDataNameLabel = "Realtime Data Name:";
inline constexpr const char* kDatabaseLabel = "Database Name:";
inline constexpr const char* kKindLabel = "Record Type:";
inline constexpr const char* kPeriodValueLabel = "Timing Record Period(ms):";
inline constexpr const char* kChangeValueLabel = "Data Variable:";
inline constexpr const char* kTriggerLabel = "Spring Variable:";
inline constexpr const char* kQueryLabel = "Query Variable:";
inline constexpr const char* kDescriptionLabel = "Description:";

inline constexpr const char* kRecordExists = "The data record already exist!";
inline constexpr const char* kDeleteRecord = "Are you sure to delete current data log?";
inline constexpr const char* kChooseData = "Please choose data!";
inline constexpr const char* kNoPeriod = "Please input data log period!";
inline constexpr const char* kNoChangeValue = "Please input data change value!";
inline constexpr const char* kNoTrigger = "Please input trigger variable name!";
inline constexpr const char* kDataExists = "The data already exist!";
inline constexpr const char* kDeleteData = "Are you sure to delete current data ?";
} // namespace historytext

// The list of a history record: eight columns of 130 pixels.
inline constexpr std::array<const char*, 8> kHistoryDataColumns = {
    "database name",       "data name",         "history log type",
    "Saving period",       "data change value", "Trigger variable name",
    "Query variable name", "description"};
inline constexpr int kHistoryDataColumnWidth = 130;

// "History Data Configuration". `location` is the row of kHistoryLocations, -1
// when the record's path is none of them (OK then keeps the path).
struct HistoryRecordForm {
    std::string name;
    std::string period;
    int location = 0;
    std::string remaindays;
    std::string indexperiod;
};

HistoryRecordForm historyRecordForm(const HistoryRecord& record);
// Stores the form's fields into the record (its variables stay).
void storeHistoryRecordForm(const HistoryRecordForm& form, HistoryRecord& record);
// The fields the file stores unescaped, and the three numbers each a whole number
// greater than 0. An empty name passes: the commands take it as "nothing to do".
std::optional<std::string> validateHistoryRecordForm(const HistoryRecordForm& form);

// "History Data Record". `kind` is the row of kHistoryKinds, -1 when the
// variable's type is none of them (OK then keeps the type).
struct HistoryDataForm {
    std::string dbname;
    std::string dataname;
    int kind = 0;
    std::string periodvalue;
    std::string changevalue;
    std::string trigvarname;
    std::string queryvarname;
    std::string description;
};

HistoryDataForm historyDataForm(const HistoryData& data);
// The dialog's result stored into a variable: the names, the kind, the value of
// the kind only (the other two stay as they were), the query variable and the
// description.
void storeHistoryDataForm(const HistoryDataForm& form, HistoryData& data);
// The checks in their order: the names, the value of the kind, then the fields
// the file stores unescaped.
std::optional<std::string> validateHistoryDataForm(const HistoryDataForm& form);

// The text of a list cell (column 0..7). The three value columns show the value
// the file stores, the one of the variable's kind.
std::string_view historyDataCell(const HistoryData& data, int column);

} // namespace rq

#pragma once
// The data log dialogs' fields as plain records, their texts, the list's columns
// and the checks their OK buttons make.

#include "sections/datalog/DataLogSection.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace rq {

// Texts of the dialogs and the commands, exactly as shown.
namespace datalogtext {
inline constexpr const char* kCaption = "Realtime Data Record"; // both dialogs
inline constexpr const char* kLogBox = "Realtime Data Record Setting";
inline constexpr const char* kNameLabel = "Record Name:";
inline constexpr const char* kPeriodLabel = "Default Record Period:";
inline constexpr const char* kPeriodVarLabel = "Period Variable:";
inline constexpr const char* kSizeLabel = "Record Data Size:";
inline constexpr const char* kDatabaseLabel = "Realtime Database:";
inline constexpr const char* kControlVarLabel = "Control Variable:";
inline constexpr const char* kDataBox = "Data Setting";
inline constexpr const char* kDataLabel = "Realtime Data:";
inline constexpr const char* kDbNameLabel = "Database Name:";

inline constexpr const char* kNoName = "Please input data log name!";
inline constexpr const char* kNoPeriod = "Please input data log period!";
inline constexpr const char* kNoSize = "Please input data log size!";
inline constexpr const char* kLogExists = "The data log already exist!";
inline constexpr const char* kDataExists = "The data already exist!";
inline constexpr const char* kDeleteLog = "Are you sure to delete current data log?";
inline constexpr const char* kDeleteData = "Are you sure to delete current data ?";
} // namespace datalogtext

// The list of a log of chosen variables: two columns, 100 pixels each.
inline constexpr std::array<const char*, 2> kLogDataColumns = {"database name", "data name"};

// "Realtime Data Record" for a log. `dbname` ("Realtime Database:") is shown for a
// whole-database log only; the control variable is "DB.DATA" as the browse dialog
// gives it, the period variable is typed.
struct DataLogForm {
    DataLogKind kind = DataLogKind::Variables;
    std::string name;
    std::string period = "1000";
    std::string period_var;
    std::string size = "100";
    std::string dbname;
    std::string control_var;
};

DataLogForm dataLogFormFromRecord(const DataLog& log);
// A new log of this kind with the form's fields and no variables.
DataLog dataLogFromForm(const DataLogForm& form);

// The first failing check: name, period and size given, in this order, then the
// values the file cannot store.
std::optional<std::string> validateDataLogForm(const DataLogForm& form);

// "Realtime Data Record" for a variable of a log.
struct LogDataForm {
    std::string dataname; // "Realtime Data:"
    std::string dbname;   // "Database Name:"
};

inline LogDataForm logDataFormFromRef(const DataRef& ref) {
    return LogDataForm{ref.dataname, ref.dbname};
}
inline DataRef logDataFromForm(const LogDataForm& form) {
    return DataRef{form.dbname, form.dataname};
}

// Only the values the file cannot store are refused.
std::optional<std::string> validateLogDataForm(const LogDataForm& form);

// The text of a list cell (column 0: database name, 1: data name).
std::string_view logDataCell(const DataRef& ref, int column);

} // namespace rq

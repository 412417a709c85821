#pragma once
// The parameter dialog's fields as a plain record, its texts, the list's columns
// and the check its OK button makes.

#include "sections/param/ParamSection.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace rq {

// Texts of the dialog and the commands, exactly as shown.
namespace paramtext {
inline constexpr const char* kCaption = "Parameter Setting";
inline constexpr const char* kBox = "Data Setting";
inline constexpr const char* kDatabaseLabel = "Database Name:";
inline constexpr const char* kDataLabel = "Realtime Data Name:";
inline constexpr const char* kValueLabel = "Initial Value:";

inline constexpr const char* kChooseData = "Please choose data!";
inline constexpr const char* kDataExists = "The data already exist!";
inline constexpr const char* kDeleteData = "Are you sure to delete current data ?";
} // namespace paramtext

// The list: three columns of 150 pixels.
inline constexpr std::array<const char*, 3> kParamColumns = {"database name", "Real-time data name",
                                                             "initial value"};
inline constexpr int kParamColumnWidth = 150;

// "Parameter Setting". The two names are filled by the pick button only.
struct ParamForm {
    std::string dbname;
    std::string dataname;
    std::string value;
};

inline ParamForm paramFormFromRecord(const ParamItem& item) {
    return ParamForm{item.dbname, item.dataname, item.value};
}
inline ParamItem paramFromForm(const ParamForm& form) {
    return ParamItem{form.dbname, form.dataname, form.value};
}

// The first failing check: a name not chosen, then a value the file cannot store.
std::optional<std::string> validateParamForm(const ParamForm& form);

// The text of a list cell (column 0..2).
std::string_view paramCell(const ParamItem& item, int column);

} // namespace rq

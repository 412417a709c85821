#pragma once
// The function block editor's two dialogs as plain records, their texts, the
// parameter list's columns and the checks their OK buttons make.

#include "sections/fbd/FbdClassCatalog.h"
#include "sections/fbd/FbdSection.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace rq {

// Texts of the dialogs and the commands, exactly as shown.
namespace fbdtext {
inline constexpr const char* kBlockCaption = "FBD Configuration";
inline constexpr const char* kNameLabel = "FBD Name:";
inline constexpr const char* kTypeLabel = "FBD Type:";
inline constexpr const char* kSubTypeLabel = "FBD Sub_type:";
inline constexpr const char* kParamCaption = "FBD Parameter Setting";
inline constexpr const char* kParamNameLabel = "Parameter Name:";
inline constexpr const char* kDataLabel = "Realtime Data:";

inline constexpr const char* kInputName = "Please input FBD name!";
inline constexpr const char* kChooseType = "Please choose FBD type!";
inline constexpr const char* kChooseData = "Please choose data!";
inline constexpr const char* kBlockExists = FbdSection::kDuplicateMessage;
inline constexpr const char* kDeleteBlock = "Are you sure to delete current function block?";
} // namespace fbdtext

// The list of a block: its enabling parameter "EN" first, then its bindings.
inline constexpr std::array<const char*, 3> kFbdParamColumns = {"Parameter name",
                                                                "Real-time data name", "data name"};

// "FBD Configuration". The class and the member kind by their display texts
// (empty: none chosen); the class is chosen when adding only.
struct FbdBlockForm {
    std::string name;
    std::string typeText;
    std::string subTypeText;
    bool adding = true;
};

// "FBD Parameter Setting": the parameter's name (shown only) and the real-time data
// it is bound to, filled by the pick button.
struct FbdParamForm {
    std::string name;
    std::string dbname;
    std::string varname;
    bool booleanOnly = false; // the enabling parameter: boolean data only
};

// The first failing check: no name, then no class when adding, then a name the
// file cannot store.
std::optional<std::string> validateFbdBlockForm(const FbdBlockForm& form);
// No data chosen, then names the file cannot store.
std::optional<std::string> validateFbdParamForm(const FbdParamForm& form);

// The form of an existing block; a class or member keyword the catalog does not
// know shows as none chosen.
FbdBlockForm fbdBlockFormFromItem(const FbdItem& item);
// A new block of the form's class: its member kind, no enabling reference and one
// empty binding per parameter of the class.
FbdItem fbdItemFromForm(const FbdBlockForm& form);
// The member kind that the form sets on `item`: a chosen one, else the stored one.
std::string fbdMemberKindFromForm(const FbdItem& item, const FbdBlockForm& form);

// The rows of a block's list: "EN", then one per binding.
std::size_t fbdParamRows(const FbdItem& item);
// The text of a list cell (column 0..2). The enabling row shows what the file holds
// (the always-true system item when the block has no enabling reference).
std::string_view fbdParamCell(const FbdItem& item, std::size_t row, int column);
// The dialog's form of a row, and the reference the form stores into that row (the
// always-true system item is stored as no enabling reference, as a file reads).
FbdParamForm fbdParamFormFromRow(const FbdItem& item, std::size_t row);
DataRef fbdRowReference(std::size_t row, const FbdParamForm& form);
// The reference a row holds now, as the file writes it.
DataRef fbdRowWritten(const FbdItem& item, std::size_t row);

} // namespace rq

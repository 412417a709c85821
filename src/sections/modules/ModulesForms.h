#pragma once
// "Module Setting" as a plain record: its fields, its texts, the list's columns
// and the check its OK button makes.

#include "sections/modules/ModulesSection.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rq {

// Texts of the dialog and the commands, exactly as shown.
namespace moduletext {
inline constexpr const char* kCaption = "Module Setting";
inline constexpr const char* kNameLabel = "Module Name:";
inline constexpr const char* kDefinesLabel = "Compile Additional Define:";
inline constexpr const char* kSourcesLabel = "Source File:";
inline constexpr const char* kParamsLabel = "Initialize Param:";
inline constexpr const char* kDisable = "Disable Module";
inline constexpr const char* kCompile = "Compile";
// The source browser's filter.
inline constexpr const char* kSourceFilter = "(*.c)|*.c|";

inline constexpr const char* kNameEmpty = "module name is empty,please input module name!";
inline constexpr const char* kSourceEmpty = "source file is empty,please input source name!";
inline constexpr const char* kDeleteModule = "Are you sure to delete current data ?";
// The last column's texts.
inline constexpr const char* kEnabled = "Enable";
inline constexpr const char* kDisabled = "Disable";
} // namespace moduletext

// The list: five columns of 100 pixels.
inline constexpr std::array<const char*, 5> kModuleColumns = {
    "Module name", "Compile additional define", "Source file name", "Parameters", "Enable"};
inline constexpr int kModuleColumnWidth = 100;

// "Module Setting". `disable` is the check box, the inverse of the module's enable.
struct ModuleForm {
    std::string name;
    std::string defines;
    std::string srcfiles;
    std::string params;
    bool disable = false;

    bool operator==(const ModuleForm&) const = default;
};

inline ModuleForm moduleFormFromRecord(const UserModule& m) {
    return ModuleForm{m.name, m.defines, m.srcfiles, m.params, !m.enable};
}
inline UserModule moduleFromForm(const ModuleForm& f) {
    return UserModule{f.name, f.defines, f.srcfiles, f.params, !f.disable};
}

// The check of OK: a module needs a name (modules.xml keeps no module without
// one), and the name is stored unescaped. The other texts are escaped and take
// anything.
std::optional<std::string> validateModuleForm(const ModuleForm& form);

// The source field after the browser chose `paths`: each appended to `field` as a
// double quote, the path, a double quote and one blank.
std::string appendSourceFiles(std::string field, const std::vector<std::string>& paths);

// The text of a list cell (column 0..4).
std::string_view moduleCell(const UserModule& m, int column);

} // namespace rq

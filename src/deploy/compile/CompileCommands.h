#pragma once
// The command lines of user-code compilation and the generated user header.
//
// The toolchain's scripts (RqGenMdl.sh, RqGenDll.sh) live in the program directory
// and read their input from environment variables. Each compile is one
// `/bin/sh -c` line that exports the variables (values shell-quoted, so blanks,
// quotes and "&" in a value stay inside it) and then runs the script:
//
//   module:  PRJ_DIR, MdlName, CFLAGS = the defines, LDFLAGS = " " + sources
//            then ./RqGenMdl.sh
//   project: PRJ_DIR, CFLAGS = the defines, LDFLAGS = " " + PC sources/libraries,
//            LDFLAGS_LINUX = " " + HMI sources/libraries, then ./RqGenDll.sh "DIR"
//
// "%PRJ_DIR%" in the source and library fields stands for the project directory.

#include <string>
#include <utility>
#include <vector>

namespace rq {

inline constexpr const char* kPrjDirToken = "%PRJ_DIR%";

// Every "%PRJ_DIR%" of `text` replaced by `projectDir`.
std::string replacePrjDir(const std::string& text, const std::string& projectDir);

struct ToolCommand {
    std::vector<std::pair<std::string, std::string>> variables; // in command-line order
    std::string script;                                         // "./RqGenMdl.sh"
    std::vector<std::string> arguments;                         // after the script
    // export NAME=VALUE ... && ./script "ARG"
    std::string shellLine() const;
};

ToolCommand moduleCompileCommand(const std::string& projectDir, const std::string& moduleName,
                                 const std::string& defines, const std::string& sources);
ToolCommand projectCompileCommand(const std::string& projectDir, const std::string& defines,
                                  const std::string& pcSources, const std::string& hmiSources);

// The content of compile/userfunc.h for the header field: empty for an empty field,
// else one #include line ("#include" + text when it begins with a double quote,
// else "#include\"TEXT\"") ended by a newline.
std::string userFuncHeaderText(const std::string& headerField, const std::string& projectDir);
// Writes PROJECT/compile/userfunc.h (created or truncated); false with a reason.
bool writeUserFuncHeader(const std::string& projectDir, const std::string& headerField,
                         std::string* error);

} // namespace rq

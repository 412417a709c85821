#pragma once
// The commands of rqpcli. Each command file registers its commands with a static
// CommandRegistration; main() looks the first argument up here.
//
// Exit status: 0 success, 1 failure (one clear line on standard error), 64 usage
// error. Device commands exit with their transfer result (0 to 4) and 10 when a
// check fails before any transfer.

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace rqcli {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitCheckFailed = 10;
inline constexpr int kExitUsage = 64;

struct Command {
    std::string name;    // "new", "package wrap", "device put" (words joined by one blank)
    std::string usage;   // the synopsis after "rqpcli "
    std::string summary; // one line
    int (*run)(const std::vector<std::string>& args); // args after the command's words
};

const std::vector<Command>& commands();

struct CommandRegistration {
    explicit CommandRegistration(Command command);
};

// Parsed options of one command: positional arguments and --name [value] options.
// Each option is declared as a flag (no value) or as taking a value.
class Options {
public:
    // `valued` options take the next argument; `flags` take none. Unknown options,
    // a missing value or a wrong number of positional arguments make parse() fail
    // with a message in error().
    Options(std::vector<std::string> valued, std::vector<std::string> flags);
    bool parse(const std::vector<std::string>& args, std::size_t minPositional,
               std::size_t maxPositional);

    const std::vector<std::string>& positional() const { return positional_; }
    std::optional<std::string> value(const std::string& name) const;
    bool flag(const std::string& name) const;
    bool helpRequested() const { return help_; }
    const std::string& error() const { return error_; }

private:
    std::vector<std::string> valued_, flags_;
    std::vector<std::string> positional_;
    std::map<std::string, std::string> values_;
    std::vector<std::string> setFlags_;
    bool help_ = false;
    std::string error_;
};

// Prints "rqpcli: TEXT" to standard error and returns `status`.
int fail(const std::string& text, int status = kExitFailure);
// Parses options for `command`; on --help prints its usage and returns 0 through
// *exitStatus; on a usage error prints the reason and the usage and returns 64.
bool parseOrExit(const Command& command, Options& options, const std::vector<std::string>& args,
                 std::size_t minPositional, std::size_t maxPositional, int* exitStatus);
const Command& commandNamed(const std::string& name);

} // namespace rqcli

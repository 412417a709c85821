#pragma once
// Command lines of the sibling programs (rqrun, RQDev, Ladrune). The tool builds each
// line as one text; the program is then started with the arguments that this text
// gives under the Windows C-runtime rules, so the same text works on every platform.

#include <string>
#include <string_view>
#include <vector>

namespace rq {

// Splits a command line into arguments: blanks and tabs outside double quotes
// separate arguments, the quotes themselves are removed, "" inside a quoted part is
// one literal quote, and backslashes count only right before a quote (2n backslashes
// + quote give n backslashes and a quote that toggles quoting; 2n+1 give n
// backslashes and a literal quote). The first argument, the program name, ends at
// the first blank outside quotes and knows no backslash escapes.
// `RQDev *"/p"*w.xml` gives {"RQDev", "*/p*w.xml"}.
std::vector<std::string> splitCommandLine(std::string_view line);

// Starts the program named by the line's first argument from `programDir`, with
// `programDir` as working directory and the split arguments, and does not wait
// for it (nor leaves a process behind to be reaped). False, with a message that
// names the program and the directory searched, when it cannot be started.
bool launchDetached(const std::string& programDir, std::string_view commandLine,
                    std::string* error);

// Starts sibling programs. The shell uses the real one; tests record the lines.
class ProgramLauncher {
public:
    virtual ~ProgramLauncher() = default;
    virtual bool launch(const std::string& programDir, const std::string& commandLine,
                        std::string* error) = 0;
};

class DetachedLauncher : public ProgramLauncher {
public:
    bool launch(const std::string& programDir, const std::string& commandLine,
                std::string* error) override {
        return launchDetached(programDir, commandLine, error);
    }
};

} // namespace rq

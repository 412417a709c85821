#pragma once
// One compile dialog's state without the dialog: the runner, the two output
// buffers, the status line, whether the buttons are enabled. A module dialog or the
// project compile dialog drives it; the command line waits on it.
//
// The runner's events are forwarded to the listener with the dialog's codes
// (0 started, 1 finished, 2 standard output, 3 standard error) on the runner's
// threads; the session's own state is updated before each forward. Output is kept
// in the buffers and shown only at the finish: standard output, then standard
// error, or the default text when both are empty.

#include "deploy/process/ProcessRunner.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace rq {

class ProjectDocument;

inline constexpr const char* kNoProjectDirectoryMessage =
    "Do not choose project directory, please save project before!";
inline constexpr const char* kCompilingStatus = "Compiling, waiting...";
inline constexpr const char* kCompileCompleteStatus = "Compile complete, output information:";
// Shown when the toolchain printed nothing: a banner line, then "Compile OK!".
inline constexpr const char* kDefaultCompileOutput = "RqpDev reference toolchain\nCompile OK!";

struct ModuleCompileFields {
    std::string name;
    std::string defines;
    std::string sources; // "\"PATH\" " per file
};

struct ProjectCompileFields {
    std::string defines;    // CFLAGS
    std::string pcSources;  // LDFLAGS (libs)
    std::string header;     // include
    std::string hmiSources; // LDFLAGS_LINUX (libs_linux)
};

class CompileSession {
public:
    class Listener {
    public:
        virtual ~Listener() = default;
        virtual void onCompileEvent(int code, const std::string& text) = 0;
    };

    explicit CompileSession(Listener* listener = nullptr);
    ~CompileSession();
    CompileSession(const CompileSession&) = delete;
    CompileSession& operator=(const CompileSession&) = delete;

    // The module dialog's "Compile". Returns the error box text of a failed check,
    // or nothing when the compile was started (or could not be started, which stays
    // quiet: no started or finished event follows).
    std::optional<std::string> compileModule(const std::string& projectDir,
                                             const ModuleCompileFields& fields);
    // The project compile dialog's "Compile": stores the fields into the project,
    // saves the project file, makes compile/ and compile/userfunc.h, then starts.
    // A project file or header that cannot be written returns the reason and
    // starts nothing.
    std::optional<std::string> compileProject(ProjectDocument& document,
                                              const ProjectCompileFields& fields);

    std::string status() const;
    std::string output() const; // the output box
    bool buttonsEnabled() const;
    bool finished() const;
    // False when the last compile could not be started (the quiet case above).
    bool started() const;
    // Waits for the finish event; false when it did not come in time.
    bool waitFinished(std::chrono::milliseconds limit);
    // The toolchain's exit status after the finish, -1 otherwise.
    int exitCode() const;
    // Ends a compile that is still running (the dialog's close).
    void stop();
    // The command line of the last start.
    std::string lastCommandLine() const;

private:
    class Runner;
    void startCommand(const std::string& line);
    void onEvent(int code, const std::string& text);

    Listener* listener_;
    mutable std::mutex m_;
    std::condition_variable cv_;
    std::string out_, err_, output_, status_, lastLine_;
    bool buttonsEnabled_ = true;
    bool finished_ = false;
    bool started_ = false;
    std::unique_ptr<Runner> runner_;
};

} // namespace rq

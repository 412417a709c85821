#pragma once
// Helpers shared by the tests: scratch directories, golden files, a recording
// message sink.

#include "core/MessageSink.h"

#include <filesystem>
#include <string>
#include <vector>

namespace rqtest {

// A fresh directory under the system's temporary directory, removed on destruction.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::filesystem::path& path() const { return path_; }
    std::string str() const { return path_.string(); }
    std::string file(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

std::string readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, const std::string& bytes);

// tests/data/<format>/<case>/<name>
std::filesystem::path dataPath(const std::string& format, const std::string& caseName,
                               const std::string& name);
std::vector<std::string> caseNames(const std::string& format);

// Turns "\n" into "\r\n": golden texts in tests are written with plain line ends.
std::string crlf(const std::string& text);

// The program directory laid out by the build (RQPDEV_HOME).
std::string programDir();

// The result of running a program: its exit status (-1 when it did not exit) and
// what it printed.
struct ProgramRun {
    int status;
    std::string out;
};
// Runs a shell command line and collects its standard output.
ProgramRun runShell(const std::string& command);
// Runs a program of the program directory with the arguments (quoted for the
// shell); standard error is collected with standard output when `withStderr`, else
// dropped.
ProgramRun runProgram(const std::string& program, const std::vector<std::string>& args,
                      bool withStderr = true);

// A program of the program directory running in the background, its standard
// output going to a file; stopped with SIGTERM at the latest on destruction.
class BackgroundProgram {
public:
    BackgroundProgram(const std::string& program, const std::vector<std::string>& args,
                      const std::string& logFile);
    ~BackgroundProgram() { stop(); }
    BackgroundProgram(const BackgroundProgram&) = delete;
    BackgroundProgram& operator=(const BackgroundProgram&) = delete;
    // SIGTERM, then the exit status.
    int stop();

private:
    int pid_ = 0;
};

// Records every message, question and its answer; answers come from a script.
class RecordingSink : public rq::MessageSink {
public:
    struct Entry {
        std::string text;
        rq::MessageIcon icon;
        bool question;
    };
    void showMessage(const std::string& text, rq::MessageIcon icon) override;
    bool askOkCancel(const std::string& text) override;
    bool askYesNo(const std::string& text, rq::MessageIcon icon, bool defaultNo) override;

    std::vector<Entry> entries;
    std::vector<bool> answers; // consumed in order; an exhausted script answers true
    std::vector<std::string> texts() const;

private:
    bool nextAnswer();
};

} // namespace rqtest

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

#include "support/TestSupport.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace fs = std::filesystem;

namespace rqtest {

TempDir::TempDir() {
    static std::atomic<int> counter{0};
    fs::path base = fs::temp_directory_path();
    for (;;) {
        fs::path p =
            base / ("rqtest-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
        if (fs::create_directory(p)) {
            path_ = p;
            return;
        }
    }
}

TempDir::~TempDir() {
    std::error_code ec;
    fs::permissions(path_, fs::perms::owner_all, fs::perm_options::add, ec);
    fs::remove_all(path_, ec);
}

std::string readFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw std::runtime_error("cannot read " + path.string());
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

void writeFile(const fs::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
    if (!out)
        throw std::runtime_error("cannot write " + path.string());
}

static fs::path dataRoot() {
    const char* d = std::getenv("RQ_TEST_DATA");
    return d ? fs::path(d) : fs::path(RQ_TEST_DATA_FALLBACK);
}

fs::path dataPath(const std::string& format, const std::string& caseName, const std::string& name) {
    return dataRoot() / format / caseName / name;
}

std::vector<std::string> caseNames(const std::string& format) {
    std::vector<std::string> out;
    std::error_code ec;
    for (const auto& e : fs::directory_iterator(dataRoot() / format, ec))
        if (e.is_directory())
            out.push_back(e.path().filename().string());
    std::sort(out.begin(), out.end());
    return out;
}

std::string crlf(const std::string& text) {
    std::string out;
    out.reserve(text.size() + text.size() / 16);
    for (char c : text) {
        if (c == '\n')
            out += '\r';
        out += c;
    }
    return out;
}

std::string programDir() {
    const char* d = std::getenv("RQPDEV_HOME");
    return d ? d : "";
}

ProgramRun runShell(const std::string& command) {
    ProgramRun result{-1, {}};
    std::FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe)
        return result;
    char buffer[4096];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
        result.out.append(buffer, n);
    const int status = ::pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

static std::string shellQuoted(const std::string& text) {
    std::string out = "'";
    for (char c : text)
        out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

ProgramRun runProgram(const std::string& program, const std::vector<std::string>& args,
                      bool withStderr) {
    std::string command = shellQuoted(programDir() + "/" + program);
    for (const auto& a : args)
        command += " " + shellQuoted(a);
    command += withStderr ? " 2>&1" : " 2>/dev/null";
    return runShell(command);
}

BackgroundProgram::BackgroundProgram(const std::string& program,
                                     const std::vector<std::string>& args,
                                     const std::string& logFile) {
    std::vector<std::string> all = {programDir() + "/" + program};
    all.insert(all.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (auto& a : all)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, logFile.c_str(), O_WRONLY | O_CREAT, 0644);
    pid_t pid = 0;
    if (posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ) == 0)
        pid_ = pid;
    posix_spawn_file_actions_destroy(&actions);
}

int BackgroundProgram::stop() {
    if (pid_ <= 0)
        return -1;
    ::kill(pid_, SIGTERM);
    int status = 0;
    ::waitpid(pid_, &status, 0);
    pid_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void RecordingSink::showMessage(const std::string& text, rq::MessageIcon icon) {
    entries.push_back({text, icon, false});
}

bool RecordingSink::askOkCancel(const std::string& text) {
    entries.push_back({text, rq::MessageIcon::Question, true});
    return nextAnswer();
}

bool RecordingSink::askYesNo(const std::string& text, rq::MessageIcon icon, bool) {
    entries.push_back({text, icon, true});
    return nextAnswer();
}

std::vector<std::string> RecordingSink::texts() const {
    std::vector<std::string> out;
    for (const auto& e : entries)
        out.push_back(e.text);
    return out;
}

bool RecordingSink::nextAnswer() {
    if (answers.empty())
        return true;
    bool a = answers.front();
    answers.erase(answers.begin());
    return a;
}

} // namespace rqtest

#include "support/TestSupport.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

namespace fs = std::filesystem;

namespace rqtest {

TempDir::TempDir() {
    static std::atomic<int> counter{0};
    fs::path base = fs::temp_directory_path();
    for (;;) {
        fs::path p = base / ("rqtest-" + std::to_string(::getpid()) + "-" +
                             std::to_string(counter++));
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

fs::path dataPath(const std::string& format, const std::string& caseName,
                  const std::string& name) {
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

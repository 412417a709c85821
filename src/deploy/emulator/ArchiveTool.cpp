#include "deploy/emulator/ArchiveTool.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace rq {

namespace {

// Runs a program found on PATH with the given arguments, standard input and error
// on /dev/null, and collects up to `limit` bytes of its standard output (the rest is
// read and dropped so that the child never blocks). True when it exits with 0.
bool runCapture(const std::vector<std::string>& args, std::string& output, std::size_t limit,
                std::string* error) {
    output.clear();
    int pipeFds[2];
    if (::pipe(pipeFds) != 0) {
        if (error)
            *error = std::string("cannot make a pipe: ") + std::strerror(errno);
        return false;
    }
    ::fcntl(pipeFds[0], F_SETFD, FD_CLOEXEC);
    ::fcntl(pipeFds[1], F_SETFD, FD_CLOEXEC);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, pipeFds[1], 1);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    std::vector<char*> argv;
    for (const auto& a : args)
        argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    pid_t pid = 0;
    const int spawned = ::posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipeFds[1]);
    if (spawned != 0) {
        ::close(pipeFds[0]);
        if (error)
            *error = "cannot start " + args[0] + ": " + std::strerror(spawned);
        return false;
    }
    char chunk[4096];
    for (;;) {
        ssize_t got = ::read(pipeFds[0], chunk, sizeof chunk);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        const std::size_t keep = std::min<std::size_t>(static_cast<std::size_t>(got),
                                                       limit - std::min(limit, output.size()));
        output.append(chunk, keep);
    }
    ::close(pipeFds[0]);
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        if (error)
            *error = args[0] + " " + args[1] + " failed";
        return false;
    }
    return true;
}

std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

constexpr std::size_t kListingLimit = 16 * 1024 * 1024;

} // namespace

bool listArchive(const std::string& archive, std::vector<std::string>& names, std::string* error) {
    std::string listing, verbose;
    if (!runCapture({"tar", "-tzf", archive}, listing, kListingLimit, error) ||
        !runCapture({"tar", "-tvzf", archive}, verbose, kListingLimit, error))
        return false;
    names = splitLines(listing);
    // The verbose listing starts each member with its kind: '-' file, 'd' directory;
    // links, devices and the rest are refused.
    for (const std::string& line : splitLines(verbose)) {
        if (line.empty() || (line[0] != '-' && line[0] != 'd')) {
            if (error)
                *error = "archive holds a member that is not a plain file or directory";
            return false;
        }
    }
    return true;
}

std::string unsafeMemberName(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        if (name.empty() || name[0] == '/')
            return name.empty() ? std::string("(empty name)") : name;
        std::size_t start = 0;
        while (start <= name.size()) {
            std::size_t end = name.find('/', start);
            if (end == std::string::npos)
                end = name.size();
            if (name.compare(start, end - start, "..") == 0 && end - start == 2)
                return name;
            start = end + 1;
        }
    }
    return {};
}

bool readArchiveMember(const std::string& archive, const std::string& member, std::string& bytes,
                       std::size_t limit, std::string* error) {
    return runCapture({"tar", "-xzOf", archive, "--", member}, bytes, limit, error);
}

bool isPlainGzipStream(const std::string& file) {
    std::string ignored;
    return runCapture({"gzip", "-t", file}, ignored, 0, nullptr) &&
           !runCapture({"tar", "-tzf", file}, ignored, 0, nullptr);
}

bool extractArchive(const std::string& archive, const std::string& directory, std::string* error) {
    std::string ignored;
    return runCapture({"tar", "-xzf", archive, "-C", directory, "--no-same-owner"}, ignored, 0,
                      error);
}

} // namespace rq

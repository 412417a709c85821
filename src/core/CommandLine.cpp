#include "core/CommandLine.h"

#include "core/FileUtil.h"

#include <cerrno>
#include <cstring>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace rq {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string startFailure(const std::string& program, const std::string& dir,
                         const std::string& reason) {
    return "Cannot start the program \"" + program + "\" from the directory \"" + dir +
           "\": " + reason;
}

} // namespace

std::vector<std::string> splitCommandLine(std::string_view line) {
    std::vector<std::string> args;
    std::size_t p = 0;
    const std::size_t n = line.size();
    while (p < n && isBlank(line[p]))
        ++p;
    if (p >= n)
        return args;

    // The program name: quotes toggle, nothing is escaped.
    std::string program;
    bool inQuote = false;
    for (; p < n; ++p) {
        char c = line[p];
        if (c == '"') {
            inQuote = !inQuote;
            continue;
        }
        if (!inQuote && isBlank(c))
            break;
        program += c;
    }
    args.push_back(std::move(program));

    for (;;) {
        while (p < n && isBlank(line[p]))
            ++p;
        if (p >= n)
            break;
        std::string arg;
        inQuote = false;
        for (;;) {
            bool copy = true;
            std::size_t slashes = 0;
            while (p < n && line[p] == '\\') {
                ++p;
                ++slashes;
            }
            if (p < n && line[p] == '"') {
                if (slashes % 2 == 0) {
                    if (inQuote && p + 1 < n && line[p + 1] == '"')
                        ++p; // "" inside quotes: one literal quote, still quoted
                    else {
                        copy = false;
                        inQuote = !inQuote;
                    }
                }
                slashes /= 2;
            }
            arg.append(slashes, '\\');
            if (p >= n || (!inQuote && isBlank(line[p])))
                break;
            if (copy)
                arg += line[p];
            ++p;
        }
        args.push_back(std::move(arg));
    }
    return args;
}

#ifdef _WIN32

bool launchDetached(const std::string& programDir, std::string_view commandLine,
                    std::string* error) {
    std::vector<std::string> args = splitCommandLine(commandLine);
    if (args.empty()) {
        if (error)
            *error = "Cannot start a program: the command line is empty";
        return false;
    }
    std::string path = joinPath(programDir, args[0] + ".exe");
    std::string line(commandLine);
    STARTUPINFOA si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    if (!CreateProcessA(path.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        programDir.c_str(), &si, &pi)) {
        if (error)
            *error = startFailure(args[0], programDir, "error " + std::to_string(GetLastError()));
        return false;
    }
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
    return true;
}

#else

bool launchDetached(const std::string& programDir, std::string_view commandLine,
                    std::string* error) {
    std::vector<std::string> args = splitCommandLine(commandLine);
    if (args.empty() || args[0].empty()) {
        if (error)
            *error = "Cannot start a program: the command line names none";
        return false;
    }
    const std::string path = joinPath(programDir, args[0]);
    if (::access(path.c_str(), X_OK) != 0) {
        if (error)
            *error = startFailure(args[0], programDir, std::strerror(errno));
        return false;
    }

    // Everything the child needs is prepared before fork: after it only
    // async-signal-safe calls are made.
    std::vector<char*> argv;
    for (std::string& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);

    // The grandchild reports a failed exec through this pipe; a successful exec
    // closes it (close-on-exec) without writing.
    int fds[2];
    if (::pipe(fds) != 0) {
        if (error)
            *error = startFailure(args[0], programDir, std::strerror(errno));
        return false;
    }
    ::fcntl(fds[0], F_SETFD, FD_CLOEXEC);
    ::fcntl(fds[1], F_SETFD, FD_CLOEXEC);

    pid_t child = ::fork();
    if (child < 0) {
        int e = errno;
        ::close(fds[0]);
        ::close(fds[1]);
        if (error)
            *error = startFailure(args[0], programDir, std::strerror(e));
        return false;
    }
    if (child == 0) {
        // The intermediate child exits at once, so the program is reparented and
        // nobody has to wait for it.
        ::close(fds[0]);
        ::setsid();
        pid_t grandchild = ::fork();
        if (grandchild != 0) {
            if (grandchild < 0) {
                int e = errno;
                (void)!::write(fds[1], &e, sizeof e);
            }
            ::_exit(0);
        }
        int e = 0;
        if (::chdir(programDir.c_str()) == 0)
            ::execv(path.c_str(), argv.data());
        e = errno;
        (void)!::write(fds[1], &e, sizeof e);
        ::_exit(127);
    }

    ::close(fds[1]);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    int childErrno = 0;
    ssize_t got;
    do {
        got = ::read(fds[0], &childErrno, sizeof childErrno);
    } while (got < 0 && errno == EINTR);
    ::close(fds[0]);
    if (got == static_cast<ssize_t>(sizeof childErrno)) {
        if (error)
            *error = startFailure(args[0], programDir, std::strerror(childErrno));
        return false;
    }
    return true;
}

#endif

} // namespace rq

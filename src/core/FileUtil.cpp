#include "core/FileUtil.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <future>
#include <sys/stat.h>
#include <unistd.h>

namespace rq {

std::string programDirectory() {
    if (const char* home = std::getenv("RQPDEV_HOME"); home && *home) {
        std::string dir = home;
        while (dir.size() > 1 && dir.back() == '/')
            dir.pop_back();
        return dir;
    }
    char buf[4096];
    ssize_t n = ::readlink("/proc/self/exe", buf, sizeof buf - 1);
    if (n <= 0)
        return ".";
    std::string exe(buf, static_cast<size_t>(n));
    auto slash = exe.rfind('/');
    return slash == std::string::npos ? "." : (slash == 0 ? "/" : exe.substr(0, slash));
}

std::string joinPath(std::string_view dir, std::string_view name) {
    std::string out(dir);
    if (!out.empty() && out.back() != '/')
        out += '/';
    out += name;
    return out;
}

std::string userGuidePath(const std::string& programDir) {
    for (const char* page : {"guide/index.html", "../../share/doc/rqpdev/guide/index.html"}) {
        const std::string path = joinPath(programDir, page);
        char resolved[PATH_MAX];
        if (fileExists(path) && ::realpath(path.c_str(), resolved))
            return resolved;
    }
    return {};
}

bool fileExists(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool pathExists(const std::string& path) {
    struct stat st;
    return ::lstat(path.c_str(), &st) == 0;
}

bool canOpenRegularFile(const std::string& path) {
    struct stat st;
    if (::stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode))
        return false;
    int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0)
        return false;
    ::close(fd);
    return true;
}

bool directoryExists(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool makeDirectory(const std::string& path) {
    return ::mkdir(path.c_str(), 0777) == 0;
}

// The file that a write to `path` must replace: the path itself, or, when it is a
// symbolic link to an existing file, that file (the link stays a link).
static std::string writeTarget(const std::string& path) {
    struct stat st;
    if (::lstat(path.c_str(), &st) != 0 || !S_ISLNK(st.st_mode))
        return path;
    char* resolved = ::realpath(path.c_str(), nullptr);
    if (!resolved)
        return path; // a dangling link is replaced as before
    std::string target = resolved;
    std::free(resolved);
    return target;
}

bool writeFileAtomic(const std::string& given, std::string_view bytes, std::string* error) {
    return writeFileAtomic(given, bytes, error, nullptr);
}

bool writeFileAtomic(const std::string& given, std::string_view bytes, std::string* error,
                     const std::function<bool(std::string*)>& check) {
    // A file-size limit must give an error, not kill the program in the middle of
    // a save.
    static const bool xfszIgnored = [] {
        ::signal(SIGXFSZ, SIG_IGN);
        return true;
    }();
    (void)xfszIgnored;
    // The check reads the bytes on another thread while they are written; what it
    // refuses never replaces the file, and its reason comes before a write's.
    std::string refused;
    std::future<bool> checked;
    if (check)
        checked = std::async(std::launch::async, check, &refused);
    auto fail = [&](const std::string& what, int err) {
        if (checked.valid() && !checked.get()) {
            if (error)
                *error = refused;
            return false;
        }
        if (error)
            *error = what + ": " + std::strerror(err);
        return false;
    };
    const std::string path = writeTarget(given);
    auto slash = path.rfind('/');
    std::string dir = slash == std::string::npos ? "." : path.substr(0, slash);
    if (dir.empty())
        dir = "/";
    std::string temp = joinPath(dir, "." + path.substr(slash + 1) + ".XXXXXX");
    int fd = ::mkstemp(temp.data());
    if (fd < 0)
        return fail("cannot create a file in " + dir, errno);
    // The new file keeps the mode of the one it replaces (0644 for a new one).
    struct stat st;
    mode_t mode = ::stat(path.c_str(), &st) == 0 ? (st.st_mode & 07777) : 0644;
    ::fchmod(fd, mode);
    const char* p = bytes.data();
    size_t left = bytes.size();
    while (left > 0) {
        ssize_t w = ::write(fd, p, left);
        if (w < 0) {
            if (errno == EINTR)
                continue;
            int err = errno;
            ::close(fd);
            ::unlink(temp.c_str());
            return fail("cannot write", err);
        }
        p += w;
        left -= static_cast<size_t>(w);
    }
    if (::fdatasync(fd) != 0 && errno != EINVAL && errno != EROFS) {
        int err = errno;
        ::close(fd);
        ::unlink(temp.c_str());
        return fail("cannot write", err);
    }
    if (::close(fd) != 0) {
        int err = errno;
        ::unlink(temp.c_str());
        return fail("cannot write", err);
    }
    if (checked.valid() && !checked.get()) {
        ::unlink(temp.c_str());
        if (error)
            *error = refused;
        return false;
    }
    if (::rename(temp.c_str(), path.c_str()) != 0) {
        int err = errno;
        ::unlink(temp.c_str());
        return fail("cannot replace the file", err);
    }
    return true;
}

bool readWholeFile(const std::string& path, std::string& bytes, std::string* error) {
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) {
        if (error)
            *error = std::strerror(errno);
        return false;
    }
    bytes.clear();
    // One allocation for a file whose size is known.
    struct stat st;
    if (::fstat(::fileno(f), &st) == 0 && S_ISREG(st.st_mode) && st.st_size > 0)
        bytes.reserve(static_cast<size_t>(st.st_size));
    char buf[65536];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0)
        bytes.append(buf, n);
    bool ok = !std::ferror(f);
    std::fclose(f);
    if (!ok && error)
        *error = "read error";
    return ok;
}

// What a file that is not a regular file is, for messages.
static const char* kindOf(mode_t mode) {
    if (S_ISDIR(mode))
        return "a directory";
    if (S_ISFIFO(mode))
        return "a named pipe (FIFO)";
    if (S_ISCHR(mode) || S_ISBLK(mode))
        return "a device";
    if (S_ISSOCK(mode))
        return "a socket";
    return "not a plain file";
}

int openRegularFile(const std::string& path, long long* size, std::string* error) {
    auto refuse = [&](mode_t mode) {
        if (error)
            *error = std::string("not a regular file: it is ") + kindOf(mode);
        return -1;
    };
    auto failed = [&](int err) {
        if (error)
            *error = std::strerror(err);
        return -1;
    };
    struct stat st;
    if (::stat(path.c_str(), &st) != 0)
        return failed(errno);
    if (!S_ISREG(st.st_mode))
        return refuse(st.st_mode);
    // Non-blocking and checked again on the open file: the path may have been
    // replaced by a FIFO since.
    int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0)
        return failed(errno);
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        int err = errno;
        ::close(fd);
        return S_ISREG(st.st_mode) ? failed(err) : refuse(st.st_mode);
    }
    if (size)
        *size = static_cast<long long>(st.st_size);
    return fd;
}

bool readRegularFile(const std::string& path, std::string& bytes, std::string* error) {
    long long size = 0;
    int fd = openRegularFile(path, &size, error);
    if (fd < 0)
        return false;
    bytes.clear();
    if (size > 0)
        bytes.reserve(static_cast<size_t>(size));
    char buf[65536];
    for (;;) {
        ssize_t n = ::read(fd, buf, sizeof buf);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            int err = errno;
            ::close(fd);
            if (error)
                *error = std::strerror(err);
            return false;
        }
        if (n == 0)
            break;
        bytes.append(buf, static_cast<size_t>(n));
    }
    ::close(fd);
    return true;
}

} // namespace rq

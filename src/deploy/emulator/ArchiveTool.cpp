#include "deploy/emulator/ArchiveTool.h"

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace rq {

namespace {

constexpr std::size_t kBlock = 64 * 1024;

struct ArchiveFree {
    void operator()(archive* a) const { archive_read_free(a); }
};
using Reader = std::unique_ptr<archive, ArchiveFree>;

// The reader's reason; libarchive may have none to give.
std::string reason(archive* a) {
    const char* text = archive_error_string(a);
    return text ? text : "unknown error";
}

// A reader of the whole file from its start: gzip'd tar, or (raw) one gzip stream.
Reader openReader(int fd, bool raw, std::string* error) {
    if (::lseek(fd, 0, SEEK_SET) != 0) {
        if (error)
            *error = std::string("cannot read the archive: ") + std::strerror(errno);
        return nullptr;
    }
    Reader a(archive_read_new());
    archive_read_support_filter_gzip(a.get());
    if (raw) {
        archive_read_support_format_raw(a.get());
    } else {
        archive_read_support_format_tar(a.get());
        archive_read_support_format_gnutar(a.get());
    }
    if (archive_read_open_fd(a.get(), fd, kBlock) != ARCHIVE_OK) {
        if (error)
            *error = "not a readable archive: " + reason(a.get());
        return nullptr;
    }
    return a;
}

std::string memberName(archive_entry* entry) {
    const char* name = archive_entry_pathname(entry);
    return name ? name : "";
}

// The member's path parts: "./a//b/" -> a, b.
std::vector<std::string> pathParts(const std::string& name) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (start <= name.size()) {
        std::size_t end = name.find('/', start);
        if (end == std::string::npos)
            end = name.size();
        const std::string part = name.substr(start, end - start);
        if (!part.empty() && part != ".")
            parts.push_back(part);
        start = end + 1;
    }
    return parts;
}

// Opens (making it when missing) the directory `name` inside `dirFd`, never through
// a link.
int openOrMakeDirectory(int dirFd, const std::string& name) {
    int fd = ::openat(dirFd, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0 && errno == ENOENT) {
        if (::mkdirat(dirFd, name.c_str(), 0755) != 0 && errno != EEXIST)
            return -1;
        fd = ::openat(dirFd, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    }
    return fd;
}

bool writeMember(archive* a, int fileFd) {
    const void* block = nullptr;
    size_t size = 0;
    la_int64_t offset = 0;
    for (;;) {
        const int r = archive_read_data_block(a, &block, &size, &offset);
        if (r == ARCHIVE_EOF)
            return true;
        if (r != ARCHIVE_OK)
            return false;
        if (::lseek(fileFd, offset, SEEK_SET) != offset)
            return false;
        const char* p = static_cast<const char*>(block);
        while (size > 0) {
            ssize_t written = ::write(fileFd, p, size);
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0)
                return false;
            p += written;
            size -= static_cast<std::size_t>(written);
        }
    }
}

} // namespace

bool listArchive(int fd, std::vector<std::string>& names, std::string* error) {
    names.clear();
    Reader a = openReader(fd, false, error);
    if (!a)
        return false;
    archive_entry* entry = nullptr;
    int r;
    while ((r = archive_read_next_header(a.get(), &entry)) == ARCHIVE_OK) {
        const mode_t type = archive_entry_filetype(entry);
        // Hard links carry a regular type and a target: refused as well.
        if ((type != AE_IFREG && type != AE_IFDIR) || archive_entry_hardlink(entry)) {
            if (error)
                *error = "archive holds a member that is not a plain file or directory";
            return false;
        }
        names.push_back(memberName(entry));
        if (archive_read_data_skip(a.get()) != ARCHIVE_OK)
            break;
    }
    if (r != ARCHIVE_EOF) {
        if (error)
            *error = "not a readable archive: " + reason(a.get());
        return false;
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

bool readArchiveMember(int fd, const std::string& member, std::string& bytes, std::size_t limit,
                       std::string* error) {
    bytes.clear();
    Reader a = openReader(fd, false, error);
    if (!a)
        return false;
    archive_entry* entry = nullptr;
    while (archive_read_next_header(a.get(), &entry) == ARCHIVE_OK) {
        if (memberName(entry) != member) {
            archive_read_data_skip(a.get());
            continue;
        }
        char block[4096];
        la_ssize_t got;
        while ((got = archive_read_data(a.get(), block, sizeof block)) > 0) {
            const std::size_t keep = std::min<std::size_t>(static_cast<std::size_t>(got),
                                                           limit - std::min(limit, bytes.size()));
            bytes.append(block, keep);
        }
        return got == 0;
    }
    if (error)
        *error = "no member " + member;
    return false;
}

bool isPlainGzipStream(int fd) {
    {
        // Anything that reads as a tar archive is not a plain stream.
        Reader tar = openReader(fd, false, nullptr);
        archive_entry* entry = nullptr;
        if (tar && archive_read_next_header(tar.get(), &entry) == ARCHIVE_OK)
            return false;
    }
    Reader a = openReader(fd, true, nullptr);
    archive_entry* entry = nullptr;
    if (!a || archive_read_next_header(a.get(), &entry) != ARCHIVE_OK ||
        archive_filter_code(a.get(), 0) != ARCHIVE_FILTER_GZIP)
        return false;
    char block[kBlock];
    la_ssize_t got;
    while ((got = archive_read_data(a.get(), block, sizeof block)) > 0) {
    }
    return got == 0;
}

bool extractArchive(int fd, int directoryFd, std::string* error) {
    auto fail = [error](const std::string& text) {
        if (error)
            *error = text;
        return false;
    };
    Reader a = openReader(fd, false, error);
    if (!a)
        return false;
    archive_entry* entry = nullptr;
    int r;
    while ((r = archive_read_next_header(a.get(), &entry)) == ARCHIVE_OK) {
        const std::string name = memberName(entry);
        const mode_t type = archive_entry_filetype(entry);
        if ((type != AE_IFREG && type != AE_IFDIR) || archive_entry_hardlink(entry))
            return fail("refused member " + name + ": not a plain file or directory");
        const std::vector<std::string> parts = pathParts(name);
        if (!unsafeMemberName({name}).empty())
            return fail("refused member " + name);
        if (parts.empty())
            continue;
        // Walk the directories, each opened without following a link.
        const std::size_t dirs = type == AE_IFDIR ? parts.size() : parts.size() - 1;
        int current = ::dup(directoryFd);
        for (std::size_t i = 0; current >= 0 && i < dirs; ++i) {
            const int next = openOrMakeDirectory(current, parts[i]);
            ::close(current);
            current = next;
        }
        if (current < 0)
            return fail("cannot make the directory for " + name + ": " + std::strerror(errno));
        if (type == AE_IFREG) {
            const int out = ::openat(current, parts.back().c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0644);
            const int openErrno = errno;
            ::close(current);
            if (out < 0)
                return fail("cannot write " + name + ": " + std::strerror(openErrno));
            const bool written = writeMember(a.get(), out);
            if (::close(out) != 0 || !written)
                return fail("cannot write " + name);
        } else {
            ::close(current);
        }
    }
    if (r != ARCHIVE_EOF)
        return fail("not a readable archive: " + reason(a.get()));
    return true;
}

} // namespace rq

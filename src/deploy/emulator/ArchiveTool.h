#pragma once
// The gzip'd tar archives that reach the emulated device, read with libarchive from
// one open file: what is checked is exactly what is unpacked, whatever happens to
// any path meanwhile. Only plain files and directories are taken, with no absolute
// name and no ".."; owners and modes are never restored.

#include <cstddef>
#include <string>
#include <vector>

namespace rq {

// The member names; false with a reason when the archive cannot be read or a
// member is not a plain file or directory.
bool listArchive(int fd, std::vector<std::string>& names, std::string* error);
// The first problem name ("" when every name is safe to unpack).
std::string unsafeMemberName(const std::vector<std::string>& names);
// The bytes of one member (at most `limit` bytes are kept).
bool readArchiveMember(int fd, const std::string& member, std::string& bytes, std::size_t limit,
                       std::string* error);
// Whether the file is one intact gzip stream that holds no tar archive (a start-up
// image is sent so).
bool isPlainGzipStream(int fd);
// Unpacks into the directory open as `directoryFd`: directories with mode 0755,
// files with 0644, each path walked without following links.
bool extractArchive(int fd, int directoryFd, std::string* error);

} // namespace rq

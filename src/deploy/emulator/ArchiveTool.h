#pragma once
// The gzip'd tar archives that reach the emulated device, handled with the
// system's `tar` as the device does. Every archive is checked before anything is
// unpacked: only plain files and directories, no absolute name, no "..".

#include <string>
#include <vector>

namespace rq {

// The member names; false with a reason when tar cannot read the archive or a
// member is not a plain file or directory.
bool listArchive(const std::string& archive, std::vector<std::string>& names, std::string* error);
// The first problem name ("" when every name is safe to unpack).
std::string unsafeMemberName(const std::vector<std::string>& names);
// The bytes of one member (at most `limit` bytes are kept).
bool readArchiveMember(const std::string& archive, const std::string& member, std::string& bytes,
                       std::size_t limit, std::string* error);
// Whether the file is one intact gzip stream that holds no tar archive (a start-up
// image is sent so).
bool isPlainGzipStream(const std::string& file);
// Unpacks into an existing directory.
bool extractArchive(const std::string& archive, const std::string& directory, std::string* error);

} // namespace rq

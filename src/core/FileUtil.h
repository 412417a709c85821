#pragma once
// Paths, directories and whole-file writing.

#include <functional>
#include <string>
#include <string_view>

namespace rq {

// The directory that holds the program: RQPDEV_HOME when set, else the directory
// of the running executable.
std::string programDirectory();
std::string joinPath(std::string_view dir, std::string_view name);
// The start page of the user guide: guide/index.html in the program directory (the
// build tree), else share/doc/rqpdev/guide/index.html beside an installed program
// directory (PREFIX/lib/rqpdev). Empty when neither exists.
std::string userGuidePath(const std::string& programDir);

bool fileExists(const std::string& path);
// Whether anything at all stands at the path: a file of any kind, or a link (even
// one that leads nowhere).
bool pathExists(const std::string& path);
// Whether the path is a regular file (links followed) that can be opened for
// reading; never blocks, whatever stands there.
bool canOpenRegularFile(const std::string& path);
bool directoryExists(const std::string& path);
// Creates one directory; false when it exists already or cannot be made.
bool makeDirectory(const std::string& path);

// Writes the bytes to a temporary file in the same directory and renames it over
// the target, so the target is either the old file or the whole new one. False
// with a reason in *error.
bool writeFileAtomic(const std::string& path, std::string_view bytes, std::string* error);
// The same with a check of the bytes, run on another thread while they are being
// written: the new file replaces the target only when the check passes; otherwise
// the target stays as it was and *error holds the check's reason.
bool writeFileAtomic(const std::string& path, std::string_view bytes, std::string* error,
                     const std::function<bool(std::string* reason)>& check);
bool readWholeFile(const std::string& path, std::string& bytes, std::string* error);
// The same for a file that must be a regular file once links are followed: a FIFO,
// a device or a directory is refused with a reason (and never opened for reading,
// so a FIFO without writer cannot block).
bool readRegularFile(const std::string& path, std::string& bytes, std::string* error);
// The open step of readRegularFile: a descriptor open for reading (the caller
// closes it) and the file's size, or -1 with the same reasons.
int openRegularFile(const std::string& path, long long* size, std::string* error);

} // namespace rq

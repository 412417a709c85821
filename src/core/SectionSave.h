#pragma once
// One file of a project saved from bytes made beforehand. A command that compares
// what a save would write with the file on disk (rename, import) makes the bytes
// of a file once for the comparison, and several files can be made, compared and
// written side by side: nothing here touches the document.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace rq {

class ProjectDocument;

// The bytes Save writes for file `index` (0 = the project file): its text, in the
// device code page when that is not UTF-8 and the text is not plain ASCII.
// `sizeHint`, the size they are expected to have (the file's on disk), spares the
// text growing step by step.
std::string sectionFileBytes(const ProjectDocument& doc, int index, std::size_t sizeHint = 0);

// Writes the bytes of file `index` into `dir` through the checked save: bytes that
// the file's own reader would refuse (a value holding '"', '<' or '&', which the
// writers store unescaped) never replace the old file, and the new file replaces
// it whole or not at all. The check reads the bytes while they are being written
// to the temporary file. False with the reason in *error; the file on disk is
// then as it was.
bool writeSectionFile(int index, const std::string& dir, std::string_view bytes,
                      std::string* error);

// Runs work(0) .. work(count - 1) side by side, work(0) on the calling thread,
// and gives their results in that order. For work on different files that only
// reads the document (making, comparing and writing file bytes).
std::vector<bool> sideBySide(std::size_t count, const std::function<bool(std::size_t)>& work);

} // namespace rq

#include "core/SectionSave.h"

#include "core/FileUtil.h"
#include "core/ProjectDocument.h"
#include "core/ProjectFile.h"
#include "core/SectionTable.h"
#include "core/TextEncoding.h"
#include "core/XmlStream.h"

#include <future>
#include <libxml/parser.h>

namespace rq {

std::string sectionFileBytes(const ProjectDocument& doc, int index, std::size_t sizeHint) {
    std::string text;
    text.reserve(sizeHint);
    if (index == 0)
        writeProjectFile(doc.model(), text);
    else
        doc.section(index).write(text);
    if (!isAscii(text) && !deviceCodePageIsUtf8())
        text = toDeviceXml(text);
    return text;
}

bool writeSectionFile(int index, const std::string& dir, std::string_view bytes,
                      std::string* error) {
    const std::string path = joinPath(dir, kSectionFiles[index]);
    // The writers store most values unescaped: a file that its own reader would
    // refuse is never written over the old one. The parser's global state is set
    // up before the check parses on its thread.
    xmlInitParser();
    return writeFileAtomic(path, bytes, error, [&](std::string* reason) {
        std::string why;
        if (checkXmlWellFormed(bytes, path, &why))
            return true;
        *reason = "not saved, the file on disk is kept: the section holds a value with '\"', "
                  "'<' or '&', which the file cannot store (" +
                  why + ")";
        return false;
    });
}

std::vector<bool> sideBySide(std::size_t count, const std::function<bool(std::size_t)>& work) {
    std::vector<bool> results(count, false);
    if (count == 0)
        return results;
    // The parser's global state is set up before any thread parses.
    xmlInitParser();
    std::vector<std::future<bool>> others;
    for (std::size_t k = 1; k < count; ++k)
        others.push_back(std::async(std::launch::async, work, k));
    results[0] = work(0);
    for (std::size_t k = 1; k < count; ++k)
        results[k] = others[k - 1].get();
    return results;
}

} // namespace rq

#include "core/ProjectDocument.h"

#include "core/FileUtil.h"
#include "core/ProjectFile.h"
#include "core/TextEncoding.h"

#include <filesystem>

namespace rq {

ProjectDocument::ProjectDocument(const Catalogs& catalogs, MessageSink& sink,
                                 std::array<ConfigSection*, kSectionCount - 1> sections)
    : catalogs_(catalogs), sink_(sink), sections_(sections) {}

void ProjectDocument::clear() {
    for (ConfigSection* s : sections_)
        s->clear();
    model_ = ProjectModel{};
}

bool ProjectDocument::createDirectories(const std::string& parent, const std::string& name) {
    std::string dir = joinPath(parent, name);
    if (!makeDirectory(dir) || !makeDirectory(joinPath(dir, "hisdata")) ||
        !makeDirectory(joinPath(dir, "data"))) {
        sink_.showMessage("Create directory failed!", MessageIcon::Stop);
        return false;
    }
    return true;
}

// The full path of a directory, without a trailing separator.
static std::string fullDirectoryPath(const std::string& dir) {
    std::error_code ec;
    std::string full = std::filesystem::absolute(dir, ec).lexically_normal().string();
    if (ec)
        full = dir;
    while (full.size() > 1 && full.back() == '/')
        full.pop_back();
    return full;
}

bool ProjectDocument::open(const std::string& directory, std::string* error) {
    const std::string dir = fullDirectoryPath(directory);
    clear();
    for (int i = 0; i < kSectionCount; ++i) {
        std::string reason;
        if (loadSection(i, dir, &reason))
            continue;
        if (i < kRequiredSections) {
            if (error)
                *error = joinPath(dir, kSectionFiles[i]) + ": " + reason;
            clear();
            return false;
        }
        // An optional file that is missing or unreadable leaves its section empty.
        section(i).clear();
    }
    makeDirectory(joinPath(dir, "data"));
    makeDirectory(joinPath(dir, "hisdata"));
    model_.projectDirectory = dir;
    model_.modified = false;
    return true;
}

bool ProjectDocument::loadSection(int index, const std::string& dir, std::string* error) {
    model_.currentSection = index;
    const std::string path = joinPath(dir, kSectionFiles[index]);
    if (index == 0)
        return readProjectFile(path, model_, catalogs_.hmi, error);
    ReadContext ctx{sink_, &catalogs_.hmi, &catalogs_.io, {}};
    bool ok = section(index).read(path, ctx);
    if (!ok && error)
        *error = ctx.error.empty() ? "cannot be read" : ctx.error;
    return ok;
}

std::string ProjectDocument::sectionText(int index) const {
    std::string text;
    if (index == 0)
        writeProjectFile(model_, text);
    else
        section(index).write(text);
    return text;
}

bool ProjectDocument::saveSection(int index, const std::string& dir, std::string* error) {
    model_.currentSection = index;
    std::string text = sectionText(index);
    const std::string path = joinPath(dir, kSectionFiles[index]);
    if (isAscii(text) || deviceCodePageIsUtf8())
        return writeFileAtomic(path, text, error);
    return writeFileAtomic(path, toDeviceXml(text), error);
}

SaveReport ProjectDocument::saveAll() {
    SaveReport report;
    const std::string& dir = model_.projectDirectory;
    for (int i = 0; i < kSectionCount; ++i) {
        std::string reason;
        if (!saveSection(i, dir, &reason))
            report.failures.push_back(joinPath(dir, kSectionFiles[i]) + ": " + reason);
    }
    model_.modified = false;
    return report;
}

} // namespace rq

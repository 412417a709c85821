#include "sections/hmiwindow/WindowFiles.h"

#include "core/FileUtil.h"
#include "core/HmiDeviceCatalog.h"

#include <charconv>
#include <cstdio>

namespace rq {

bool isReservedWindowFileName(std::string_view fileName) {
    for (const char* reserved : kReservedWindowFileNames)
        if (fileName == reserved)
            return true;
    return false;
}

std::string windowFileNameWithXml(std::string_view typed) {
    std::string name(typed);
    if (typed.find("xml") == std::string_view::npos)
        name += ".xml";
    return name;
}

ScreenSize windowScreenSize(const HmiDeviceType* hmiType) {
    if (!hmiType)
        return {};
    return {hmiType->screenWidth, hmiType->screenHeight};
}

namespace {

void appendInt(std::string& out, int value) {
    char buf[16];
    auto r = std::to_chars(buf, buf + sizeof buf, value);
    out.append(buf, r.ptr);
}

void appendProperty(std::string& out, const char* name, const char* type, int value) {
    out += "<property name=\"";
    out += name;
    out += "\" type=\"";
    out += type;
    out += "\" value=\"";
    appendInt(out, value);
    out += "\" />\r\n";
}

} // namespace

std::string windowTemplateText(int width, int height) {
    std::string out;
    out.reserve(640);
    out += "<?xml version=\"1.0\" ?>\r\n";
    out += "<hmiwidget>\r\n";
    out += "<widget name=\"window\"  class=\"window\">\r\n";
    out += "<properties>\r\n";
    appendProperty(out, "left", "short", 0);
    appendProperty(out, "right", "short", width);
    appendProperty(out, "top", "short", 0);
    appendProperty(out, "bottom", "short", height);
    appendProperty(out, "visible", "uchar", 1);
    appendProperty(out, "noredraw", "uchar", 0);
    appendProperty(out, "style", "ulong", 0);
    appendProperty(out, "bkcolor", "ulong", 16777215); // 0xFFFFFF, white
    out += "</properties>\r\n";
    out += "</widget>\r\n";
    out += "</hmiwidget>\r\n";
    return out;
}

WindowFileResult createWindowFileIfMissing(const std::string& projectDirectory,
                                           const std::string& fileName, std::string_view content,
                                           std::string* error) {
    const std::string path = joinPath(projectDirectory, fileName);
    if (canOpenRegularFile(path))
        return WindowFileResult::Exists;
    // A file that is there but cannot be opened (or a FIFO, a device, a link that
    // leads nowhere) is not replaced.
    if (pathExists(path)) {
        if (error)
            *error = "it exists but cannot be opened";
        return WindowFileResult::Failed;
    }
    std::string reason;
    if (!writeFileAtomic(path, content, &reason)) {
        if (error)
            *error = reason;
        return WindowFileResult::Failed;
    }
    return WindowFileResult::Created;
}

} // namespace rq

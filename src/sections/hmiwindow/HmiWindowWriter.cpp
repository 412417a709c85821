// Writing hmiwindow.xml: CR LF line ends, one tab per level, values as held.

#include "sections/hmiwindow/HmiWindowSection.h"

namespace rq {

namespace {

void writeWindow(std::string& out, const HmiWindow& w) {
    out += "\t<window name=\"";
    out += w.name;
    out += "\" caption=\"";
    out += w.caption;
    out += "\" filename=\"";
    out += w.filename;
    out += w.displayOnStartup ? "\" display_on_startup=\"1\" enable=\""
                              : "\" display_on_startup=\"0\" enable=\"";
    out += w.enable;
    out += "\" />\r\n";
}

} // namespace

void HmiWindowSection::write(std::string& out) const {
    out += "<?xml version=\"1.0\" ?>\r\n";
    out += "<hmiwindow>\r\n";
    for (const auto& w : windows)
        writeWindow(out, w);
    out += "</hmiwindow>\r\n";
}

} // namespace rq

// Reading hmiwindow.xml: no attribute is required and names are not checked here.

#include "core/SectionRead.h"
#include "core/Xml.h"
#include "sections/hmiwindow/HmiWindowSection.h"

namespace rq {

namespace {

HmiWindow readWindow(const XmlStream& s) {
    HmiWindow w;
    w.name = s.attr("name");
    w.caption = s.attr("caption");
    w.filename = s.attr("filename");
    w.displayOnStartup = parseDecimal(s.attrView("display_on_startup")) != 0 ? 1 : 0;
    w.enable = s.attr("enable");
    if (w.enable.empty())
        w.enable = "1";
    return w;
}

} // namespace

bool HmiWindowSection::read(const std::string& path, ReadContext& ctx) {
    return readSectionXml(
        XmlInput::file(path), "hmiwindow", ctx, [this] { clear(); },
        [this](XmlStream& s, ReadContext&) {
            for (auto n = s.children(); n.next();) {
                if (s.is("window"))
                    windows.push_back(readWindow(s));
            }
            return true;
        });
}

} // namespace rq

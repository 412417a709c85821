// Reading hmiwindow.xml: no attribute is required and names are not checked here.

#include "core/Xml.h"
#include "sections/hmiwindow/HmiWindowSection.h"

namespace rq {

namespace {

HmiWindow readWindow(const xmlNode* node) {
    HmiWindow w;
    w.name = ReadAttrText(node, "name");
    w.caption = ReadAttrText(node, "caption");
    w.filename = ReadAttrText(node, "filename");
    w.displayOnStartup = parseDecimal(ReadAttrText(node, "display_on_startup")) != 0 ? 1 : 0;
    w.enable = ReadAttrText(node, "enable");
    if (w.enable.empty())
        w.enable = "1";
    return w;
}

} // namespace

bool HmiWindowSection::read(const std::string& path, ReadContext& ctx) {
    clear();
    XmlDocument doc;
    if (!doc.load(path, "hmiwindow", &ctx.error))
        return false;
    for (const xmlNode* n = doc.root()->children; n; n = n->next) {
        if (isElement(n, "window"))
            windows.push_back(readWindow(n));
    }
    return true;
}

} // namespace rq

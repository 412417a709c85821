#include "core/HmiDeviceCatalog.h"

#include "core/Xml.h"

namespace rq {

namespace {

void hmidevice(const xmlNode* el, std::deque<HmiDeviceType>& out) {
    HmiDeviceType t;
    t.name = ReadAttrText(el, "name");
    if (t.name.empty())
        return;
    t.screenWidth = parseDecimal(ReadAttrText(el, "screen_width"));
    t.screenHeight = parseDecimal(ReadAttrText(el, "screen_height"));
    t.hasCfCard = ReadAttrText(el, "has_cfcard") == "1";
    t.display = ReadAttrText(el, "display");
    if (t.display.empty())
        t.display = t.name;
    ReadAttrNumber(el, "ladder", t.ladder);
    ReadAttrNumber(el, "fbd", t.fbd);
    ReadAttrNumber(el, "external_c", t.externalC);
    ReadAttrNumber(el, "redundancy", t.redundancy);
    out.push_back(std::move(t));
}

} // namespace

bool HmiDeviceCatalog::LoadHmiDeviceCatalog(const std::string& path) {
    XmlDocument doc;
    std::string error;
    if (!doc.load(path, "hmidevices", &error))
        return false;
    for (const xmlNode* n = doc.root()->children; n; n = n->next)
        if (isElement(n, "hmidevice"))
            hmidevice(n, entries_);
    return true;
}

const HmiDeviceType* HmiDeviceCatalog::FindByName(std::string_view name) const {
    for (const auto& e : entries_)
        if (e.name == name)
            return &e;
    return nullptr;
}

const HmiDeviceType* HmiDeviceCatalog::FindByDisplay(std::string_view text) const {
    for (const auto& e : entries_)
        if (e.display == text)
            return &e;
    return nullptr;
}

} // namespace rq

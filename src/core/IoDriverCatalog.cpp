#include "core/IoDriverCatalog.h"

#include "core/Xml.h"

namespace rq {

namespace {

void cfgTypes(const xmlNode* el, IoProduct& product) {
    for (const xmlNode* n = el->children; n; n = n->next)
        if (n->type == XML_ELEMENT_NODE)
            product.cfgTypes.push_back({ReadAttrText(n, "code"), ReadAttrText(n, "display")});
}

void productType(const xmlNode* el, IoDeviceDriver& driver) {
    IoProduct product;
    product.name = ReadAttrText(el, "name");
    for (const xmlNode* n = el->children; n; n = n->next)
        if (isElement(n, "cfg_types"))
            cfgTypes(n, product);
    driver.products.push_back(std::move(product));
}

void products(const xmlNode* el, IoDeviceDriver& driver) {
    for (const xmlNode* n = el->children; n; n = n->next)
        if (isElement(n, "product_type"))
            productType(n, driver);
}

void devicedriver(const xmlNode* el, IoLinkKind& link) {
    IoDeviceDriver& d = link.drivers.emplace_back();
    d.name = ReadAttrText(el, "name");
    d.description = ReadAttrText(el, "description");
    d.filename = ReadAttrText(el, "filename");
    d.link = &link;
    for (const xmlNode* n = el->children; n; n = n->next) {
        if (isElement(n, "datatype"))
            d.dataTypes.push_back({ReadAttrText(n, "name"), ReadAttrText(n, "vartype")});
        else if (isElement(n, "products"))
            products(n, d);
    }
}

void link(const xmlNode* el, std::deque<IoLinkKind>& links) {
    IoLinkKind& l = links.emplace_back();
    l.name = ReadAttrText(el, "name");
    for (const xmlNode* n = el->children; n; n = n->next)
        if (isElement(n, "devicedriver"))
            devicedriver(n, l);
}

} // namespace

bool IoDriverCatalog::load(const std::string& path) {
    XmlDocument doc;
    std::string error;
    if (!doc.load(path, "iodevicedrivers", &error))
        return false;
    for (const xmlNode* n = doc.root()->children; n; n = n->next)
        if (isElement(n, "link"))
            link(n, links_);
    return true;
}

const IoLinkKind* IoDriverCatalog::FindLinkKind(std::string_view name) const {
    for (const auto& l : links_)
        if (l.name == name)
            return &l;
    return nullptr;
}

const IoDeviceDriver* IoDriverCatalog::FindDriver(std::string_view name) const {
    for (const auto& l : links_) {
        // The search ends at the first link without drivers.
        if (l.drivers.empty())
            return nullptr;
        for (const auto& d : l.drivers)
            if (d.name == name)
                return &d;
    }
    return nullptr;
}

std::vector<const IoDeviceDriver*> IoDriverCatalog::ListDrivers(std::string_view linkName) const {
    std::vector<const IoDeviceDriver*> out;
    if (const IoLinkKind* l = FindLinkKind(linkName))
        for (const auto& d : l->drivers)
            out.push_back(&d);
    return out;
}

std::vector<const IoDataType*> IoDriverCatalog::ListDataTypes(std::string_view driverName) const {
    std::vector<const IoDataType*> out;
    if (const IoDeviceDriver* d = FindDriver(driverName))
        for (const auto& t : d->dataTypes)
            out.push_back(&t);
    return out;
}

std::vector<const IoProduct*> IoDriverCatalog::ListProducts(std::string_view driverName) const {
    std::vector<const IoProduct*> out;
    if (const IoDeviceDriver* d = FindDriver(driverName))
        for (const auto& p : d->products)
            out.push_back(&p);
    return out;
}

std::vector<const IoCfgType*> IoDriverCatalog::ListCfgTypes(const IoProduct& product) {
    std::vector<const IoCfgType*> out;
    for (const auto& c : product.cfgTypes)
        out.push_back(&c);
    return out;
}

std::string IoDriverCatalog::DriverDescription(const IoDeviceDriver* driver) {
    return driver ? driver->description : std::string();
}

std::string IoDriverCatalog::DriverNameAt(std::string_view linkName, int index) const {
    const IoLinkKind* l = FindLinkKind(linkName);
    if (!l || index < 0 || static_cast<size_t>(index) >= l->drivers.size())
        return {};
    return l->drivers[index].name;
}

std::string IoDriverCatalog::ProductNameAt(std::string_view driverName, int index) const {
    const IoDeviceDriver* d = FindDriver(driverName);
    if (!d || index < 0 || static_cast<size_t>(index) >= d->products.size())
        return {};
    return d->products[index].name;
}

int IoDriverCatalog::ProductIndex(std::string_view driverName, std::string_view productName) const {
    const IoDeviceDriver* d = FindDriver(driverName);
    if (!d)
        return -1;
    for (size_t i = 0; i < d->products.size(); ++i)
        if (d->products[i].name == productName)
            return static_cast<int>(i);
    return -1;
}

std::string IoDriverCatalog::CfgTypeDisplay(std::string_view driverName,
                                            std::string_view productName,
                                            std::string_view code) const {
    const IoDeviceDriver* d = FindDriver(driverName);
    if (!d)
        return {};
    for (const auto& p : d->products) {
        if (p.name != productName)
            continue;
        for (const auto& c : p.cfgTypes)
            if (c.code == code)
                return c.display;
        return {};
    }
    return {};
}

} // namespace rq

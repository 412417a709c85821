#include "sections/device/DeviceSection.h"

#include "core/SectionRead.h"
#include "core/Xml.h"

#include <algorithm>
#include <unordered_set>

namespace rq {

const char* linkKindKeyword(LinkKind kind) {
    for (const LinkKindRow& row : kLinkKinds)
        if (row.kind == kind)
            return row.keyword;
    return "";
}

bool linkKindOfKeyword(std::string_view keyword, LinkKind& kind) {
    for (const LinkKindRow& row : kLinkKinds) {
        if (keyword == row.keyword) {
            kind = row.kind;
            return true;
        }
    }
    return false;
}

const char* dataModeShown(std::string_view keyword) {
    for (const DataModeRow& row : kDataModes)
        if (keyword == row.keyword)
            return row.shown;
    return "Circularly reading and once writing";
}

const char* dataModeKeyword(std::string_view shown) {
    for (const DataModeRow& row : kDataModes)
        if (shown == row.shown)
            return row.keyword;
    return "";
}

// ---------------------------------------------------------------------------
// Model operations

bool DeviceSection::linkNameExists(std::string_view name, const LinkItem* except) const {
    for (const LinkItem& link : links_)
        if (&link != except && link.name == name)
            return true;
    return false;
}

namespace {

// Appends a link of the kind: the common fields, `driver` set to the kind's keyword
// and the fields of that kind only.
LinkItem& appendLink(std::deque<LinkItem>& links, LinkKind kind, const LinkCommonFields& common,
                     const LinkKindFields& fields) {
    LinkItem& link = links.emplace_back();
    static_cast<LinkCommonFields&>(link) = common;
    link.driver = linkKindKeyword(kind);
    switch (kind) {
    case LinkKind::Serial:
        link.devname = fields.devname;
        link.baudrate = fields.baudrate;
        link.data_bits = fields.data_bits;
        link.parity = fields.parity;
        link.stop_bits = fields.stop_bits;
        break;
    case LinkKind::TcpClient:
        link.server_ip = fields.server_ip;
        link.server_port = fields.server_port;
        break;
    case LinkKind::TcpServer:
        link.listen_port = fields.listen_port;
        break;
    case LinkKind::None:
    case LinkKind::Ferolt:
        break;
    }
    return link;
}

} // namespace

LinkItem* DeviceSection::addLink(LinkKind kind, const LinkCommonFields& common,
                                 const LinkKindFields& fields, MessageSink& sink) {
    if (linkNameExists(common.name)) {
        sink.showMessage("The link already exist!", MessageIcon::Stop);
        return nullptr;
    }
    return &appendLink(links_, kind, common, fields);
}

bool DeviceSection::removeLink(const LinkItem* link) {
    auto it = std::find_if(links_.begin(), links_.end(),
                           [link](const LinkItem& l) { return &l == link; });
    if (it == links_.end())
        return false;
    links_.erase(it);
    return true;
}

bool DeviceSection::deviceNameExists(const LinkItem& link, std::string_view name,
                                     const DeviceItem* except) {
    for (const DeviceItem& device : link.devices)
        if (&device != except && device.name == name)
            return true;
    return false;
}

DeviceItem* DeviceSection::addDevice(LinkItem& link, DeviceItem device, MessageSink& sink) {
    if (deviceNameExists(link, device.name)) {
        sink.showMessage("The device already exist!", MessageIcon::Stop);
        return nullptr;
    }
    return &link.devices.emplace_back(std::move(device));
}

bool DeviceSection::removeDevice(LinkItem& link, const DeviceItem* device) {
    auto it = std::find_if(link.devices.begin(), link.devices.end(),
                           [device](const DeviceItem& d) { return &d == device; });
    if (it == link.devices.end())
        return false;
    link.devices.erase(it);
    return true;
}

// ---------------------------------------------------------------------------
// Reading

namespace {

class DeviceReader {
public:
    DeviceReader(DeviceSection& section, ReadContext& ctx) : section_(section), ctx_(ctx) {}

    void devices(XmlStream& s) {
        for (auto c = s.children(); c.next();)
            if (s.is("link"))
                link(s);
    }

private:
    void link(XmlStream& s) {
        LinkCommonFields common;
        common.name = s.attr("name");
        if (common.name.empty()) {
            ctx_.drop("link", "no name; left out with its devices");
            return;
        }
        common.period = s.attr("period");
        common.driver = s.attr("driver");
        common.masterlink = s.attr("masterlink");
        common.params = s.attr("params");
        common.redundtype = s.attr("redundtype");
        common.status_var = s.attr("status_var");
        common.control_var = s.attr("control_var");
        common.timeout = s.attr("timeout");
        common.enable = s.attr("enable");

        LinkKind kind;
        if (!linkKindOfKeyword(common.driver, kind)) { // dropped with its devices
            ctx_.drop("link \"" + common.name + "\"",
                      "unknown kind (driver \"" + common.driver + "\"); left out with its devices");
            return;
        }
        LinkKindFields fields;
        switch (kind) {
        case LinkKind::Serial:
            fields.devname = s.attr("devname");
            fields.baudrate = s.attr("baudrate");
            fields.data_bits = s.attr("data_bits");
            fields.parity = s.attr("parity");
            fields.stop_bits = s.attr("stop_bits");
            break;
        case LinkKind::TcpClient:
            fields.server_ip = s.attr("server_ip");
            fields.server_port = s.attr("server_port");
            break;
        case LinkKind::TcpServer:
            fields.listen_port = s.attr("server_port");
            break;
        case LinkKind::None:
        case LinkKind::Ferolt:
            break;
        }
        // The test of addLink, through a hash set: a file may hold many links.
        if (!linkNames_.insert(common.name).second) {
            ctx_.sink.showMessage("The link already exist!", MessageIcon::Stop);
            ctx_.drop("link \"" + common.name + "\"",
                      "a second link of this name; left out with its devices");
            return;
        }
        LinkItem& added = appendLink(section_.links(), kind, common, fields);
        std::unordered_set<std::string> names;
        for (auto c = s.children(); c.next();)
            if (s.is("device"))
                device(s, added, names);
    }

    void device(XmlStream& s, LinkItem& link, std::unordered_set<std::string>& names) {
        DeviceItem d;
        d.name = s.attr("name");
        if (d.name.empty()) {
            ctx_.drop("device in link \"" + link.name + "\"", "no name; left out with its data");
            return;
        }
        d.address = s.attr("address");
        d.driver = s.attr("driver");
        d.manufacturer = s.attr("manufacturer");
        d.params = s.attr("params");
        d.product = s.attr("product");
        d.status_var = s.attr("status_var");
        d.control_var = s.attr("control_var");
        d.enable = s.attr("enable");
        if (d.enable.empty())
            d.enable = "1";
        // Same test as addDevice, through a hash set: a link may hold many devices.
        if (!names.insert(d.name).second) {
            ctx_.sink.showMessage("The device already exist!", MessageIcon::Stop);
            ctx_.drop("device \"" + d.name + "\" in link \"" + link.name + "\"",
                      "a second device of this name; left out with its data");
            return;
        }
        for (auto c = s.children(); c.next();)
            if (s.is("data"))
                data(s, d);
        link.devices.push_back(std::move(d));
    }

    void data(const XmlStream& s, DeviceItem& device) {
        DeviceDataItem item;
        const std::string where = "data in device \"" + device.name + "\"";
        item.type = s.attr("type");
        if (item.type.empty()) {
            ctx_.drop(where, "no type; left out");
            return;
        }
        item.address = s.attr("address");
        if (item.address.empty()) {
            ctx_.drop(where, "no address; left out");
            return;
        }
        item.group = s.attr("group");
        item.dataname = s.attr("dataname");
        item.status_var = s.attr("status_var");
        item.mode = dataModeShown(s.attr("mode"));
        item.enable = s.attr("enable");
        if (item.enable.empty())
            item.enable = "1";
        device.data.push_back(std::move(item));
    }

    DeviceSection& section_;
    ReadContext& ctx_;
    std::unordered_set<std::string> linkNames_;
};

} // namespace

bool DeviceSection::read(const std::string& path, ReadContext& ctx) {
    return readSectionXml(
        XmlInput::file(path), "devices", ctx, [this] { clear(); },
        [this](XmlStream& s, ReadContext& c) {
            DeviceReader(*this, c).devices(s);
            return true;
        });
}

// ---------------------------------------------------------------------------
// Writing

namespace {

void writeData(std::string& out, const DeviceDataItem& d) {
    appendAttr(out, "\t\t\t<data type=\"", d.type);
    appendAttr(out, " address=\"", d.address);
    appendAttr(out, " dataname=\"", d.dataname);
    appendAttr(out, " status_var=\"", d.status_var);
    appendAttr(out, " group=\"", d.group);
    out.append(" mode=\"");
    out.append(dataModeKeyword(d.mode));
    appendAttr(out, "\" enable=\"", d.enable);
    out.append("/>\r\n");
}

void writeDevice(std::string& out, const DeviceItem& d) {
    appendAttr(out, "\t\t<device name=\"", d.name);
    appendAttr(out, " address=\"", d.address);
    appendAttr(out, " driver=\"", d.driver);
    appendAttr(out, " manufacturer=\"", d.manufacturer);
    appendAttr(out, " product=\"", d.product);
    appendAttr(out, " params=\"", d.params);
    appendAttr(out, " status_var=\"", d.status_var);
    appendAttr(out, " control_var=\"", d.control_var);
    appendAttr(out, " enable=\"", d.enable);
    out.append(">\r\n");
    for (const DeviceDataItem& item : d.data)
        writeData(out, item);
    out.append("\t\t</device>\r\n");
}

void writeLink(std::string& out, const LinkItem& l) {
    appendAttr(out, "\t<link name=\"", l.name);
    appendAttr(out, " period=\"", l.period);
    appendAttr(out, " status_var=\"", l.status_var);
    appendAttr(out, " control_var=\"", l.control_var);
    appendAttr(out, " enable=\"", l.enable);
    appendAttr(out, " redundtype=\"", l.redundtype);
    appendAttr(out, " masterlink=\"", l.masterlink);
    appendAttr(out, " timeout=\"", l.timeout);
    appendAttr(out, " params=\"", l.params);
    appendAttr(out, " driver=\"", l.driver);
    if (l.driver == "serial") {
        appendAttr(out, " devname=\"", l.devname);
        appendAttr(out, " baudrate=\"", l.baudrate);
        appendAttr(out, " data_bits=\"", l.data_bits);
        appendAttr(out, " parity=\"", l.parity);
        appendAttr(out, " stop_bits=\"", l.stop_bits);
    } else if (l.driver == "tcpclient") {
        appendAttr(out, " server_ip=\"", l.server_ip);
        appendAttr(out, " server_port=\"", l.server_port);
    } else if (l.driver == "tcpserver") {
        appendAttr(out, " server_port=\"", l.listen_port);
    }
    out.append(">\r\n");
    for (const DeviceItem& d : l.devices)
        writeDevice(out, d);
    out.append("\t</link>\r\n");
}

} // namespace

void DeviceSection::write(std::string& out) const {
    out.append("<?xml version=\"1.0\" ?>\r\n<devices>\r\n");
    for (const LinkItem& link : links_)
        writeLink(out, link);
    out.append("</devices>\r\n");
}

// ---------------------------------------------------------------------------
// Counts and checks

std::vector<std::pair<std::string, std::size_t>> DeviceSection::counts() const {
    std::size_t devices = 0, data = 0;
    for (const LinkItem& link : links_) {
        devices += link.devices.size();
        for (const DeviceItem& d : link.devices)
            data += d.data.size();
    }
    return {{"links", links_.size()}, {"devices", devices}, {"data", data}};
}

namespace {

std::string quoted(std::string_view kind, const std::string& name) {
    std::string s(kind);
    s.append(" \"").append(name).push_back('"');
    return s;
}

void checkLink(CheckContext& ctx, const LinkItem& l) {
    const std::string where = "device.xml: " + quoted("link", l.name);
    if (l.name.empty())
        ctx.finding(where + " has no name and is dropped on reading");
    LinkKind kind;
    if (!linkKindOfKeyword(l.driver, kind))
        ctx.finding(where + " has the unknown kind \"" + l.driver + "\" and is dropped on reading");
    const std::pair<const char*, const std::string*> raw[] = {
        {"name", &l.name},
        {"period", &l.period},
        {"status_var", &l.status_var},
        {"control_var", &l.control_var},
        {"enable", &l.enable},
        {"redundtype", &l.redundtype},
        {"masterlink", &l.masterlink},
        {"timeout", &l.timeout},
        {"params", &l.params},
        {"driver", &l.driver},
    };
    for (const auto& [attrName, value] : raw)
        ctx.rawValue(where + " " + attrName, *value);
    if (l.driver == "serial") {
        ctx.rawValue(where + " devname", l.devname);
        ctx.rawValue(where + " baudrate", l.baudrate);
        ctx.rawValue(where + " data_bits", l.data_bits);
        ctx.rawValue(where + " parity", l.parity);
        ctx.rawValue(where + " stop_bits", l.stop_bits);
    } else if (l.driver == "tcpclient") {
        ctx.rawValue(where + " server_ip", l.server_ip);
        ctx.rawValue(where + " server_port", l.server_port);
    } else if (l.driver == "tcpserver") {
        ctx.rawValue(where + " server_port", l.listen_port);
    }
    ctx.joinedReference(where + " status_var", l.status_var);
    ctx.joinedReference(where + " control_var", l.control_var);

    std::unordered_set<std::string_view> names;
    for (const DeviceItem& d : l.devices) {
        const std::string dwhere = where + " " + quoted("device", d.name);
        if (d.name.empty())
            ctx.finding(dwhere + " has no name and is dropped on reading");
        else if (!names.insert(d.name).second)
            ctx.finding("device.xml: duplicate " + quoted("device", d.name) + " in " +
                        quoted("link", l.name));
        const std::pair<const char*, const std::string*> draw[] = {
            {"name", &d.name},
            {"address", &d.address},
            {"driver", &d.driver},
            {"manufacturer", &d.manufacturer},
            {"product", &d.product},
            {"params", &d.params},
            {"status_var", &d.status_var},
            {"control_var", &d.control_var},
            {"enable", &d.enable},
        };
        for (const auto& [attrName, value] : draw)
            ctx.rawValue(dwhere + " " + attrName, *value);
        ctx.joinedReference(dwhere + " status_var", d.status_var);
        ctx.joinedReference(dwhere + " control_var", d.control_var);

        std::size_t index = 0;
        for (const DeviceDataItem& item : d.data) {
            ++index;
            const std::string iwhere = dwhere + " data " + std::to_string(index);
            if (item.type.empty() || item.address.empty())
                ctx.finding(iwhere + " has no type or no address and is dropped on reading");
            const std::pair<const char*, const std::string*> iraw[] = {
                {"type", &item.type},         {"address", &item.address},
                {"dataname", &item.dataname}, {"status_var", &item.status_var},
                {"group", &item.group},       {"enable", &item.enable},
            };
            for (const auto& [attrName, value] : iraw)
                ctx.rawValue(iwhere + " " + attrName, *value);
            ctx.joinedReference(iwhere + " dataname", item.dataname);
            ctx.joinedReference(iwhere + " status_var", item.status_var);
        }
    }
}

} // namespace

void DeviceSection::check(CheckContext& ctx) const {
    std::unordered_set<std::string_view> names;
    for (const LinkItem& link : links_) {
        if (!link.name.empty() && !names.insert(link.name).second)
            ctx.finding("device.xml: duplicate " + quoted("link", link.name));
        checkLink(ctx, link);
    }
}

} // namespace rq

#include "sections/device/DeviceForms.h"

#include "core/DataTypes.h"
#include "core/StorableValue.h"
#include "core/ValueChecks.h"
#include "core/Xml.h"

#include <cstring>

namespace rq {

using namespace devicetext;

namespace {

// The fields device.xml stores unescaped, by their labels: the first one that
// holds a character the file cannot store gives the shared check's message.
std::optional<std::string>
firstUnstorable(std::initializer_list<std::pair<const char*, const std::string*>> fields) {
    for (const auto& [label, value] : fields) {
        std::string_view name(label);
        if (!name.empty() && name.back() == ':')
            name.remove_suffix(1);
        if (auto message = checkStorableValue(name, *value))
            return message;
    }
    return std::nullopt;
}

struct LinkTitles {
    LinkKind kind;
    const char* add;
    const char* modify;
};
constexpr LinkTitles kTitles[] = {
    {LinkKind::Serial, "add serial communication link", "modify serial communication link"},
    {LinkKind::None, "add common serial communication link", "modify common communication link"},
    {LinkKind::TcpClient, "Add TCP network client", "modify TCP network client link"},
    {LinkKind::TcpServer, "Add TCP network server", "modify TCP network server link"},
    {LinkKind::Ferolt, "add ferolt serial communication link", "modify ferolt communication link"},
};

const LinkTitles& titles(LinkKind kind) {
    for (const LinkTitles& t : kTitles)
        if (t.kind == kind)
            return t;
    return kTitles[0];
}

// A port field: the page holds a number; text that is no number reads as 0.
long long portOf(const std::string& text) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos ||
        text.size() > 9)
        return 0;
    return std::stoll(text);
}

// "enable" as the check box "Disable ..." shows it.
bool disabledOf(const std::string& enable) {
    return !enable.empty() && enable != "1";
}

const char* productCfgKey = "product_cfg_type=";

} // namespace

const char* linkAddTitle(LinkKind kind) {
    return titles(kind).add;
}

const char* linkModifyTitle(LinkKind kind) {
    return titles(kind).modify;
}

LinkForm newLinkForm(LinkKind kind) {
    LinkForm f;
    f.kind = kind;
    return f;
}

LinkForm linkFormFromRecord(const LinkItem& link) {
    LinkForm f;
    linkKindOfKeyword(link.driver, f.kind);
    f.name = link.name;
    f.period = link.period;
    f.redundancy = link.redundtype == "slave" ? 1 : 0;
    f.masterlink = link.masterlink;
    f.timeout = link.timeout;
    f.params = link.params;
    f.status_var = link.status_var;
    f.control_var = link.control_var;
    f.disabled = disabledOf(link.enable);
    f.devname = link.devname;
    f.baudrate = link.baudrate;
    f.data_bits = link.data_bits;
    f.stop_bits = link.stop_bits;
    int parity = parseDecimal(link.parity);
    f.parity = parity >= 0 && parity <= 2 ? kParityChoices[static_cast<std::size_t>(parity)]
                                          : kParityChoices[0];
    f.server_ip = link.server_ip;
    f.server_port = portOf(link.server_port);
    f.listen_port = portOf(link.listen_port);
    return f;
}

void storeLinkForm(const LinkForm& f, LinkItem& link) {
    link.name = f.name;
    link.period = f.period;
    link.redundtype = f.redundancy == 1 ? "slave" : "master";
    link.masterlink = f.masterlink;
    link.timeout = f.timeout;
    link.params = f.params;
    link.status_var = f.status_var;
    link.control_var = f.control_var;
    link.enable = f.disabled ? "0" : "1";
    link.driver = linkKindKeyword(f.kind);
    switch (f.kind) {
    case LinkKind::Serial: {
        link.devname = f.devname;
        link.baudrate = f.baudrate;
        link.data_bits = f.data_bits;
        link.stop_bits = f.stop_bits;
        link.parity = "0";
        for (std::size_t i = 0; i < kParityChoices.size(); ++i)
            if (f.parity == kParityChoices[i])
                link.parity = std::to_string(i);
        break;
    }
    case LinkKind::TcpClient:
        link.server_ip = f.server_ip;
        link.server_port = std::to_string(f.server_port);
        break;
    case LinkKind::TcpServer:
        link.listen_port = std::to_string(f.listen_port);
        break;
    case LinkKind::None:
    case LinkKind::Ferolt:
        break;
    }
}

std::optional<std::string> validateLinkForm(const LinkForm& f) {
    if (f.name.empty())
        return std::string(kLinkNameMissing);
    if (f.redundancy == 1 && f.masterlink.empty())
        return std::string(kMasterMissing);
    switch (f.kind) {
    case LinkKind::Serial:
        if (f.devname.empty())
            return std::string(kSerialMissing);
        break;
    case LinkKind::TcpClient:
        if (f.server_port < 1 || f.server_port > 65535)
            return std::string(kPortRange);
        if (f.server_ip.empty())
            return std::string(kIpMissing);
        break;
    case LinkKind::TcpServer:
        if (f.listen_port < 1 || f.listen_port > 65535)
            return std::string(kPortRange);
        break;
    default:
        break;
    }
    if (auto message = firstUnstorable({{kLinkName, &f.name},
                                        {kPeriod, &f.period},
                                        {kMasterLink, &f.masterlink},
                                        {kTimeout, &f.timeout},
                                        {kParams, &f.params},
                                        {kStatusVar, &f.status_var},
                                        {kControlVar, &f.control_var},
                                        {kSerialDevice, &f.devname},
                                        {kServerIp, &f.server_ip}}))
        return message;
    // The device connects to the server's address as it is written.
    if (f.kind == LinkKind::TcpClient)
        return checkIpv4Address("Server IP Address", f.server_ip);
    return std::nullopt;
}

// ---- devices ----

std::vector<const IoDeviceDriver*> DeviceChoices::drivers() const {
    return catalog.ListDrivers(linkKind);
}

const IoDeviceDriver* DeviceChoices::driver(int index) const {
    auto list = drivers();
    return index >= 0 && static_cast<std::size_t>(index) < list.size()
               ? list[static_cast<std::size_t>(index)]
               : nullptr;
}

std::vector<const IoProduct*> DeviceChoices::products(int index) const {
    std::vector<const IoProduct*> out;
    if (const IoDeviceDriver* d = driver(index))
        for (const IoProduct& p : d->products)
            out.push_back(&p);
    return out;
}

std::vector<const IoCfgType*> DeviceChoices::cfgTypes(int driverIndex, int product) const {
    auto list = products(driverIndex);
    if (product < 0 || static_cast<std::size_t>(product) >= list.size())
        return {};
    return IoDriverCatalog::ListCfgTypes(*list[static_cast<std::size_t>(product)]);
}

bool DeviceChoices::isFerolt(int index) const {
    const IoDeviceDriver* d = driver(index);
    return d && d->name == "ferolt";
}

DeviceForm newDeviceForm() {
    return DeviceForm{};
}

DeviceForm deviceFormFromRecord(const DeviceChoices& choices, const DeviceItem& device) {
    DeviceForm f;
    f.name = device.name;
    f.address = device.address;
    auto drivers = choices.drivers();
    for (std::size_t i = 0; i < drivers.size(); ++i)
        if (drivers[i]->name == device.driver) {
            f.driver = static_cast<int>(i);
            break;
        }
    f.manufacturer = device.manufacturer;
    auto products = choices.products(f.driver);
    for (std::size_t i = 0; i < products.size(); ++i)
        if (products[i]->name == device.product) {
            f.product = static_cast<int>(i);
            break;
        }
    f.params = device.params;
    if (choices.isFerolt(f.driver)) {
        // The configuration type after the key, up to a blank or the end; the first
        // entry that begins with it, letter case ignored.
        std::string code;
        if (auto at = device.params.find(productCfgKey); at != std::string::npos) {
            std::size_t from = at + std::strlen(productCfgKey);
            code = device.params.substr(from, device.params.find(' ', from) - from);
        }
        auto types = choices.cfgTypes(f.driver, f.product);
        for (std::size_t i = 0; i < types.size(); ++i) {
            const std::string& shown = types[i]->display;
            if (shown.size() >= code.size() &&
                std::equal(code.begin(), code.end(), shown.begin(), [](char a, char b) {
                    return std::tolower(static_cast<unsigned char>(a)) ==
                           std::tolower(static_cast<unsigned char>(b));
                })) {
                f.cfgType = static_cast<int>(i);
                break;
            }
        }
    }
    f.status_var = device.status_var;
    f.control_var = device.control_var;
    f.disabled = disabledOf(device.enable);
    return f;
}

void applyDriverSelection(const DeviceChoices& choices, DeviceForm& f) {
    f.manufacturer = IoDriverCatalog::DriverDescription(choices.driver(f.driver));
    f.product = choices.products(f.driver).empty() ? -1 : 0;
    f.cfgType = choices.cfgTypes(f.driver, f.product).empty() ? -1 : 0;
}

std::optional<std::string> validateDeviceForm(const DeviceForm& f) {
    if (f.name.empty())
        return std::string(kDeviceNameMissing);
    if (f.address.empty())
        return std::string(kDeviceAddressMissing);
    if (f.driver < 0)
        return std::string(kDriverMissing);
    return firstUnstorable({{kDeviceName, &f.name},
                            {kDeviceAddress, &f.address},
                            {kManufacturer, &f.manufacturer},
                            {kParams, &f.params},
                            {kStatusVar, &f.status_var},
                            {kControlVar, &f.control_var}});
}

void storeDeviceForm(const DeviceChoices& choices, const DeviceForm& f, DeviceItem& device) {
    device.name = f.name;
    device.address = f.address;
    device.driver = choices.catalog.DriverNameAt(choices.linkKind, f.driver);
    device.manufacturer = f.manufacturer;
    device.product = choices.catalog.ProductNameAt(device.driver, f.product);
    device.params = f.params;
    if (choices.isFerolt(f.driver)) {
        auto types = choices.cfgTypes(f.driver, f.product);
        if (f.cfgType >= 0 && static_cast<std::size_t>(f.cfgType) < types.size())
            device.params = productCfgKey + types[static_cast<std::size_t>(f.cfgType)]->display;
    }
    device.status_var = f.status_var;
    device.control_var = f.control_var;
    device.enable = f.disabled ? "0" : "1";
}

// ---- data points ----

DeviceDataForm newDeviceDataForm() {
    return DeviceDataForm{};
}

DeviceDataForm dataFormFromRecord(const IoDriverCatalog& catalog, const DeviceItem& device,
                                  const DeviceDataItem& d) {
    DeviceDataForm f;
    auto types = catalog.ListDataTypes(device.driver);
    for (std::size_t i = 0; i < types.size(); ++i)
        if (types[i]->name == d.type) {
            f.type = static_cast<int>(i);
            break;
        }
    f.address = d.address;
    f.dataname = d.dataname;
    f.status_var = d.status_var;
    f.mode = 0;
    for (std::size_t i = 0; i < std::size(kDataModes); ++i)
        if (d.mode == kDataModes[i].shown)
            f.mode = static_cast<int>(i);
    f.ungroup = d.group == "255";
    int group = parseDecimal(d.group);
    f.group = group >= 0 && group <= 7 ? group : 0;
    f.disabled = disabledOf(d.enable);
    return f;
}

std::optional<std::string> validateDeviceDataForm(const DeviceDataForm& f) {
    if (f.type < 0)
        return std::string(kDataTypeMissing);
    if (f.address.empty())
        return std::string(kDataAddressMissing);
    if (f.dataname.empty())
        return std::string(kDataMissing);
    return firstUnstorable(
        {{kDataAddress, &f.address}, {kRealtimeData, &f.dataname}, {kStatusVar, &f.status_var}});
}

DeviceDataItem dataFromForm(const IoDriverCatalog& catalog, const DeviceItem& device,
                            const DeviceDataForm& f) {
    DeviceDataItem d;
    auto types = catalog.ListDataTypes(device.driver);
    if (f.type >= 0 && static_cast<std::size_t>(f.type) < types.size())
        d.type = types[static_cast<std::size_t>(f.type)]->name;
    d.address = f.address;
    d.dataname = f.dataname;
    d.status_var = f.status_var;
    d.mode = f.mode >= 0 && static_cast<std::size_t>(f.mode) < std::size(kDataModes)
                 ? kDataModes[f.mode].shown
                 : "";
    d.group = f.ungroup ? "255" : std::to_string(f.group);
    d.enable = f.disabled ? "0" : "1";
    return d;
}

int pairedRealtimeType(const IoDriverCatalog& catalog, const DeviceItem& device, int type) {
    auto types = catalog.ListDataTypes(device.driver);
    if (type < 0 || static_cast<std::size_t>(type) >= types.size())
        return -1;
    return DataTypeTable::indexOfKeyword(types[static_cast<std::size_t>(type)]->vartype);
}

std::string_view dataPointCell(const DeviceDataItem& d, int column) {
    switch (column) {
    case 0:
        return d.type;
    case 1:
        return d.address;
    case 2:
        return d.group == "255" ? std::string_view(devicetext::kNoGroup)
                                : std::string_view(d.group);
    case 3:
        return d.dataname;
    case 4:
        return d.status_var;
    case 5:
        return d.mode;
    default:
        return {};
    }
}

} // namespace rq

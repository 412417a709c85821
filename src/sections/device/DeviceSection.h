#pragma once
// device.xml: the communication links of the project, the devices reached over
// each link and the data points of each device.

#include "core/ConfigSection.h"

#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace rq {

// The five kinds of link, kept as a keyword in the link's `driver` attribute.
enum class LinkKind { Serial, None, TcpClient, TcpServer, Ferolt };

struct LinkKindRow {
    LinkKind kind;
    const char* keyword;
};
inline constexpr LinkKindRow kLinkKinds[] = {
    {LinkKind::Serial, "serial"},       {LinkKind::None, "none"},
    {LinkKind::TcpClient, "tcpclient"}, {LinkKind::TcpServer, "tcpserver"},
    {LinkKind::Ferolt, "ferolt"},
};
const char* linkKindKeyword(LinkKind kind);
// The kind of a keyword (exact, case-sensitive); false for any other text.
bool linkKindOfKeyword(std::string_view keyword, LinkKind& kind);

// Read and write modes of a data point: the file keeps the keyword, the record
// keeps the text shown.
struct DataModeRow {
    const char* keyword;
    const char* shown;
};
inline constexpr DataModeRow kDataModes[] = {
    {"read", "Circularly reading"},
    {"write", "Circularly writing"},
    {"hmireadwrite", "Circularly reading and once writing"},
    {"hmiwrite", "Write once only"},
};
// Text of a keyword; a missing or unknown keyword gives "Circularly reading and
// once writing".
const char* dataModeShown(std::string_view keyword);
// Keyword of a text (exact comparison); a text matching no row gives "".
const char* dataModeKeyword(std::string_view shown);

// One data point of a device.
struct DeviceDataItem {
    std::string type;       // data type name of the driver's catalog entry
    std::string address;    // address in the device
    std::string dataname;   // bound real-time data, "DB.DATA"
    std::string status_var; // "DB.DATA" or empty
    std::string mode;       // shown text of kDataModes
    std::string group;      // "0".."7", "255" for no group
    std::string enable;     // "1" or "0"

    bool operator==(const DeviceDataItem&) const = default;
};

// One device of a link.
struct DeviceItem {
    std::string name;
    std::string address;
    std::string driver; // I/O driver name of the catalog
    std::string manufacturer;
    std::string product;
    std::string params;
    std::string status_var;
    std::string control_var;
    std::string enable;
    std::vector<DeviceDataItem> data;

    bool operator==(const DeviceItem&) const = default;
};

// The ten fields every link has, in the order the dialogs pass them.
struct LinkCommonFields {
    std::string name;
    std::string period = "500";
    std::string status_var;
    std::string redundtype;
    std::string timeout = "500";
    std::string masterlink;
    std::string params;
    std::string driver;
    std::string control_var;
    std::string enable;

    bool operator==(const LinkCommonFields&) const = default;
};

// The fields of the kinds that have transport settings. Each add operation takes
// the ones of its kind only.
struct LinkKindFields {
    // serial
    std::string devname = "COM1";
    std::string baudrate = "9600";
    std::string data_bits = "8";
    std::string parity = "0";
    std::string stop_bits = "1";
    // tcpclient
    std::string server_ip;
    std::string server_port;
    // tcpserver: the listening port, distinct from the client's server port
    std::string listen_port;

    bool operator==(const LinkKindFields&) const = default;
};

struct LinkItem : LinkCommonFields, LinkKindFields {
    // deque: adding a device keeps the addresses of the others
    std::deque<DeviceItem> devices;
};

class DeviceSection : public ConfigSection {
public:
    const char* fileName() const override { return "device.xml"; }
    void clear() override { links_.clear(); }
    bool read(const std::string& path, ReadContext& ctx) override;
    void write(std::string& out) const override;
    std::vector<std::pair<std::string, std::size_t>> counts() const override;
    void check(CheckContext& ctx) const override;

    std::deque<LinkItem>& links() { return links_; }
    const std::deque<LinkItem>& links() const { return links_; }

    // Whether a link other than `except` has exactly this name.
    bool linkNameExists(std::string_view name, const LinkItem* except = nullptr) const;
    // Adds a link of the kind as the last link: the common fields, `driver` set to
    // the kind's keyword whatever `common.driver` held, and the fields of the kind
    // only. A link of the same name refuses the add: "The link already exist!" is
    // shown and nullptr returned.
    LinkItem* addLink(LinkKind kind, const LinkCommonFields& common, const LinkKindFields& fields,
                      MessageSink& sink);
    // Removes the link with its devices; false when it is not a link of this section.
    bool removeLink(const LinkItem* link);

    // Whether a device of the link other than `except` has exactly this name.
    static bool deviceNameExists(const LinkItem& link, std::string_view name,
                                 const DeviceItem* except = nullptr);
    // Appends the device (its nine fields; its data points too, if any) to the link.
    // A device of the same name in that link refuses the add: "The device already
    // exist!" is shown and nullptr returned.
    static DeviceItem* addDevice(LinkItem& link, DeviceItem device, MessageSink& sink);
    static bool removeDevice(LinkItem& link, const DeviceItem* device);

private:
    std::deque<LinkItem> links_;
};

} // namespace rq

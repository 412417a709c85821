#pragma once
// The I/O device drivers the runtime offers (iodevdrv.xml beside the program):
// link kinds, their drivers, each driver's data types and products, each
// product's configuration types. Read once at start-up, never written.

#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace rq {

struct IoCfgType {
    std::string code;
    std::string display;
};

struct IoProduct {
    std::string name;
    std::vector<IoCfgType> cfgTypes;
};

struct IoDataType {
    std::string name;
    std::string vartype;
};

struct IoLinkKind;

struct IoDeviceDriver {
    std::string name;
    std::string description;
    std::string filename;
    std::vector<IoDataType> dataTypes;
    std::vector<IoProduct> products;
    const IoLinkKind* link = nullptr;
};

struct IoLinkKind {
    std::string name;
    std::deque<IoDeviceDriver> drivers;
};

class IoDriverCatalog {
public:
    // Appends the file's links; false when the file is missing, does not parse or
    // its root is not iodevicedrivers.
    bool load(const std::string& path);
    void clear() { links_.clear(); }

    const std::deque<IoLinkKind>& links() const { return links_; }

    const IoLinkKind* FindLinkKind(std::string_view name) const;
    // Searches links in order, drivers in order; stops with nullptr at the first
    // link that has no drivers.
    const IoDeviceDriver* FindDriver(std::string_view name) const;
    std::vector<const IoDeviceDriver*> ListDrivers(std::string_view linkName) const;
    std::vector<const IoDataType*> ListDataTypes(std::string_view driverName) const;
    std::vector<const IoProduct*> ListProducts(std::string_view driverName) const;
    static std::vector<const IoCfgType*> ListCfgTypes(const IoProduct& product);
    static std::string DriverDescription(const IoDeviceDriver* driver);
    std::string DriverNameAt(std::string_view linkName, int index) const;
    std::string ProductNameAt(std::string_view driverName, int index) const;
    int ProductIndex(std::string_view driverName, std::string_view productName) const;
    std::string CfgTypeDisplay(std::string_view driverName, std::string_view productName,
                               std::string_view code) const;

private:
    std::deque<IoLinkKind> links_;
};

} // namespace rq

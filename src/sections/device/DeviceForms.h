#pragma once
// The fields of the device configuration's dialogs as plain records, filled from
// and stored into the records of device.xml, and the checks of their OK buttons
// (the first failing check's message, or nothing).

#include "core/IoDriverCatalog.h"
#include "sections/device/DeviceSection.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace rq {

// Texts of the dialogs, exactly as shown.
namespace devicetext {
// Link sheets: add and modify titles by kind (serial, none, tcpclient, tcpserver,
// ferolt).
inline constexpr const char* kBasicPage = "Basic Setting";
inline constexpr const char* kSerialPage = "Serial Port Setting";
inline constexpr const char* kTcpClientPage = "TCP Client Configuration";
inline constexpr const char* kTcpServerPage = "TCP Server Configuration";

inline constexpr const char* kLinkName = "Linkage Name:";
inline constexpr const char* kPeriod = "Scan Period(ms):";
inline constexpr const char* kRedundant = "Redundant Name:";
inline constexpr const char* kMasterLink = "Primary Linkage:";
inline constexpr const char* kTimeout = "Overtime(ms):";
inline constexpr const char* kParams = "Additional Param:";
inline constexpr const char* kStatusVar = "Status Variable:";
inline constexpr const char* kControlVar = "Control Variable:";
inline constexpr const char* kDisableLink = "Disable Linkage";
inline constexpr std::array<const char*, 2> kRedundantChoices = {"Master Link", "Slave Link"};

inline constexpr const char* kSerialDevice = "Device:";
inline constexpr const char* kBaudRate = "Baud Rate:";
inline constexpr const char* kDataBits = "Data Bit:";
inline constexpr const char* kStopBits = "Stop Bit:";
inline constexpr const char* kParity = "Parity:";
inline constexpr std::array<const char*, 3> kSerialDevices = {"COM1", "COM2", "COM3"};
inline constexpr std::array<const char*, 11> kBaudRates = {
    "110", "300", "600", "1200", "2400", "4800", "9600", "19200", "38400", "57600", "115200"};
inline constexpr std::array<const char*, 4> kDataBitChoices = {"5", "6", "7", "8"};
inline constexpr std::array<const char*, 2> kStopBitChoices = {"1", "2"};
inline constexpr std::array<const char*, 3> kParityChoices = {"none", "Odd", "Even"};

inline constexpr const char* kServerIp = "Server IP Address:";
inline constexpr const char* kServerPort = "Server Port:";

inline constexpr const char* kLinkNameMissing = "The link name is null, please set link name!";
inline constexpr const char* kMasterMissing = "Please set master link name!";
inline constexpr const char* kSerialMissing =
    "serial device is null, please choose serial device name!";
inline constexpr const char* kIpMissing = "IP address is null, please input IP address!";
inline constexpr const char* kPortRange = "Please enter an integer between 1 and 65535.";
inline constexpr const char* kLinkExists = "The link already exist!";
inline constexpr const char* kDeleteLink = "Are you sure to delete current communication link?";

// "Device Information".
inline constexpr const char* kDeviceCaption = "Device Information";
inline constexpr const char* kDeviceBox = "Device Information Setting";
inline constexpr const char* kDeviceName = "Device Name:";
inline constexpr const char* kDeviceAddress = "Device Address:";
inline constexpr const char* kDeviceDriver = "Device Driver:";
inline constexpr const char* kManufacturer = "Manufacturer:";
inline constexpr const char* kProduct = "Product Type:";
inline constexpr const char* kRange = "Range:";
inline constexpr const char* kDisableDevice = "Disable Device";
inline constexpr const char* kDeviceNameMissing = "Please input device name!";
inline constexpr const char* kDeviceAddressMissing = "Please input device address!";
inline constexpr const char* kDriverMissing = "Please select device driver name!";
inline constexpr const char* kDeviceExists = "The device already exist!";
inline constexpr const char* kDeleteDevice = "Are you sure to delete current device?";

// "Device Data Setting".
inline constexpr const char* kDataCaption = "Device Data Setting";
inline constexpr const char* kDataBox = "Data Setting";
inline constexpr const char* kDataType = "Data Type:";
inline constexpr const char* kDataAddress = "Data Address:";
inline constexpr const char* kRealtimeData = "Realtime Data:";
inline constexpr const char* kAccessType = "Access Type:";
inline constexpr const char* kDataGroup = "Data Group:";
inline constexpr const char* kUngroup = "Ungroup";
inline constexpr const char* kDisableData = "Disable Data";
inline constexpr const char* kDataTypeMissing = "Please choose data type!";
inline constexpr const char* kDataAddressMissing = "Please input data address!";
inline constexpr const char* kDataMissing = "Please choose data!";
inline constexpr const char* kDeleteData = "Are you sure to delete current data ?";
inline constexpr const char* kNoGroup = "No group";
} // namespace devicetext

// The titles of a link kind's sheet.
const char* linkAddTitle(LinkKind kind);
const char* linkModifyTitle(LinkKind kind);

// "Basic Setting", with the page of the link's kind.
struct LinkForm {
    LinkKind kind = LinkKind::Serial;
    // Basic Setting
    std::string name;
    std::string period = "500";
    int redundancy = 0; // 0 "Master Link", 1 "Slave Link"
    std::string masterlink;
    std::string timeout = "500";
    std::string params;
    std::string status_var;
    std::string control_var;
    bool disabled = false;
    // Serial Port Setting
    std::string devname = "COM1";
    std::string baudrate = "9600";
    std::string data_bits = "8";
    std::string stop_bits = "1";
    std::string parity = "none"; // the shown text
    // TCP Client Configuration
    std::string server_ip;
    long long server_port = 8200;
    // TCP Server Configuration
    long long listen_port = 1;
};

LinkForm newLinkForm(LinkKind kind);
LinkForm linkFormFromRecord(const LinkItem& link);
// Stores the form's pages into the link's fields (the devices are not touched).
void storeLinkForm(const LinkForm& form, LinkItem& link);
// The checks of OK: Basic Setting first, then the kind's page; then every field
// that device.xml stores unescaped is refused when it holds '"', '<' or '&'
// (core/StorableValue.h), naming the field.
std::optional<std::string> validateLinkForm(const LinkForm& form);

// "Device Information".
struct DeviceForm {
    std::string name;
    std::string address;
    int driver = -1; // position among the drivers of the link's kind
    std::string manufacturer;
    int product = -1; // position among the driver's products
    int cfgType = -1; // position among the product's configuration types (ferolt)
    std::string params;
    std::string status_var;
    std::string control_var;
    bool disabled = false;
};

// The choices of the dialog's lists for a link kind and a driver.
struct DeviceChoices {
    const IoDriverCatalog& catalog;
    std::string linkKind; // the link's kind keyword

    std::vector<const IoDeviceDriver*> drivers() const;
    const IoDeviceDriver* driver(int index) const;
    std::vector<const IoProduct*> products(int driver) const;
    std::vector<const IoCfgType*> cfgTypes(int driver, int product) const;
    // Whether the driver at that position is the one named `ferolt`.
    bool isFerolt(int driver) const;
};

DeviceForm newDeviceForm();
DeviceForm deviceFormFromRecord(const DeviceChoices& choices, const DeviceItem& device);
// The driver choice changed: the manufacturer follows the driver's catalog entry
// and the product and configuration type lists start again.
void applyDriverSelection(const DeviceChoices& choices, DeviceForm& form);
std::optional<std::string> validateDeviceForm(const DeviceForm& form);
// Stores the form into the device's nine fields (its data points stay).
void storeDeviceForm(const DeviceChoices& choices, const DeviceForm& form, DeviceItem& device);

// "Device Data Setting".
struct DeviceDataForm {
    int type = -1; // position among the driver's data types
    std::string address;
    std::string dataname;
    std::string status_var;
    int mode = 0;  // row of kDataModes; "Circularly reading" by default
    int group = 0; // "0".."7"
    bool ungroup = false;
    bool disabled = false;
};

DeviceDataForm newDeviceDataForm();
DeviceDataForm dataFormFromRecord(const IoDriverCatalog& catalog, const DeviceItem& device,
                                  const DeviceDataItem& data);
std::optional<std::string> validateDeviceDataForm(const DeviceDataForm& form);
DeviceDataItem dataFromForm(const IoDriverCatalog& catalog, const DeviceItem& device,
                            const DeviceDataForm& form);
// The real-time type row (DataTypeTable) that the catalog pairs with the data
// type at that position of the device's driver; -1 when none.
int pairedRealtimeType(const IoDriverCatalog& catalog, const DeviceItem& device, int type);

// The data point list: six columns, each 150 wide.
inline constexpr std::array<const char*, 6> kDataPointColumns = {
    "Data type",           "Data address",         "Data group",
    "Real-time data name", "Status variable name", "Read and write mode"};
inline constexpr int kDataPointColumnWidth = 150;
std::string_view dataPointCell(const DeviceDataItem& data, int column);

} // namespace rq

#pragma once
// The data points of the devices as a table: link, device, data type (a type of
// the device's driver), data address, real-time data ("DB.DATA"), status variable,
// mode (as the list shows it, or its keyword: read, write, hmireadwrite,
// hmiwrite), group ("0" to "7", "255" for no group) and enable ("1", or "0" for a
// disabled point). A row is identified by link, device and real-time data, as
// Modify finds a point by the data it is bound to; links and devices are made in
// their own dialogs, not by a row.

#include "core/IoDriverCatalog.h"
#include "core/TableExchange.h"
#include "sections/device/DeviceSection.h"

#include <memory>

namespace rq {

std::unique_ptr<TableExchange> makeDeviceTable(DeviceSection& section,
                                               const IoDriverCatalog& catalog);

} // namespace rq

#pragma once
// The commands of the device configuration editor: links under the section's
// node, devices under their link, data points as the list rows of a device. Each
// command runs the whole flow (the right node kind, the dialog, the duplicate test
// after OK that opens the dialog again with what was typed, the delete question)
// and pushes its change as one step on the project's history (DeviceEdits.h).

#include "core/IoDriverCatalog.h"
#include "core/MessageSink.h"
#include "core/UndoHistory.h"
#include "sections/device/DeviceForms.h"

#include <cstddef>
#include <string>
#include <vector>

namespace rq {

// The dialogs as the commands see them. Each shows its dialog modally with the
// form's values and returns false on Cancel; on OK it runs the form's validator
// and, while that returns a message, shows it (stop icon) and stays open.
class DeviceDialogHost {
public:
    virtual ~DeviceDialogHost() = default;
    // The property sheet of the form's link kind, with that title.
    virtual bool linkDialog(LinkForm& form, const std::string& title) = 0;
    // "Device Information" with the drivers of the link's kind.
    virtual bool deviceDialog(DeviceForm& form, const DeviceChoices& choices) = 0;
    // "Device Data Setting" with the data types of the device's driver.
    virtual bool dataDialog(DeviceDataForm& form, const DeviceItem& device) = 0;
};

struct DeviceEditor {
    DeviceSection& device;
    const IoDriverCatalog& catalog;
    DeviceDialogHost& dialogs;
    MessageSink& sink;
    UndoHistory& history;
};

// Where a node is: the section's node (link < 0), a link (device < 0) or a device.
struct DevicePlace {
    int link = -1;
    int device = -1;
    bool isRoot() const { return link < 0; }
    bool isLink() const { return link >= 0 && device < 0; }
    bool isDevice() const { return device >= 0; }
};

// The command's outcome; `select` is the node to select afterwards.
struct DeviceEditResult {
    bool changed = false;
    DevicePlace select;
};

DeviceEditResult addLink(const DeviceEditor& ed, LinkKind kind);
DeviceEditResult deleteLink(const DeviceEditor& ed, DevicePlace at);
DeviceEditResult addDevice(const DeviceEditor& ed, DevicePlace at);
DeviceEditResult deleteDevice(const DeviceEditor& ed, DevicePlace at);
// "Modify" on a link (its sheet) or a device ("Device Information"). A name that
// another link (another device of the same link) has is refused with the add
// command's message.
DeviceEditResult modifyLinkOrDevice(const DeviceEditor& ed, DevicePlace at);

// Data points of the selected device; `rows` are the selected list rows.
DeviceEditResult addDataPoint(const DeviceEditor& ed, DevicePlace at);
DeviceEditResult deleteDataPoints(const DeviceEditor& ed, DevicePlace at,
                                  const std::vector<std::size_t>& rows);
// Fills the dialog from the first selected row and stores it into the first data
// point bound to the same real-time data.
DeviceEditResult modifyDataPoint(const DeviceEditor& ed, DevicePlace at,
                                 const std::vector<std::size_t>& rows);

} // namespace rq

#include "core/SectionEditor.h"
#include "sections/device/DeviceCommands.h"
#include "sections/device/DeviceEdits.h"

namespace rq {

DeviceEditResult addDevice(const DeviceEditor& ed, DevicePlace at) {
    if (at.isRoot())
        return {};
    LinkItem& link = ed.device.links()[static_cast<std::size_t>(at.link)];
    const DeviceChoices choices{ed.catalog, link.driver};
    DeviceForm form = newDeviceForm();
    auto show = [&](DeviceForm& f) { return ed.dialogs.deviceDialog(f, choices); };
    auto refuse = [&](const DeviceForm& f) -> std::optional<std::string> {
        if (DeviceSection::deviceNameExists(link, f.name))
            return std::string(devicetext::kDeviceExists);
        return std::nullopt;
    };
    if (!askUntilAccepted(ed.sink, form, show, refuse))
        return {};
    DeviceItem device;
    storeDeviceForm(choices, form, device);
    const std::size_t index = link.devices.size();
    ed.history.push(std::make_unique<InsertDevice>(
        "Add Device", ed.device, static_cast<std::size_t>(at.link), index, std::move(device)));
    return {true, DevicePlace{at.link, static_cast<int>(index)}};
}

DeviceEditResult deleteDevice(const DeviceEditor& ed, DevicePlace at) {
    if (!at.isDevice())
        return {};
    if (!confirmDelete(ed.sink, devicetext::kDeleteDevice))
        return {};
    ed.history.push(std::make_unique<RemoveDevice>("Delete Device", ed.device,
                                                   static_cast<std::size_t>(at.link),
                                                   static_cast<std::size_t>(at.device)));
    return {true, DevicePlace{at.link, -1}};
}

} // namespace rq

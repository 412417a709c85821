#include "core/SectionEditor.h"
#include "sections/device/DeviceCommands.h"
#include "sections/device/DeviceEdits.h"

namespace rq {

namespace {

DeviceEditResult modifyLink(const DeviceEditor& ed, DevicePlace at) {
    LinkItem& link = ed.device.links()[static_cast<std::size_t>(at.link)];
    LinkForm form = linkFormFromRecord(link);
    auto show = [&](LinkForm& f) { return ed.dialogs.linkDialog(f, linkModifyTitle(f.kind)); };
    auto refuse = [&](const LinkForm& f) -> std::optional<std::string> {
        if (ed.device.linkNameExists(f.name, &link))
            return std::string(devicetext::kLinkExists);
        return std::nullopt;
    };
    if (!askUntilAccepted(ed.sink, form, show, refuse))
        return {};
    LinkItem changed;
    static_cast<LinkCommonFields&>(changed) = link;
    static_cast<LinkKindFields&>(changed) = link;
    storeLinkForm(form, changed);
    if (static_cast<const LinkCommonFields&>(changed) ==
            static_cast<const LinkCommonFields&>(link) &&
        static_cast<const LinkKindFields&>(changed) == static_cast<const LinkKindFields&>(link))
        return {};
    ed.history.push(std::make_unique<ReplaceLink>("Modify Link", ed.device,
                                                  static_cast<std::size_t>(at.link), changed));
    return {true, at};
}

DeviceEditResult modifyDevice(const DeviceEditor& ed, DevicePlace at) {
    LinkItem& link = ed.device.links()[static_cast<std::size_t>(at.link)];
    DeviceItem& device = link.devices[static_cast<std::size_t>(at.device)];
    const DeviceChoices choices{ed.catalog, link.driver};
    DeviceForm form = deviceFormFromRecord(choices, device);
    auto show = [&](DeviceForm& f) { return ed.dialogs.deviceDialog(f, choices); };
    auto refuse = [&](const DeviceForm& f) -> std::optional<std::string> {
        if (DeviceSection::deviceNameExists(link, f.name, &device))
            return std::string(devicetext::kDeviceExists);
        return std::nullopt;
    };
    if (!askUntilAccepted(ed.sink, form, show, refuse))
        return {};
    DeviceItem changed;
    storeDeviceForm(choices, form, changed);
    changed.data.clear();
    DeviceItem current = device;
    current.data.clear();
    if (changed == current)
        return {};
    ed.history.push(std::make_unique<ReplaceDevice>("Modify Device", ed.device,
                                                    static_cast<std::size_t>(at.link),
                                                    static_cast<std::size_t>(at.device), changed));
    return {true, at};
}

} // namespace

DeviceEditResult modifyLinkOrDevice(const DeviceEditor& ed, DevicePlace at) {
    if (at.isDevice())
        return modifyDevice(ed, at);
    if (at.isLink())
        return modifyLink(ed, at);
    return {};
}

} // namespace rq

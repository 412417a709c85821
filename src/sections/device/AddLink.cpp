#include "core/SectionEditor.h"
#include "sections/device/DeviceCommands.h"
#include "sections/device/DeviceEdits.h"

namespace rq {

DeviceEditResult addLink(const DeviceEditor& ed, LinkKind kind) {
    LinkForm form = newLinkForm(kind);
    auto show = [&](LinkForm& f) { return ed.dialogs.linkDialog(f, linkAddTitle(kind)); };
    auto refuse = [&](const LinkForm& f) -> std::optional<std::string> {
        if (ed.device.linkNameExists(f.name))
            return std::string(devicetext::kLinkExists);
        return std::nullopt;
    };
    if (!askUntilAccepted(ed.sink, form, show, refuse))
        return {};
    LinkItem link;
    storeLinkForm(form, link);
    const std::size_t index = ed.device.links().size();
    ed.history.push(std::make_unique<InsertLink>("Add Link", ed.device, index, std::move(link)));
    return {true, DevicePlace{static_cast<int>(index), -1}};
}

DeviceEditResult deleteLink(const DeviceEditor& ed, DevicePlace at) {
    if (!at.isLink())
        return {};
    if (!confirmDelete(ed.sink, devicetext::kDeleteLink))
        return {};
    ed.history.push(
        std::make_unique<RemoveLink>("Delete Link", ed.device, static_cast<std::size_t>(at.link)));
    return {true, DevicePlace{}};
}

} // namespace rq

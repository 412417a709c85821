#include "sections/device/DeviceSectionEditor.h"

#include "core/CommandIds.h"
#include "core/MenuIds.h"
#include "core/NodeImageIds.h"

namespace rq {

DevicePlace DeviceSectionEditor::place(const void* key) const {
    if (!key)
        return {};
    const auto& links = device_.links();
    for (std::size_t l = 0; l < links.size(); ++l) {
        if (&links[l] == key)
            return DevicePlace{static_cast<int>(l), -1};
        const auto& devices = links[l].devices;
        for (std::size_t d = 0; d < devices.size(); ++d)
            if (&devices[d] == key)
                return DevicePlace{static_cast<int>(l), static_cast<int>(d)};
    }
    return {};
}

void* DeviceSectionEditor::key(DevicePlace at) const {
    if (at.isRoot() || static_cast<std::size_t>(at.link) >= device_.links().size())
        return nullptr;
    LinkItem& link = device_.links()[static_cast<std::size_t>(at.link)];
    if (!at.isDevice())
        return &link;
    if (static_cast<std::size_t>(at.device) >= link.devices.size())
        return &link;
    return &link.devices[static_cast<std::size_t>(at.device)];
}

std::vector<EditorNode> DeviceSectionEditor::nodes() const {
    std::vector<EditorNode> out;
    for (LinkItem& link : device_.links()) {
        EditorNode n{&link, link.name, image::kDevice, {}};
        for (DeviceItem& d : link.devices)
            n.children.push_back(EditorNode{&d, d.name, image::kData, {}});
        out.push_back(std::move(n));
    }
    return out;
}

bool DeviceSectionEditor::secondKind(DevicePlace at) const {
    return at.isDevice() && device_.links()[static_cast<std::size_t>(at.link)].driver == "ferolt";
}

int DeviceSectionEditor::treeMenu(const void*) const {
    return menuid::kDeviceTree;
}

int DeviceSectionEditor::listMenu(const void* key) const {
    return secondKind(place(key)) ? menuid::kDeviceList2 : menuid::kDeviceList;
}

EditorList DeviceSectionEditor::list(const void* key) const {
    EditorList l;
    DevicePlace at = place(key);
    if (!at.isDevice()) {
        l.kind = 0;
        l.rows = [] { return std::size_t(0); };
        l.cell = [](std::size_t, int) { return std::string_view(); };
        return l;
    }
    const DeviceItem* device = static_cast<const DeviceItem*>(key);
    l.kind = 1;
    for (const char* title : kDataPointColumns)
        l.columns.push_back(EditorColumn{title, kDataPointColumnWidth});
    l.rows = [device] { return device->data.size(); };
    l.cell = [device](std::size_t row, int column) {
        return dataPointCell(device->data[row], column);
    };
    return l;
}

EditorKeys DeviceSectionEditor::keys(const void* key) const {
    DevicePlace at = place(key);
    if (!at.isDevice())
        return {};
    if (secondKind(at))
        return EditorKeys{cmd::kNewDeviceData2, cmd::kModifyDeviceData2, cmd::kDeleteDeviceData2};
    return EditorKeys{cmd::kNewDeviceData, cmd::kModifyDeviceData, cmd::kDeleteDeviceData};
}

EditorResult DeviceSectionEditor::run(int command, const EditorSelection& sel) {
    const DevicePlace at = place(sel.node);
    const DeviceEditor ed = editor();
    DeviceEditResult r;
    bool structural = true;
    switch (command) {
    case cmd::kNewSerialLink:
        r = addLink(ed, LinkKind::Serial);
        break;
    case cmd::kNewCommonLink:
        r = addLink(ed, LinkKind::None);
        break;
    case cmd::kNewTcpClientLink:
        r = addLink(ed, LinkKind::TcpClient);
        break;
    case cmd::kNewTcpServerLink:
        r = addLink(ed, LinkKind::TcpServer);
        break;
    case cmd::kNewFeroltLink:
        r = addLink(ed, LinkKind::Ferolt);
        break;
    case cmd::kDeleteLink:
        r = deleteLink(ed, at);
        break;
    case cmd::kNewDevice:
        r = addDevice(ed, at);
        break;
    case cmd::kDeleteDevice:
        r = deleteDevice(ed, at);
        break;
    case cmd::kModifyDevice:
        r = modifyLinkOrDevice(ed, at);
        break;
    case cmd::kNewDeviceData:
    case cmd::kNewDeviceData2:
        r = addDataPoint(ed, at);
        structural = false;
        break;
    case cmd::kDeleteDeviceData:
    case cmd::kDeleteDeviceData2:
        r = deleteDataPoints(ed, at, sel.rows);
        structural = false;
        break;
    case cmd::kModifyDeviceData:
    case cmd::kModifyDeviceData2:
        r = modifyDataPoint(ed, at, sel.rows);
        structural = false;
        break;
    default:
        return {};
    }
    if (!r.changed)
        return {};
    return structural ? EditorResult::nodes(key(r.select)) : EditorResult::rows();
}

} // namespace rq

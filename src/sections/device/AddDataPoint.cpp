#include "core/SectionEditor.h"
#include "sections/device/DeviceCommands.h"
#include "sections/device/DeviceEdits.h"

#include <algorithm>

namespace rq {

namespace {
DeviceItem& deviceAt(const DeviceEditor& ed, DevicePlace at) {
    return ed.device.links()[static_cast<std::size_t>(at.link)]
        .devices[static_cast<std::size_t>(at.device)];
}
} // namespace

DeviceEditResult addDataPoint(const DeviceEditor& ed, DevicePlace at) {
    if (!at.isDevice())
        return {};
    DeviceItem& device = deviceAt(ed, at);
    DeviceDataForm form = newDeviceDataForm();
    if (!ed.dialogs.dataDialog(form, device))
        return {};
    ed.history.push(std::make_unique<AppendDataPoint>(
        "Add Data", ed.device, static_cast<std::size_t>(at.link),
        static_cast<std::size_t>(at.device), dataFromForm(ed.catalog, device, form)));
    return {true, at};
}

DeviceEditResult deleteDataPoints(const DeviceEditor& ed, DevicePlace at,
                                  const std::vector<std::size_t>& rows) {
    if (!at.isDevice() || rows.empty())
        return {};
    if (!confirmDelete(ed.sink, devicetext::kDeleteData))
        return {};
    const std::size_t count = deviceAt(ed, at).data.size();
    std::vector<std::size_t> sorted;
    for (std::size_t r : rows)
        if (r < count)
            sorted.push_back(r);
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    if (sorted.empty())
        return {};
    ed.history.push(std::make_unique<RemoveDataPoints>(
        "Delete Data", ed.device, static_cast<std::size_t>(at.link),
        static_cast<std::size_t>(at.device), std::move(sorted)));
    return {true, at};
}

DeviceEditResult modifyDataPoint(const DeviceEditor& ed, DevicePlace at,
                                 const std::vector<std::size_t>& rows) {
    if (!at.isDevice())
        return {};
    DeviceItem& device = deviceAt(ed, at);
    std::optional<std::size_t> row = firstSelectedRow(rows, device.data.size());
    if (!row)
        return {};
    // The point is found by the real-time data the row shows: the first one bound
    // to it.
    std::size_t index = *row;
    for (std::size_t i = 0; i < device.data.size(); ++i)
        if (device.data[i].dataname == device.data[*row].dataname) {
            index = i;
            break;
        }
    DeviceDataForm form = dataFormFromRecord(ed.catalog, device, device.data[*row]);
    if (!ed.dialogs.dataDialog(form, device))
        return {};
    DeviceDataItem changed = dataFromForm(ed.catalog, device, form);
    if (changed == device.data[index])
        return {};
    ed.history.push(std::make_unique<ReplaceDataPoint>(
        "Modify Data", ed.device, static_cast<std::size_t>(at.link),
        static_cast<std::size_t>(at.device), index, std::move(changed)));
    return {true, at};
}

} // namespace rq

#include "sections/device/DeviceEdits.h"

namespace rq {

namespace {
void swapFields(DeviceItem& a, DeviceItem& b) {
    std::swap(a.name, b.name);
    std::swap(a.address, b.address);
    std::swap(a.driver, b.driver);
    std::swap(a.manufacturer, b.manufacturer);
    std::swap(a.product, b.product);
    std::swap(a.params, b.params);
    std::swap(a.status_var, b.status_var);
    std::swap(a.control_var, b.control_var);
    std::swap(a.enable, b.enable);
}
} // namespace

InsertDevice::InsertDevice(std::string name, DeviceSection& s, std::size_t link, std::size_t index,
                           DeviceItem device)
    : EditCommand(std::move(name), kDeviceSectionIndex), s_(s), link_(link), index_(index),
      held_(std::move(device)) {}

void InsertDevice::redo() {
    auto& devices = s_.links()[link_].devices;
    devices.insert(devices.begin() + static_cast<std::ptrdiff_t>(index_), std::move(held_));
}

void InsertDevice::undo() {
    auto& devices = s_.links()[link_].devices;
    auto at = devices.begin() + static_cast<std::ptrdiff_t>(index_);
    held_ = std::move(*at);
    devices.erase(at);
}

RemoveDevice::RemoveDevice(std::string name, DeviceSection& s, std::size_t link, std::size_t index)
    : EditCommand(std::move(name), kDeviceSectionIndex), s_(s), link_(link), index_(index) {}

void RemoveDevice::redo() {
    auto& devices = s_.links()[link_].devices;
    auto at = devices.begin() + static_cast<std::ptrdiff_t>(index_);
    held_ = std::move(*at);
    devices.erase(at);
}

void RemoveDevice::undo() {
    auto& devices = s_.links()[link_].devices;
    devices.insert(devices.begin() + static_cast<std::ptrdiff_t>(index_), std::move(held_));
}

ReplaceDevice::ReplaceDevice(std::string name, DeviceSection& s, std::size_t link,
                             std::size_t index, const DeviceItem& fields)
    : EditCommand(std::move(name), kDeviceSectionIndex), s_(s), link_(link), index_(index) {
    DeviceItem copy = fields;
    copy.data.clear();
    other_ = std::move(copy);
}

void ReplaceDevice::redo() {
    swapFields(s_.links()[link_].devices[index_], other_);
}

void ReplaceDevice::undo() {
    redo();
}

} // namespace rq

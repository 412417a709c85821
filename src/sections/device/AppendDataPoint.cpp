#include "sections/device/DeviceEdits.h"

namespace rq {

AppendDataPoint::AppendDataPoint(std::string name, DeviceSection& s, std::size_t link,
                                 std::size_t device, DeviceDataItem data)
    : EditCommand(std::move(name), kDeviceSectionIndex), s_(s), link_(link), device_(device),
      data_(std::move(data)) {}

void AppendDataPoint::redo() {
    s_.links()[link_].devices[device_].data.push_back(data_);
}

void AppendDataPoint::undo() {
    s_.links()[link_].devices[device_].data.pop_back();
}

RemoveDataPoints::RemoveDataPoints(std::string name, DeviceSection& s, std::size_t link,
                                   std::size_t device, std::vector<std::size_t> rows)
    : EditCommand(std::move(name), kDeviceSectionIndex), s_(s), link_(link), device_(device),
      rows_(std::move(rows)) {}

void RemoveDataPoints::redo() {
    auto& data = s_.links()[link_].devices[device_].data;
    removed_.clear();
    std::vector<DeviceDataItem> kept;
    kept.reserve(data.size() - rows_.size());
    std::size_t next = 0;
    for (std::size_t i = 0; i < data.size(); ++i) {
        if (next < rows_.size() && rows_[next] == i) {
            removed_.push_back(std::move(data[i]));
            ++next;
        } else {
            kept.push_back(std::move(data[i]));
        }
    }
    data = std::move(kept);
}

void RemoveDataPoints::undo() {
    auto& data = s_.links()[link_].devices[device_].data;
    std::vector<DeviceDataItem> merged;
    merged.reserve(data.size() + removed_.size());
    std::size_t kept = 0, next = 0;
    while (kept < data.size() || next < removed_.size()) {
        if (next < removed_.size() && rows_[next] == merged.size())
            merged.push_back(std::move(removed_[next++]));
        else
            merged.push_back(std::move(data[kept++]));
    }
    data = std::move(merged);
    removed_.clear();
}

ReplaceDataPoint::ReplaceDataPoint(std::string name, DeviceSection& s, std::size_t link,
                                   std::size_t device, std::size_t index, DeviceDataItem data)
    : EditCommand(std::move(name), kDeviceSectionIndex), s_(s), link_(link), device_(device),
      index_(index), other_(std::move(data)) {}

void ReplaceDataPoint::redo() {
    std::swap(s_.links()[link_].devices[device_].data[index_], other_);
}

void ReplaceDataPoint::undo() {
    redo();
}

} // namespace rq

#include "core/RowPositions.h"
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
    removed_ = takeRows(data, rows_);
}

void RemoveDataPoints::undo() {
    auto& data = s_.links()[link_].devices[device_].data;
    putRowsBack(data, rows_, removed_);
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

#pragma once
// The steps that the device configuration's commands push on the project's
// history. Links, devices and data points are addressed by their positions, which
// a linear history keeps valid; a step holds what it took out or overwrote.

#include "core/EditCommand.h"
#include "core/SectionTable.h"
#include "sections/device/DeviceSection.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace rq {

inline constexpr int kDeviceSectionIndex = sectionIndexOf("device.xml");

// A link put in at `index` (undo takes it out again); RemoveLink the reverse.
class InsertLink : public EditCommand {
public:
    InsertLink(std::string name, DeviceSection& s, std::size_t index, LinkItem link);
    void redo() override;
    void undo() override;

private:
    DeviceSection& s_;
    std::size_t index_;
    LinkItem held_;
};

class RemoveLink : public EditCommand {
public:
    RemoveLink(std::string name, DeviceSection& s, std::size_t index);
    void redo() override;
    void undo() override;

private:
    DeviceSection& s_;
    std::size_t index_;
    LinkItem held_;
};

// A link's own fields (its devices stay).
class ReplaceLink : public EditCommand {
public:
    ReplaceLink(std::string name, DeviceSection& s, std::size_t index, const LinkItem& fields);
    void redo() override;
    void undo() override;

private:
    DeviceSection& s_;
    std::size_t index_;
    LinkCommonFields common_;
    LinkKindFields kind_;
};

class InsertDevice : public EditCommand {
public:
    InsertDevice(std::string name, DeviceSection& s, std::size_t link, std::size_t index,
                 DeviceItem device);
    void redo() override;
    void undo() override;

private:
    DeviceSection& s_;
    std::size_t link_, index_;
    DeviceItem held_;
};

class RemoveDevice : public EditCommand {
public:
    RemoveDevice(std::string name, DeviceSection& s, std::size_t link, std::size_t index);
    void redo() override;
    void undo() override;

private:
    DeviceSection& s_;
    std::size_t link_, index_;
    DeviceItem held_;
};

// A device's nine fields (its data points stay).
class ReplaceDevice : public EditCommand {
public:
    ReplaceDevice(std::string name, DeviceSection& s, std::size_t link, std::size_t index,
                  const DeviceItem& fields);
    void redo() override;
    void undo() override;

private:
    DeviceSection& s_;
    std::size_t link_, index_;
    DeviceItem other_; // data points unused
};

// Data points of one device: appended, removed by position, or one overwritten.
class AppendDataPoint : public EditCommand {
public:
    AppendDataPoint(std::string name, DeviceSection& s, std::size_t link, std::size_t device,
                    DeviceDataItem data);
    void redo() override;
    void undo() override;

private:
    DeviceSection& s_;
    std::size_t link_, device_;
    DeviceDataItem data_;
};

class RemoveDataPoints : public EditCommand {
public:
    // `rows` in increasing order.
    RemoveDataPoints(std::string name, DeviceSection& s, std::size_t link, std::size_t device,
                     std::vector<std::size_t> rows);
    void redo() override;
    void undo() override;

private:
    DeviceSection& s_;
    std::size_t link_, device_;
    std::vector<std::size_t> rows_;
    std::vector<DeviceDataItem> removed_;
};

class ReplaceDataPoint : public EditCommand {
public:
    ReplaceDataPoint(std::string name, DeviceSection& s, std::size_t link, std::size_t device,
                     std::size_t index, DeviceDataItem data);
    void redo() override;
    void undo() override;

private:
    DeviceSection& s_;
    std::size_t link_, device_, index_;
    DeviceDataItem other_;
};

} // namespace rq

#pragma once
// alarm.xml: the size of the runtime's alarm buffer, the alarm groups and the
// real-time data of each group with its alarm conditions.

#include "core/ConfigSection.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace rq {

// The six condition slots of an alarm data, in their fixed order; the tag is the
// element name in the file.
enum AlarmSlot { kAlarmHigh, kAlarmHighHigh, kAlarmLow, kAlarmLowLow, kAlarmOpen, kAlarmClose };
inline constexpr int kAlarmSlotCount = 6;
inline constexpr std::array<const char*, kAlarmSlotCount> kAlarmSlotTags = {
    "High", "HighHigh", "Low", "LowLow", "Open", "Close"};
// Slot of a tag (exact, case-sensitive); -1 for any other name.
int alarmSlotOfTag(std::string_view tag);

struct AlarmCondition {
    bool set = false;         // the slot's tag is written only when set
    std::string enable_var;   // the variable that enables the condition
    std::string value_var;    // the limit
    std::string info;         // alarm text
    std::string restore_info; // text shown when the alarm clears
    bool operator==(const AlarmCondition&) const = default;
};

struct AlarmDataItem {
    std::string dbname;
    std::string dataname;
    std::string priority;
    std::string status_var; // "DB.DATA" or empty
    std::array<AlarmCondition, kAlarmSlotCount> slots;
    bool operator==(const AlarmDataItem&) const = default;
};

struct AlarmGroup {
    std::string name;
    std::vector<AlarmDataItem> data;
};

class AlarmSection : public ConfigSection {
public:
    // The alarm buffer size of a new project.
    static constexpr const char* kDefaultLogSize = "1000";

    const char* fileName() const override { return "alarm.xml"; }
    void clear() override;
    bool read(const std::string& path, ReadContext& ctx) override;
    void write(std::string& out) const override;
    std::vector<std::pair<std::string, std::size_t>> counts() const override;
    void check(CheckContext& ctx) const override;

    std::string& logSize() { return logSize_; }
    const std::string& logSize() const { return logSize_; }
    std::vector<AlarmGroup>& groups() { return groups_; }
    const std::vector<AlarmGroup>& groups() const { return groups_; }

    bool groupNameExists(std::string_view name) const;
    // Appends an empty group. A group of the same name refuses the add: "The alarm
    // group already exist!" is shown and nullptr returned. The pointer stays valid
    // until the next change of the group list.
    AlarmGroup* addGroup(std::string name, MessageSink& sink);

private:
    std::string logSize_ = kDefaultLogSize;
    std::vector<AlarmGroup> groups_;
};

} // namespace rq

#pragma once
// The HMI database (hmidb.xml): the variables the HMI screens use, in two fixed
// groups. "Real-time related data" (group "io") mirrors real-time variables with a
// refresh period; "custom data" (group "memory") lives only in the HMI's memory.
// Below each fixed group, data groups nest to any depth.

#include "core/ConfigSection.h"

#include <cstdint>
#include <string>
#include <vector>

namespace rq {

// An item under "Real-time related data".
struct HmiIoItem {
    std::string name;     // HMI data name
    std::string dbname;   // referenced real-time variable: database name
    std::string dataname; //                                data name
    int32_t period = 500; // refresh period in milliseconds

    bool operator==(const HmiIoItem&) const = default;
};

// An item under "custom data".
struct HmiMemoryItem {
    std::string name;
    std::string type;   // type keyword of DataTypeTable
    std::string length; // decimal text
    std::string init;   // initial value text

    bool operator==(const HmiMemoryItem&) const = default;
};

// A group node: its name (the tree text), its nested groups and its items, in order.
template <class Item> struct HmiDataGroup {
    std::string name;
    std::vector<HmiDataGroup> groups;
    std::vector<Item> items;
};
using HmiIoGroup = HmiDataGroup<HmiIoItem>;
using HmiMemoryGroup = HmiDataGroup<HmiMemoryItem>;

class HmiDbSection : public ConfigSection {
public:
    // Tree node kinds of the two fixed groups and the groups below them.
    static constexpr int kIoKind = 4;
    static constexpr int kMemoryKind = 5;
    // Texts of the two fixed nodes in the tree, and their names in the file.
    static constexpr const char* kIoNodeText = "Real-time related data";
    static constexpr const char* kMemoryNodeText = "custom data";
    static constexpr const char* kIoGroupName = "io";
    static constexpr const char* kMemoryGroupName = "memory";

    HmiDbSection() { clear(); }

    const char* fileName() const override { return "hmidb.xml"; }
    void clear() override;
    bool read(const std::string& path, ReadContext& ctx) override;
    void write(std::string& out) const override;
    std::vector<std::pair<std::string, std::size_t>> counts() const override;
    void check(CheckContext& ctx) const override;

    // The two fixed groups; their names stay "io" and "memory".
    HmiIoGroup io;
    HmiMemoryGroup memory;
};

} // namespace rq

#pragma once
// The HMI device types a project can be made for (hmidevice.xml beside the
// program). Read once at start-up, never written.

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace rq {

struct HmiDeviceType {
    std::string name;
    int32_t screenWidth = 0;
    int32_t screenHeight = 0;
    bool hasCfCard = false;
    int32_t ladder = 0;
    int32_t fbd = 0;
    int32_t externalC = 0;
    int32_t redundancy = 0;
    std::string display;
};

class HmiDeviceCatalog {
public:
    // Appends the file's entries; false when the file is missing, does not parse or
    // has another root (the catalog is then left as it was).
    bool LoadHmiDeviceCatalog(const std::string& path);

    // Exact, case-sensitive, first match; nullptr when none.
    const HmiDeviceType* FindByName(std::string_view name) const;
    const HmiDeviceType* FindByDisplay(std::string_view text) const;

    // Entries keep their addresses for the catalog's life (projects point at them).
    const std::deque<HmiDeviceType>& entries() const { return entries_; }
    bool empty() const { return entries_.empty(); }
    void clear() { entries_.clear(); }

private:
    std::deque<HmiDeviceType> entries_;
};

} // namespace rq

#include "deploy/emulator/SystemFigures.h"

#include <fstream>
#include <sstream>
#include <string>

namespace rq {

namespace {

// The value in KiB of "Key:   1234 kB" in a /proc file.
bool findKib(const std::string& file, const std::string& key, uint64_t& value) {
    std::ifstream in(file);
    std::string line;
    while (std::getline(in, line)) {
        if (line.compare(0, key.size(), key) == 0 && line.size() > key.size() &&
            line[key.size()] == ':') {
            std::istringstream fields(line.substr(key.size() + 1));
            return static_cast<bool>(fields >> value);
        }
    }
    return false;
}

uint32_t clamp32(uint64_t value) {
    return value > 0xFFFFFFFFull ? 0xFFFFFFFFu : uint32_t(value);
}

} // namespace

MemoryFigures readMemoryFigures() {
    MemoryFigures figures;
    uint64_t total = 0, free = 0;
    if (findKib("/proc/meminfo", "MemTotal", total) && findKib("/proc/meminfo", "MemFree", free) &&
        free <= total) {
        figures.totalKib = clamp32(total);
        figures.freeKib = clamp32(free);
        figures.usedKib = clamp32(total - free);
    }
    return figures;
}

uint32_t readOwnMemoryKib() {
    uint64_t rss = 0;
    findKib("/proc/self/status", "VmRSS", rss);
    return clamp32(rss);
}

CpuSample readCpuSample() {
    CpuSample sample;
    std::ifstream in("/proc/stat");
    std::string label;
    if (!(in >> label) || label != "cpu")
        return sample;
    // user nice system idle iowait irq softirq steal (guest time is inside user).
    uint64_t value = 0;
    for (int field = 0; field < 8 && (in >> value); ++field) {
        sample.total += value;
        if (field == 3 || field == 4)
            sample.idle += value;
    }
    return sample;
}

uint32_t cpuUsageTenths(const CpuSample& before, const CpuSample& after) {
    if (after.total <= before.total || after.idle < before.idle)
        return 0;
    const uint64_t total = after.total - before.total;
    const uint64_t idle = after.idle - before.idle;
    return idle >= total ? 0 : shareTenths(total - idle, total);
}

uint32_t shareTenths(uint64_t part, uint64_t whole) {
    if (whole == 0)
        return 0;
    return clamp32(part * 1000 / whole);
}

} // namespace rq

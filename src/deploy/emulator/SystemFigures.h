#pragma once
// The figures the emulated device's monitor service reports: this machine's memory
// and processor load, and the emulator's own memory. Read from /proc; where /proc
// is missing the figures are 0.

#include <cstdint>

namespace rq {

struct MemoryFigures {
    uint32_t totalKib = 0, usedKib = 0, freeKib = 0; // MemTotal, MemTotal - MemFree, MemFree
};

struct CpuSample {
    uint64_t total = 0, idle = 0; // jiffies since boot, all processors (idle includes iowait)
};

MemoryFigures readMemoryFigures();
// Resident memory of this process in KiB.
uint32_t readOwnMemoryKib();
CpuSample readCpuSample();
// Busy share between two samples in tenths of a percent (0 to 1000).
uint32_t cpuUsageTenths(const CpuSample& before, const CpuSample& after);
// part / whole in tenths of a percent, 0 when whole is 0.
uint32_t shareTenths(uint64_t part, uint64_t whole);

} // namespace rq

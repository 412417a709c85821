#pragma once
// The redundancy section (redundancy.xml): the role of this device in a primary /
// standby pair, the synchronising periods, the TCP ports of both sides and up to
// four address pairs of the synchronising link.

#include "core/ConfigSection.h"

#include <array>
#include <string>
#include <string_view>

namespace rq {

struct RedundancyConfig {
    static constexpr int kLinkPairs = 4;

    std::string type;                  // role keyword: "", "master", "slave" or "client"
    std::string period = "500";        // synchronising period, ms
    std::string clockSyncCount = "10"; // clock synchronised every this many periods
    std::string timeout = "500";       // link time-out, ms
    std::string masterPort = "9000";
    std::string slavePort = "9001";
    std::array<std::string, kLinkPairs> linkMasterIp;
    std::array<std::string, kLinkPairs> linkSlaveIp;

    bool operator==(const RedundancyConfig&) const = default;
};

// The role keywords in the order of the role drop-down list.
class RedundancyRoles {
public:
    static constexpr int kCount = 4;
    // The keyword at a position; empty outside 0..3.
    static std::string keywordAt(int position);
    // The position of a keyword (exact); -1 when it is none of the four.
    static int indexOf(std::string_view keyword);
};

class RedundancySection : public ConfigSection {
public:
    const char* fileName() const override { return "redundancy.xml"; }
    void clear() override { config_ = RedundancyConfig{}; }
    bool read(const std::string& path, ReadContext& ctx) override;
    void write(std::string& out) const override;
    std::vector<std::pair<std::string, std::size_t>> counts() const override;
    void check(CheckContext& ctx) const override;

    const RedundancyConfig& config() const { return config_; }
    RedundancyConfig& config() { return config_; }

private:
    RedundancyConfig config_;
};

} // namespace rq

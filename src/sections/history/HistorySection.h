#pragma once
// history.xml: the history records the runtime keeps on the device, each with the
// real-time variables it records and the rule of each.

#include "core/ConfigSection.h"

#include <string>
#include <string_view>
#include <vector>

namespace rq {

// Storage locations: text shown, keyword kept in `path`, directory on the device.
struct HistoryLocationRow {
    const char* shown;
    const char* keyword;
    const char* deviceDir;
};
inline constexpr HistoryLocationRow kHistoryLocations[] = {
    {"Inner flash", "flash", "/home/app/hisdata"},
    {"CF Card", "cfcard", "/cfcard"},
};

// Record kinds of a variable: keyword kept in `type`, text shown.
struct HistoryKindRow {
    const char* keyword;
    const char* shown;
};
inline constexpr HistoryKindRow kHistoryKinds[] = {
    {"period", "Timing record"},
    {"change", "Data change record"},
    {"vartrigger", "Variable trigger record"},
};
// Text of a kind keyword; empty for an unknown keyword.
std::string historyKindShown(std::string_view keyword);

struct HistoryData {
    std::string dbname;
    std::string dataname;
    std::string type;         // a keyword of kHistoryKinds
    std::string periodvalue;  // used with "period"
    std::string changevalue;  // used with "change"
    std::string trigvarname;  // used with "vartrigger", "DB.DATA"
    std::string queryvarname; // "DB.DATA"
    std::string description;

    bool operator==(const HistoryData&) const = default;
};

struct HistoryRecord {
    std::string name;
    std::string period = "1000";
    std::string path = "flash";
    std::string remaindays = "1";
    std::string indexperiod = "600";
    std::vector<HistoryData> data;
};

class HistorySection : public ConfigSection {
public:
    const char* fileName() const override { return "history.xml"; }
    void clear() override { records_.clear(); }
    // Accepts the root rqhistory or history, and under it the older layout
    // (a config element and logdata elements directly under the root), which
    // becomes one history record; see docs/history.md.
    bool read(const std::string& path, ReadContext& ctx) override;
    void write(std::string& out) const override;
    std::vector<std::pair<std::string, std::size_t>> counts() const override;
    void check(CheckContext& ctx) const override;

    std::vector<HistoryRecord>& records() { return records_; }
    const std::vector<HistoryRecord>& records() const { return records_; }

    // The name a record of the older layout gets when its config names none.
    static constexpr const char* kOlderLayoutName = "history";

private:
    std::vector<HistoryRecord> records_;
};

} // namespace rq

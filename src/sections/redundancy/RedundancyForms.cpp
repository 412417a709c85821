#include "sections/redundancy/RedundancyForms.h"

#include "core/StorableValue.h"
#include "core/ValueChecks.h"

#include <span>
#include <string_view>

namespace rq {

RedundancyForm redundancyFormFromConfig(const RedundancyConfig& c) {
    RedundancyForm f;
    f.role = RedundancyRoles::indexOf(c.type);
    f.period = c.period;
    f.clockSyncCount = c.clockSyncCount;
    f.timeout = c.timeout;
    f.masterPort = c.masterPort;
    f.slavePort = c.slavePort;
    for (int i = 0; i < kShownLinkPairs; ++i) {
        f.masterIp[i] = c.linkMasterIp[i];
        f.slaveIp[i] = c.linkSlaveIp[i];
    }
    return f;
}

void storeRedundancyForm(const RedundancyForm& f, RedundancyConfig& c) {
    // A keyword of the file that is none of the four selects nothing and is kept.
    if (f.role >= 0)
        c.type = RedundancyRoles::keywordAt(f.role);
    c.period = f.period;
    c.clockSyncCount = f.clockSyncCount;
    c.timeout = f.timeout;
    c.masterPort = f.masterPort;
    c.slavePort = f.slavePort;
    for (int i = 0; i < kShownLinkPairs; ++i) {
        c.linkMasterIp[i] = f.masterIp[i];
        c.linkSlaveIp[i] = f.slaveIp[i];
    }
}

namespace {
// A label without its closing colon, as the storable-value message names fields.
std::string field(std::string_view label, std::string_view prefix = {}) {
    if (!label.empty() && label.back() == ':')
        label.remove_suffix(1);
    return std::string(prefix) + std::string(label);
}
} // namespace

std::optional<std::string> validateRedundancyForm(const RedundancyForm& f) {
    using namespace redundancytext;
    const std::pair<std::string, const std::string*> fields[] = {
        {field(kPeriod), &f.period},
        {field(kClockSync), &f.clockSyncCount},
        {field(kTimeout), &f.timeout},
        {field(kMasterPort), &f.masterPort},
        {field(kSlavePort), &f.slavePort},
        {field(kMasterIp, "1: "), &f.masterIp[0]},
        {field(kSlaveIp, "1: "), &f.slaveIp[0]},
        {field(kMasterIp, "2: "), &f.masterIp[1]},
        {field(kSlaveIp, "2: "), &f.slaveIp[1]},
    };
    for (const auto& [label, value] : fields)
        if (auto message = checkStorableValue(label, *value))
            return message;
    // The address rows: the device connects to what they hold.
    for (const auto& [label, value] : std::span(fields).subspan(5))
        if (auto message = checkIpv4Address(label, *value))
            return message;
    return std::nullopt;
}

} // namespace rq

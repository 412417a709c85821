#pragma once
// The dialog "Redundant Configuration": its texts, its form, and the functions that
// fill the form from the section and store it back.

#include "sections/redundancy/RedundancySection.h"

#include <array>
#include <optional>
#include <string>

namespace rq {

namespace redundancytext {
inline constexpr const char* kCaption = "Redundant Configuration";
inline constexpr const char* kBasicBox = "Basic Configuration";
inline constexpr const char* kHmiType = "HMI Type:";
inline constexpr const char* kPeriod = "Synchronized Period(ms):";
inline constexpr const char* kClockSync = "Clock Synchronized Period:";
inline constexpr const char* kTimeout = "Link Time Out(ms):";
inline constexpr const char* kMasterPort = "Primary Port:";
inline constexpr const char* kSlavePort = "Slave Port:";
inline constexpr const char* kLinkBox = "synchronizing Linkage Address Configuration";
inline constexpr const char* kMasterIp = "Primary IP Address:";
inline constexpr const char* kSlaveIp = "Slave IP Address:";
inline constexpr const char* kStepName = "Redundant Configuration";
// What the role drop-down list shows for the positions of RedundancyRoles.
inline constexpr std::array<const char*, RedundancyRoles::kCount> kRoleShown = {
    "No redundancy", "Primary (master)", "Standby (slave)", "Client"};
} // namespace redundancytext

// The dialog shows address pairs 1 and 2; pairs 3 and 4 can only come from a file
// and are kept as they are.
inline constexpr int kShownLinkPairs = 2;

struct RedundancyForm {
    int role = 0; // position in RedundancyRoles; -1 = none selected
    std::string period;
    std::string clockSyncCount;
    std::string timeout;
    std::string masterPort;
    std::string slavePort;
    std::array<std::string, kShownLinkPairs> masterIp;
    std::array<std::string, kShownLinkPairs> slaveIp;
};

RedundancyForm redundancyFormFromConfig(const RedundancyConfig& config);
// Every field as typed; the role keyword of the selected position (none selected
// keeps the stored keyword); pairs 1 and 2 replaced, 3 and 4 kept from `config`.
void storeRedundancyForm(const RedundancyForm& form, RedundancyConfig& config);
// The values are taken as typed; the only refusal is a character that
// redundancy.xml cannot hold, naming the field.
std::optional<std::string> validateRedundancyForm(const RedundancyForm& form);

} // namespace rq

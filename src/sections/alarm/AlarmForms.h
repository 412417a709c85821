#pragma once
// The dialog "Alarm Configuration" (the size of the runtime's alarm buffer): its
// texts, its form and its check.

#include <optional>
#include <string>

namespace rq {

namespace alarmtext {
inline constexpr const char* kConfigCaption = "Alarm Configuration";
inline constexpr const char* kBufferSize = "Alarm Buffer Size:";
inline constexpr const char* kBadBufferSize =
    "The alarm buffer size must be a whole number greater than 0.";
inline constexpr const char* kConfigStepName = "Alarm Configuration";
} // namespace alarmtext

struct AlarmConfigForm {
    std::string bufferSize;
};

// The runtime keeps that many alarm records: a whole number (decimal digits) of at
// least 1 is taken, anything else refused.
std::optional<std::string> validateAlarmConfigForm(const AlarmConfigForm& form);

} // namespace rq

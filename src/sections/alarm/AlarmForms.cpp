#include "sections/alarm/AlarmForms.h"

namespace rq {

std::optional<std::string> validateAlarmConfigForm(const AlarmConfigForm& f) {
    bool nonZero = false;
    for (char c : f.bufferSize) {
        if (c < '0' || c > '9')
            return std::string(alarmtext::kBadBufferSize);
        nonZero = nonZero || c != '0';
    }
    if (!nonZero)
        return std::string(alarmtext::kBadBufferSize);
    return std::nullopt;
}

} // namespace rq

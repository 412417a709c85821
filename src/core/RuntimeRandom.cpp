#include "core/RuntimeRandom.h"

#include <ctime>
#include <mutex>

namespace rq {

// Each call gives a generator seeded with the current second; a second call within
// the same second is seeded further along, so that two scramblings made in one
// second still differ.
RuntimeRandom& RuntimeRandom::shared() {
    static std::mutex mutex;
    static std::time_t lastSecond = 0;
    static uint32_t repeat = 0;
    thread_local RuntimeRandom generator(0);
    std::lock_guard<std::mutex> lock(mutex);
    std::time_t now = std::time(nullptr);
    if (now != lastSecond) {
        lastSecond = now;
        repeat = 0;
    } else {
        ++repeat;
    }
    generator = RuntimeRandom(static_cast<uint32_t>(now) ^ (repeat * 0x9E3779B9u));
    return generator;
}

} // namespace rq

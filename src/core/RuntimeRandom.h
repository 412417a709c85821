#pragma once
// The pseudo-random bytes of the password scrambling and the package wrapping:
// seeded with the current time in seconds; within one second the sequence goes on
// instead of starting again, so two scramblings in one second still differ.

#include <cstdint>

namespace rq {

class RuntimeRandom {
public:
    // The generator of the runtime library: state = state * 214013 + 2531011,
    // value = (state >> 16) & 0x7FFF.
    explicit RuntimeRandom(uint32_t seed) : state_(seed) {}
    int next() {
        state_ = state_ * 214013u + 2531011u;
        return static_cast<int>((state_ >> 16) & 0x7FFF);
    }
    uint8_t nextByte() { return static_cast<uint8_t>(next() & 0xFF); }

    // A generator (of the calling thread) seeded anew from the clock at each call:
    // call it once per scrambling or wrapping and draw every byte from the result.
    static RuntimeRandom& shared();

private:
    uint32_t state_;
};

} // namespace rq

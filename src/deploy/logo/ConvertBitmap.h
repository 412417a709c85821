#pragma once
// Turns a 24-bit Windows bitmap into the device's start-up image: width x height
// RGB565 pixels, 2 bytes each, low byte first, rows from the top of the picture to
// the bottom, no row padding, no header.

#include <cstdint>
#include <string>

namespace rq {

// One pixel from the bitmap's 8-bit colour bytes: red in bits 15-11, green in
// 10-5, blue in 4-0, cut (not rounded).
inline uint16_t rgb565(uint8_t red, uint8_t green, uint8_t blue) {
    return static_cast<uint16_t>(((red & 0xF8) << 8) | ((green & 0xFC) << 3) | (blue >> 3));
}

// 1 after writing `target`; 0 with the message to show in *message. A required
// width or height of 0 switches the size check off. A failed conversion leaves no
// target file behind.
int ConvertBitmap(const std::string& source, const std::string& target, std::string& message,
                  int requiredWidth, int requiredHeight);

} // namespace rq

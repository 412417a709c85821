#include "deploy/logo/ConvertBitmap.h"

#include <cstdio>
#include <vector>

namespace rq {

namespace {

uint32_t le32(const unsigned char* p) {
    return p[0] | (p[1] << 8) | (p[2] << 16) | (static_cast<uint32_t>(p[3]) << 24);
}
uint16_t le16(const unsigned char* p) {
    return static_cast<uint16_t>(p[0] | (p[1] << 8));
}

std::string format(const char* pattern, const std::string& text) {
    std::vector<char> buf(text.size() + 64);
    std::snprintf(buf.data(), buf.size(), pattern, text.c_str());
    return buf.data();
}

std::string format(const char* pattern, int value) {
    char buf[96];
    std::snprintf(buf, sizeof buf, pattern, value);
    return buf;
}

constexpr const char* kFormatMessage = "File format is error, please select 24-bit bmp format!";
// Larger pictures than this are not a start-up image of any panel.
constexpr int32_t kMaxSide = 16384;

} // namespace

int ConvertBitmap(const std::string& source, const std::string& target, std::string& message,
                  int requiredWidth, int requiredHeight) {
    std::FILE* in = std::fopen(source.c_str(), "rb");
    if (!in) {
        message = format("Can't Opent file:%s!", source);
        return 0;
    }
    auto fail = [&](std::string text) {
        std::fclose(in);
        message = std::move(text);
        return 0;
    };

    unsigned char fileHeader[14], info[40];
    if (std::fread(fileHeader, 1, sizeof fileHeader, in) != sizeof fileHeader ||
        le16(fileHeader) != 0x4D42)
        return fail(kFormatMessage);
    const uint32_t dataOffset = le32(fileHeader + 10);
    if (std::fread(info, 1, sizeof info, in) != sizeof info)
        return fail(kFormatMessage);
    const int32_t width = static_cast<int32_t>(le32(info + 4));
    const int32_t height = static_cast<int32_t>(le32(info + 8));
    const uint16_t bitsPerPixel = le16(info + 14);
    const uint32_t compression = le32(info + 16);
    const uint32_t coloursUsed = le32(info + 32);
    if (bitsPerPixel != 24 || coloursUsed != 0 || compression != 0)
        return fail(kFormatMessage);
    if (requiredWidth != 0 && requiredHeight != 0) {
        if (width != requiredWidth)
            return fail(format("bmp width is error, need %d pixel!", requiredWidth));
        if (height != requiredHeight)
            return fail(format("bmp height is error, need %d pixel!", requiredHeight));
    }
    if (width > kMaxSide || height > kMaxSide)
        return fail(kFormatMessage);

    std::FILE* out = std::fopen(target.c_str(), "wb");
    if (!out)
        return fail(format("write file :%s failed!", target));

    // A picture stored top-down (negative height) or without width has no rows to
    // convert here.
    const int32_t rows = height > 0 ? height : 0;
    const int32_t columns = width > 0 ? width : 0;
    const long stride = (static_cast<long>(columns) * 3 + 3) / 4 * 4;
    std::vector<unsigned char> row(static_cast<size_t>(stride));
    std::vector<unsigned char> pixels(static_cast<size_t>(columns) * 2);
    bool ok = true;
    for (int32_t r = 0; r < rows && ok; ++r) {
        const long offset = static_cast<long>(dataOffset) + (rows - 1 - r) * stride;
        if (std::fseek(in, offset, SEEK_SET) != 0 ||
            std::fread(row.data(), 1, static_cast<size_t>(columns) * 3, in) !=
                static_cast<size_t>(columns) * 3) {
            message = kFormatMessage; // the pixel data ends early
            ok = false;
            break;
        }
        for (int32_t x = 0; x < columns; ++x) {
            const unsigned char* p = &row[static_cast<size_t>(x) * 3];
            const uint16_t v = rgb565(p[2], p[1], p[0]);
            pixels[static_cast<size_t>(x) * 2] = static_cast<unsigned char>(v & 0xFF);
            pixels[static_cast<size_t>(x) * 2 + 1] = static_cast<unsigned char>(v >> 8);
        }
        if (std::fwrite(pixels.data(), 1, pixels.size(), out) != pixels.size()) {
            message = format("write file :%s failed!", target);
            ok = false;
        }
    }
    std::fclose(in);
    if (std::fclose(out) != 0 && ok) {
        message = format("write file :%s failed!", target);
        ok = false;
    }
    if (!ok) {
        std::remove(target.c_str());
        return 0;
    }
    return 1;
}

} // namespace rq

#include "core/PasswordCodec.h"

#include "core/TripleDes.h"

#include <cstdint>
#include <cstring>
#include <vector>

namespace rq {

namespace {

constexpr size_t kKeyA = 0;
constexpr size_t kKeyB = 31;
constexpr size_t kHeader = 55;
const char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Key C: key B enciphered under key A, as three independent blocks.
void deriveKeyC(const uint8_t* buffer, uint8_t keyC[24]) {
    TripleDesContext a(buffer + kKeyA);
    for (int i = 0; i < 3; ++i)
        a.encryptBlock(buffer + kKeyB + 8 * i, keyC + 8 * i);
}

} // namespace

std::string base64Encode(std::string_view bytes) {
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    const unsigned char* p = reinterpret_cast<const unsigned char*>(bytes.data());
    size_t i = 0;
    for (; i + 3 <= bytes.size(); i += 3) {
        uint32_t v = (p[i] << 16) | (p[i + 1] << 8) | p[i + 2];
        out += kAlphabet[v >> 18];
        out += kAlphabet[(v >> 12) & 63];
        out += kAlphabet[(v >> 6) & 63];
        out += kAlphabet[v & 63];
    }
    size_t rest = bytes.size() - i;
    if (rest == 1) {
        uint32_t v = p[i] << 16;
        out += kAlphabet[v >> 18];
        out += kAlphabet[(v >> 12) & 63];
        out += "==";
    } else if (rest == 2) {
        uint32_t v = (p[i] << 16) | (p[i + 1] << 8);
        out += kAlphabet[v >> 18];
        out += kAlphabet[(v >> 12) & 63];
        out += kAlphabet[(v >> 6) & 63];
        out += '=';
    }
    return out;
}

std::optional<std::string> base64Decode(std::string_view text) {
    if (text.size() % 4 != 0)
        return std::nullopt;
    std::string out;
    out.reserve(text.size() / 4 * 3);
    for (size_t i = 0; i < text.size(); i += 4) {
        uint32_t v = 0;
        int pad = 0;
        for (int k = 0; k < 4; ++k) {
            char c = text[i + k];
            int d;
            if (c == '=') {
                // Padding only in the last group, and only at its end.
                if (i + 4 != text.size() || k < 2)
                    return std::nullopt;
                ++pad;
                d = 0;
            } else {
                if (pad)
                    return std::nullopt;
                const char* f = std::strchr(kAlphabet, c);
                if (!f || c == '\0')
                    return std::nullopt;
                d = static_cast<int>(f - kAlphabet);
            }
            v = (v << 6) | static_cast<uint32_t>(d);
        }
        out += static_cast<char>(v >> 16);
        if (pad < 2)
            out += static_cast<char>((v >> 8) & 0xFF);
        if (pad < 1)
            out += static_cast<char>(v & 0xFF);
    }
    return out;
}

std::string PasswordCodec::scramble(std::string_view password, RuntimeRandom& random) {
    const size_t n = password.size();
    const size_t blocks = n / 8 + 1;
    std::vector<uint8_t> buffer(kHeader + 8 * blocks, 0);
    // Key A, filler, key B, drawn in this order.
    for (size_t i = 0; i < kHeader; ++i)
        buffer[i] = random.nextByte();
    uint8_t keyC[24];
    deriveKeyC(buffer.data(), keyC);
    TripleDesContext c(keyC);
    if (n)
        std::memcpy(buffer.data() + kHeader, password.data(), n);
    c.encryptBlocks(buffer.data() + kHeader, buffer.data() + kHeader, blocks);
    return base64Encode(
        std::string_view(reinterpret_cast<const char*>(buffer.data()), buffer.size()));
}

std::string PasswordCodec::scramble(std::string_view password) {
    return scramble(password, RuntimeRandom::shared());
}

std::optional<std::string> PasswordCodec::unscramble(std::string_view stored) {
    auto decoded = base64Decode(stored);
    if (!decoded || decoded->size() < kHeader)
        return std::nullopt;
    std::vector<uint8_t> buffer(decoded->begin(), decoded->end());
    uint8_t keyC[24];
    deriveKeyC(buffer.data(), keyC);
    TripleDesContext c(keyC);
    size_t blocks = (buffer.size() - kHeader) / 8;
    c.decryptBlocks(buffer.data() + kHeader, buffer.data() + kHeader, blocks);
    const char* start = reinterpret_cast<const char*>(buffer.data() + kHeader);
    size_t len = 0;
    while (len < blocks * 8 && start[len] != '\0')
        ++len;
    return std::string(start, len);
}

} // namespace rq

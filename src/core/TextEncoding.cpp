#include "core/TextEncoding.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iconv.h>
#include <mutex>

namespace rq {

namespace {

// One conversion with iconv; nothing when the converter cannot be opened or a
// sequence cannot be converted.
std::optional<std::string> convert(const char* to, const char* from, std::string_view text) {
    iconv_t cd = iconv_open(to, from);
    if (cd == reinterpret_cast<iconv_t>(-1))
        return std::nullopt;
    std::string out(text.size() * 2 + 8, '\0');
    char* in = const_cast<char*>(text.data());
    size_t inLeft = text.size();
    char* outPtr = out.data();
    size_t outLeft = out.size();
    bool ok = true;
    while (inLeft > 0) {
        if (iconv(cd, &in, &inLeft, &outPtr, &outLeft) == static_cast<size_t>(-1)) {
            if (errno == E2BIG) {
                size_t used = outPtr - out.data();
                out.resize(out.size() * 2);
                outPtr = out.data() + used;
                outLeft = out.size() - used;
                continue;
            }
            ok = false;
            break;
        }
    }
    iconv_close(cd);
    if (!ok)
        return std::nullopt;
    out.resize(outPtr - out.data());
    return out;
}

// Length of the UTF-8 sequence that starts with `lead`, 0 when it cannot start one.
int sequenceLength(unsigned char lead) {
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return 2;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    if (lead >= 0xF0 && lead <= 0xF4)
        return 4;
    return 0;
}

std::string& codePageStore() {
    static std::string name = [] {
        const char* env = std::getenv("RQPDEV_CODEPAGE");
        if (env && (std::strcmp(env, "UTF-8") == 0 || std::strcmp(env, "utf-8") == 0))
            return std::string("UTF-8");
        return std::string("GB2312");
    }();
    return name;
}

} // namespace

std::optional<std::string> Utf8ToGb2312(std::string_view text) {
    return convert("GB2312", "UTF-8", text);
}

const std::string& deviceCodePage() {
    return codePageStore();
}

void setDeviceCodePage(const std::string& name) {
    codePageStore() = (name == "UTF-8" || name == "utf-8") ? "UTF-8" : "GB2312";
}

bool deviceCodePageIsUtf8() {
    return deviceCodePage() == "UTF-8";
}

bool isAscii(std::string_view bytes) {
    const unsigned char* p = reinterpret_cast<const unsigned char*>(bytes.data());
    size_t n = bytes.size();
    size_t i = 0;
    for (; i + 8 <= n; i += 8) {
        uint64_t w;
        std::memcpy(&w, p + i, 8);
        if (w & 0x8080808080808080ull)
            return false;
    }
    for (; i < n; ++i)
        if (p[i] & 0x80)
            return false;
    return true;
}

bool isValidUtf8(std::string_view bytes) {
    const unsigned char* p = reinterpret_cast<const unsigned char*>(bytes.data());
    size_t n = bytes.size();
    size_t i = 0;
    while (i < n) {
        if (i + 8 <= n) {
            uint64_t w;
            std::memcpy(&w, p + i, 8);
            if (!(w & 0x8080808080808080ull)) {
                i += 8;
                continue;
            }
        }
        unsigned char c = p[i];
        int len = sequenceLength(c);
        if (len == 0 || i + len > n)
            return false;
        if (len == 1) {
            ++i;
            continue;
        }
        unsigned char c1 = p[i + 1];
        if ((c1 & 0xC0) != 0x80)
            return false;
        if (c == 0xE0 && c1 < 0xA0)
            return false; // overlong
        if (c == 0xED && c1 > 0x9F)
            return false; // surrogates
        if (c == 0xF0 && c1 < 0x90)
            return false;
        if (c == 0xF4 && c1 > 0x8F)
            return false;
        for (int k = 2; k < len; ++k)
            if ((p[i + k] & 0xC0) != 0x80)
                return false;
        i += len;
    }
    return true;
}

std::optional<size_t> firstByteNotIn(std::string_view bytes, const char* from) {
    iconv_t cd = iconv_open("UTF-8", from);
    if (cd == reinterpret_cast<iconv_t>(-1))
        return size_t{0};
    char buf[4096];
    char* in = const_cast<char*>(bytes.data());
    size_t inLeft = bytes.size();
    std::optional<size_t> bad;
    while (inLeft > 0) {
        char* out = buf;
        size_t outLeft = sizeof buf;
        if (iconv(cd, &in, &inLeft, &out, &outLeft) == static_cast<size_t>(-1) && errno != E2BIG) {
            bad = static_cast<size_t>(in - bytes.data());
            break;
        }
    }
    iconv_close(cd);
    return bad;
}

namespace {

// Every non-ASCII character as "&#xHHHH;": the file then reads the same in any code
// page.
std::string asciiWithReferences(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size() * 3);
    const unsigned char* p = reinterpret_cast<const unsigned char*>(utf8.data());
    const size_t n = utf8.size();
    for (size_t i = 0; i < n;) {
        const int len = p[i] < 0x80 ? 1 : sequenceLength(p[i]);
        if (len == 1) {
            out += static_cast<char>(p[i++]);
            continue;
        }
        if (len == 0 || i + len > n) {
            out += '?';
            ++i;
            continue;
        }
        uint32_t cp = p[i] & (0xFF >> (len + 1));
        for (int k = 1; k < len; ++k)
            cp = (cp << 6) | (p[i + k] & 0x3F);
        char ref[16];
        std::snprintf(ref, sizeof ref, "&#x%04X;", cp);
        out += ref;
        i += len;
    }
    return out;
}

std::string convertForXml(std::string_view utf8) {
    if (auto whole = convert(deviceCodePage().c_str(), "UTF-8", utf8))
        return *whole;
    // Convert character by character where the whole text fails: runs that the
    // code page holds are converted, every other character becomes a reference.
    std::string out;
    out.reserve(utf8.size() + 16);
    iconv_t cd = iconv_open(deviceCodePage().c_str(), "UTF-8");
    if (cd == reinterpret_cast<iconv_t>(-1))
        return std::string(utf8);
    const unsigned char* p = reinterpret_cast<const unsigned char*>(utf8.data());
    size_t n = utf8.size();
    size_t i = 0;
    char buf[16];
    while (i < n) {
        if (p[i] < 0x80) {
            out += static_cast<char>(p[i++]);
            continue;
        }
        int len = sequenceLength(p[i]);
        if (len == 0 || i + len > n) {
            out += '?';
            ++i;
            continue;
        }
        char* in = const_cast<char*>(utf8.data() + i);
        size_t inLeft = len;
        char* o = buf;
        size_t oLeft = sizeof buf;
        if (iconv(cd, &in, &inLeft, &o, &oLeft) != static_cast<size_t>(-1) && inLeft == 0) {
            out.append(buf, o - buf);
        } else {
            iconv(cd, nullptr, nullptr, nullptr, nullptr);
            uint32_t cp = p[i] & (0xFF >> (len + 1));
            for (int k = 1; k < len; ++k)
                cp = (cp << 6) | (p[i + k] & 0x3F);
            char ref[16];
            std::snprintf(ref, sizeof ref, "&#x%04X;", cp);
            out += ref;
        }
        i += len;
    }
    iconv_close(cd);
    return out;
}

} // namespace

std::string toDeviceXml(std::string_view utf8) {
    if (deviceCodePageIsUtf8() || isAscii(utf8))
        return std::string(utf8);
    std::string bytes = convertForXml(utf8);
    // A file without an encoding declaration is read as UTF-8 when its bytes are valid
    // UTF-8; code-page bytes that happen to be (GB2312 "小" is D0 A1, in UTF-8 "С")
    // would come back as other characters.
    if (!isAscii(bytes) && isValidUtf8(bytes))
        return asciiWithReferences(utf8);
    return bytes;
}

std::string toDeviceBytes(std::string_view utf8) {
    if (deviceCodePageIsUtf8() || isAscii(utf8))
        return std::string(utf8);
    if (auto converted = convert(deviceCodePage().c_str(), "UTF-8", utf8))
        return *converted;
    return std::string(utf8);
}

std::string fromDeviceBytes(std::string_view bytes) {
    if (isValidUtf8(bytes))
        return std::string(bytes);
    const char* from = deviceCodePageIsUtf8() ? "GB2312" : deviceCodePage().c_str();
    if (auto converted = convert("UTF-8", from, bytes))
        return *converted;
    std::string out(bytes);
    for (char& c : out)
        if (static_cast<unsigned char>(c) >= 0x80)
            c = '?';
    return out;
}

} // namespace rq

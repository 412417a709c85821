#include "deploy/cipher/PackageKeys.h"

#include "core/FileUtil.h"

#include <cstdlib>
#include <fstream>

namespace rq {

void wipeKeyBytes(void* bytes, std::size_t size) {
    volatile uint8_t* p = static_cast<volatile uint8_t*>(bytes);
    for (std::size_t i = 0; i < size; ++i)
        p[i] = 0;
}

PackageKeys::PackageKeys(const PackageKeys& other) {
    *this = other;
}

PackageKeys& PackageKeys::operator=(const PackageKeys& other) {
    for (int k = 0; k < 5; ++k)
        for (int i = 0; i < 8; ++i)
            part[k][i] = other.part[k][i];
    return *this;
}

PackageKeys::~PackageKeys() {
    wipeKeyBytes(part, sizeof part);
}

std::string packageKeysPath() {
    if (const char* path = std::getenv("RQP_PACKAGE_KEYS"); path && *path)
        return path;
    return joinPath(joinPath(programDirectory(), "conffile"), "package.keys");
}

namespace {

int hexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

std::string_view trim(std::string_view s) {
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!s.empty() && blank(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && blank(s.back()))
        s.remove_suffix(1);
    return s;
}

} // namespace

bool parsePackageKeys(std::string_view text, PackageKeys& keys, std::string* error) {
    PackageKeys parsed;
    int count = 0;
    int lineNumber = 0;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line =
            trim(text.substr(0, end == std::string_view::npos ? text.size() : end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        ++lineNumber;
        if (line.empty() || line.front() == '#')
            continue;
        const std::string where = "line " + std::to_string(lineNumber);
        if (count == 4) {
            if (error)
                *error = where + ": more than four key lines";
            return false;
        }
        if (line.size() != 16) {
            if (error)
                *error = where + ": a key must be 16 hexadecimal digits";
            return false;
        }
        for (int i = 0; i < 8; ++i) {
            const int hi = hexValue(line[2 * i]);
            const int lo = hexValue(line[2 * i + 1]);
            if (hi < 0 || lo < 0) {
                if (error)
                    *error = where + ": a key must be 16 hexadecimal digits";
                return false;
            }
            parsed.part[count + 1][i] = static_cast<uint8_t>(hi * 16 + lo);
        }
        ++count;
    }
    if (count != 4) {
        if (error)
            *error = "four key lines expected, found " + std::to_string(count);
        return false;
    }
    for (int i = 0; i < 8; ++i)
        parsed.part[0][i] = parsed.part[1][i] ^ parsed.part[2][i];
    keys = parsed;
    return true;
}

bool loadPackageKeys(PackageKeys& keys, std::string* error) {
    const std::string path = packageKeysPath();
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        if (error)
            *error = "cannot read the package key file " + path;
        return false;
    }
    // A key file is a few lines; anything large is not one.
    std::string text;
    text.resize(64 * 1024);
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(in.gcount()));
    const bool tooLarge = in.peek() != std::ifstream::traits_type::eof();
    std::string reason;
    const bool ok = !tooLarge && parsePackageKeys(text, keys, &reason);
    wipeKeyBytes(text.data(), text.size());
    if (!ok && error)
        *error = "malformed package key file " + path + ": " +
                 (tooLarge ? std::string("the file is too large") : reason);
    return ok;
}

} // namespace rq

#include "core/ValueChecks.h"

#include "core/DataTypes.h"
#include "core/TextEncoding.h"

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace rq {

namespace {

// The value of a whole number written in decimal (optional sign) or, when `hex`
// is allowed, as 0x and hexadecimal digits; nothing when it is neither or does not
// fit 64 bits.
std::optional<long long> parseWhole(std::string_view text, bool hex) {
    int base = 10;
    std::string_view digits = text;
    bool negative = false;
    if (hex && digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
        base = 16;
        digits.remove_prefix(2);
    } else if (!digits.empty() && (digits[0] == '-' || digits[0] == '+')) {
        negative = digits[0] == '-';
        digits.remove_prefix(1);
    }
    // Longer than any value of the table's types, and short enough not to overflow.
    if (digits.empty() || digits.size() > (base == 16 ? 15u : 18u))
        return std::nullopt;
    long long value = 0;
    for (char c : digits) {
        int d = c >= '0' && c <= '9'                 ? c - '0'
                : base == 16 && c >= 'a' && c <= 'f' ? c - 'a' + 10
                : base == 16 && c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                     : -1;
        if (d < 0)
            return std::nullopt;
        value = value * base + d;
    }
    return negative ? -value : value;
}

// A decimal number with optional sign, fraction and exponent, and nothing else.
bool isDecimalNumber(std::string_view text) {
    size_t i = 0;
    auto digitsFrom = [&](size_t& at) {
        size_t start = at;
        while (at < text.size() && text[at] >= '0' && text[at] <= '9')
            ++at;
        return at - start;
    };
    if (i < text.size() && (text[i] == '-' || text[i] == '+'))
        ++i;
    size_t whole = digitsFrom(i);
    size_t fraction = 0;
    if (i < text.size() && text[i] == '.')
        fraction = digitsFrom(++i);
    if (whole + fraction == 0)
        return false;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        if (i < text.size() && (text[i] == '-' || text[i] == '+'))
            ++i;
        if (digitsFrom(i) == 0)
            return false;
    }
    return i == text.size();
}

std::string quoted(std::string_view s) {
    return "\"" + std::string(s) + "\"";
}

std::string hexOf(long long v) {
    static const char* digits = "0123456789ABCDEF";
    std::string out;
    do {
        out.insert(out.begin(), digits[v % 16]);
        v /= 16;
    } while (v);
    return "0x" + out;
}

} // namespace

std::optional<std::string> checkInitialValue(int typeIndex, int length, std::string_view value) {
    if (value.empty() || typeIndex < 0 || typeIndex >= DataTypeTable::kCount)
        return std::nullopt;
    const std::string type = DataTypeTable::shownAt(typeIndex);
    const std::string keyword = DataTypeTable::keywordAt(typeIndex);
    const std::string ofType = " (data type " + quoted(type) + ")";
    struct Range {
        const char* keyword;
        long long low, high;
    };
    static const Range ranges[] = {
        {"char", INT8_MIN, INT8_MAX},    {"uchar", 0, UINT8_MAX},
        {"short", INT16_MIN, INT16_MAX}, {"ushort", 0, UINT16_MAX},
        {"long", INT32_MIN, INT32_MAX},  {"ulong", 0, UINT32_MAX},
    };
    if (keyword == "bit") {
        if (length < 1 || length > 7)
            return std::nullopt; // the length check of the dialog speaks first
        const long long high = (1LL << length) - 1;
        std::optional<long long> v = parseWhole(value, false);
        if (v && *v >= 0 && *v <= high)
            return std::nullopt;
        return "The initial value " + quoted(value) + " must be a whole number from 0 to " +
               std::to_string(high) + " (data type " + quoted(type) + ", " +
               std::to_string(length) + (length == 1 ? " bit)." : " bits).");
    }
    for (const Range& r : ranges) {
        if (keyword != r.keyword)
            continue;
        const bool hex = r.low == 0;
        std::optional<long long> v = parseWhole(value, hex);
        if (v && *v >= r.low && *v <= r.high)
            return std::nullopt;
        std::string accepted =
            "a whole number from " + std::to_string(r.low) + " to " + std::to_string(r.high);
        if (hex)
            accepted += ", or 0x0 to " + hexOf(r.high);
        return "The initial value " + quoted(value) + " must be " + accepted + ofType + ".";
    }
    if (keyword == "float" || keyword == "double") {
        const double limit = keyword == "float" ? FLT_MAX : DBL_MAX;
        if (isDecimalNumber(value)) {
            // A value too small to hold becomes zero or a tiny number: only the
            // size is checked.
            const double v = std::strtod(std::string(value).c_str(), nullptr);
            if (std::isfinite(v) && std::fabs(v) <= limit)
                return std::nullopt;
        }
        char bound[32];
        std::snprintf(bound, sizeof bound, "%g", limit);
        return "The initial value " + quoted(value) + " must be a decimal number from -" + bound +
               " to " + bound + ofType + ".";
    }
    if (keyword == "string") {
        const size_t bytes = toDeviceBytes(value).size();
        if (length >= 0 && bytes <= static_cast<size_t>(length))
            return std::nullopt;
        return "The initial value is " + std::to_string(bytes) +
               " bytes long, but the data length allows " + std::to_string(length) + ofType + ".";
    }
    return std::nullopt;
}

DataShape dataShapeOf(std::string_view typeKeyword, std::string_view lengthText) {
    DataShape shape;
    shape.typeIndex = DataTypeTable::indexOfKeyword(typeKeyword);
    std::optional<long long> length = parseWhole(lengthText, false);
    shape.length = length && *length >= 0 && *length <= INT32_MAX ? static_cast<int>(*length) : 0;
    if (shape.length == 0 && shape.typeIndex >= 0)
        shape.length = DataTypeTable::row(shape.typeIndex).size;
    return shape;
}

std::optional<std::string> checkIpv4Address(std::string_view fieldLabel, std::string_view value) {
    if (value.empty())
        return std::nullopt;
    int parts = 0;
    size_t i = 0;
    bool ok = true;
    while (ok) {
        size_t start = i;
        while (i < value.size() && value[i] >= '0' && value[i] <= '9')
            ++i;
        const std::string_view part = value.substr(start, i - start);
        ok = !part.empty() && part.size() <= 3 && !(part.size() > 1 && part[0] == '0') &&
             std::stoi(std::string(part)) <= 255;
        ++parts;
        if (!ok || i == value.size())
            break;
        ok = value[i] == '.' && parts < 4;
        ++i;
    }
    if (ok && parts == 4)
        return std::nullopt;
    return "The field " + quoted(fieldLabel) +
           " must hold an IPv4 address: four numbers from 0 to 255 separated by dots, without "
           "leading zeros (for example 192.168.1.20).";
}

} // namespace rq

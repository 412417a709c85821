#include "core/DataTypes.h"

#include <array>

namespace rq {

namespace {
constexpr std::array<DataTypeRow, DataTypeTable::kCount> kRows = {{
    {"bit", "bit", 0},
    {"char", "char", 1},
    {"uchar", "unsigned char", 1},
    {"short", "short", 2},
    {"ushort", "unsigned short", 2},
    {"long", "long", 4},
    {"ulong", "unsigned long", 4},
    {"float", "float", 4},
    {"double", "double", 8},
    {"string", "string", 0},
    {"array", "array", 0},
}};
} // namespace

const DataTypeRow& DataTypeTable::row(int index) {
    return kRows.at(index);
}

int DataTypeTable::indexOfKeyword(std::string_view keyword) {
    for (int i = 0; i < kCount; ++i)
        if (keyword == kRows[i].keyword)
            return i;
    return -1;
}

int DataTypeTable::sizeOfKeyword(std::string_view keyword) {
    int i = indexOfKeyword(keyword);
    return i < 0 ? 0 : kRows[i].size;
}

int DataTypeTable::indexOfShown(std::string_view shown) {
    for (int i = 0; i < kCount; ++i)
        if (shown == kRows[i].shown)
            return i;
    return -1;
}

std::string DataTypeTable::keywordAt(int index) {
    return index < 0 || index >= kCount ? std::string() : kRows[index].keyword;
}

std::string DataTypeTable::shownAt(int index) {
    return index < 0 || index >= kCount ? std::string() : kRows[index].shown;
}

std::string DataTypeTable::shownOfKeyword(std::string_view keyword) {
    return shownAt(indexOfKeyword(keyword));
}

DataRef DataRef::split(std::string_view text) {
    auto dot = text.find('.');
    if (dot == std::string_view::npos)
        return {std::string(text), {}};
    return {std::string(text.substr(0, dot)), std::string(text.substr(dot + 1))};
}

} // namespace rq

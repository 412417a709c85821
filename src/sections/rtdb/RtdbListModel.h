#pragma once
// The rows of the main list view for a database or data-group node: one row per
// own item of the node, row i = item i, texts taken from the item without copies.

#include "sections/rtdb/RtdbModel.h"

#include <array>
#include <string_view>

namespace rq {

struct RtdbColumn {
    const char* title;
    int width; // pixels; 0 = hidden
};

// The list view's columns, each 100 wide and centred.
enum RtdbListColumn : int {
    kListName = 0,
    kListType,
    kListLength,
    kListInit,
    kListAlias,
    kListDescription,
    kListColumnCount
};
inline constexpr std::array<RtdbColumn, kListColumnCount> kRtdbListColumns = {{
    {"data name", 100},
    {"data type", 100},
    {"length", 100},
    {"initial value", 100},
    {"alias", 100},
    {"description", 100},
}};

// The text of one cell. A data row: name, shown text of its type, length, initial
// value, empty alias, description. An alias row: its alias name in the first
// column, its target in "alias", the others empty.
std::string_view rtdbListCell(const DataItem& item, int column);

} // namespace rq

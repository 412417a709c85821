#include "sections/rtdb/RtdbListModel.h"

#include "core/DataTypes.h"

namespace rq {

namespace {
std::string_view shownType(std::string_view keyword) {
    int i = DataTypeTable::indexOfKeyword(keyword);
    return i < 0 ? std::string_view() : std::string_view(DataTypeTable::row(i).shown);
}
} // namespace

std::string_view rtdbListCell(const DataItem& item, int column) {
    if (item.isAlias()) {
        switch (column) {
        case kListName:
            return item.name;
        case kListAlias:
            return item.target;
        default:
            return {};
        }
    }
    switch (column) {
    case kListName:
        return item.name;
    case kListType:
        return shownType(item.type);
    case kListLength:
        return item.length;
    case kListInit:
        return item.init;
    case kListDescription:
        return item.description;
    default:
        return {};
    }
}

} // namespace rq

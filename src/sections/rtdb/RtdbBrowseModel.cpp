#include "sections/rtdb/RtdbBrowseModel.h"

namespace rq {

RtdbBrowseModel::RtdbBrowseModel(const RtdbSection& project, const RtdbSection* system)
    : project_(project), system_(system) {}

void RtdbBrowseModel::setExcluded(int typeIndex, bool excluded) {
    if (typeIndex >= 0 && typeIndex < DataTypeTable::kCount)
        excluded_[static_cast<std::size_t>(typeIndex)] = excluded;
    if (node_)
        select(node_);
}

bool RtdbBrowseModel::excluded(int typeIndex) const {
    return typeIndex >= 0 && typeIndex < DataTypeTable::kCount &&
           excluded_[static_cast<std::size_t>(typeIndex)];
}

std::string RtdbBrowseModel::databaseNameOf(const DataNode* node) {
    const DataNode* db = node ? node->database() : nullptr;
    return db ? db->name() : std::string();
}

void RtdbBrowseModel::select(const DataNode* node) {
    node_ = node;
    dbname_ = databaseNameOf(node);
    rows_.clear();
    if (!node)
        return;
    const auto& items = node->items();
    rows_.reserve(items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        const DataItem& item = items[i];
        if (!item.isAlias() && excluded(DataTypeTable::indexOfKeyword(item.type)))
            continue;
        rows_.push_back(i);
    }
}

const DataItem& RtdbBrowseModel::rowItem(std::size_t row) const {
    return node_->item(rows_.at(row));
}

std::string_view RtdbBrowseModel::cell(std::size_t row, int column) const {
    if (row >= rows_.size())
        return {};
    const DataItem& item = rowItem(row);
    switch (column) {
    case kBrowseDatabase:
        return dbname_;
    case kBrowseName:
        return item.name;
    case kBrowseType: {
        if (item.isAlias())
            return {};
        int i = DataTypeTable::indexOfKeyword(item.type);
        return i < 0 ? std::string_view() : std::string_view(DataTypeTable::row(i).shown);
    }
    case kBrowseDescription:
        return item.isAlias() ? std::string_view() : item.description.view();
    case kBrowseLength:
        return item.isAlias() ? std::string_view() : item.length.view();
    case kBrowseInit:
        return item.isAlias() ? std::string_view() : item.init.view();
    case kBrowseAlias:
        return item.isAlias() ? std::string_view(item.target) : std::string_view();
    default:
        return {};
    }
}

std::optional<DataRef> RtdbBrowseModel::reference(std::size_t row) const {
    if (row >= rows_.size())
        return std::nullopt;
    return DataRef{dbname_, rowItem(row).name.str()};
}

} // namespace rq

#include "sections/rtdb/RtdbModel.h"

#include <algorithm>
#include <unordered_set>

namespace rq {

DataItem DataItem::makeData(SharedText name, SharedText type, SharedText length, SharedText init,
                            SharedText description) {
    DataItem item;
    item.kind = DataItemKind::Data;
    item.name = std::move(name);
    item.type = std::move(type);
    item.length = std::move(length);
    item.init = std::move(init);
    item.description = std::move(description);
    return item;
}

DataItem DataItem::makeAlias(SharedText name, SharedText target) {
    DataItem item;
    item.kind = DataItemKind::Alias;
    item.name = std::move(name);
    item.target = std::move(target);
    return item;
}

// ---- RtdbNameIndex ----

std::uint32_t RtdbNameIndex::hashOf(std::string_view name) {
    const std::size_t h = TextHash{}(name);
    return static_cast<std::uint32_t>(h ^ (h >> 32));
}

std::size_t RtdbNameIndex::probe(std::string_view name, std::uint32_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
        const Slot& s = slots_[i];
        if (s.use.total() == 0 || (s.hash == hash && s.key == name))
            return i;
    }
}

const RtdbNameUse* RtdbNameIndex::find(std::string_view name) const {
    if (count_ == 0)
        return nullptr;
    const Slot& s = slots_[probe(name, hashOf(name))];
    return s.use.total() == 0 ? nullptr : &s.use;
}

void RtdbNameIndex::clear() {
    slots_.clear();
    count_ = 0;
}

void RtdbNameIndex::reserve(std::size_t count) {
    // At most three quarters full.
    std::size_t capacity = 16;
    while (capacity / 4 * 3 < count)
        capacity *= 2;
    if (capacity > slots_.size())
        grow(capacity);
}

void RtdbNameIndex::grow(std::size_t capacity) {
    std::vector<Slot> old = std::move(slots_);
    slots_.clear();
    slots_.resize(capacity);
    for (Slot& s : old)
        if (s.use.total() != 0)
            slots_[probe(s.key, s.hash)] = std::move(s);
}

RtdbNameUse& RtdbNameIndex::use(const SharedText& name) {
    reserve(count_ + 1);
    const std::uint32_t hash = hashOf(name);
    Slot& s = slots_[probe(name, hash)];
    if (s.use.total() == 0) {
        s.key = name;
        s.hash = hash;
        ++count_;
    }
    return s.use;
}

void RtdbNameIndex::drop(std::string_view name, std::uint32_t RtdbNameUse::*field) {
    if (count_ == 0)
        return;
    std::size_t i = probe(name, hashOf(name));
    Slot& s = slots_[i];
    if (s.use.total() == 0)
        return;
    if (s.use.*field > 0)
        --(s.use.*field);
    if (s.use.total() != 0)
        return;
    // The name is gone: shift the slots after it that probed past it back, so that
    // no look-up stops at the hole.
    --count_;
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t j = (i + 1) & mask; slots_[j].use.total() != 0; j = (j + 1) & mask) {
        const std::size_t home = slots_[j].hash & mask;
        // Slot j may move to the hole at i when its home is not within (i, j].
        const bool between = i <= j ? (home > i && home <= j) : (home > i || home <= j);
        if (!between) {
            slots_[i] = std::move(slots_[j]);
            slots_[j].use = RtdbNameUse{};
            i = j;
        }
    }
    slots_[i].key = SharedText();
    slots_[i].use = RtdbNameUse{};
}

void RtdbNameIndex::addItem(const DataItem& item) {
    RtdbNameUse& u = use(item.name);
    if (item.isAlias())
        ++u.alias;
    else
        ++u.data;
}

void RtdbNameIndex::removeItem(const DataItem& item) {
    drop(item.name, item.isAlias() ? &RtdbNameUse::alias : &RtdbNameUse::data);
}

void RtdbNameIndex::addGroup(std::string_view name) {
    if (const RtdbNameUse* found = find(name)) {
        ++const_cast<RtdbNameUse*>(found)->group;
        return;
    }
    ++use(SharedText(name)).group;
}

void RtdbNameIndex::removeGroup(std::string_view name) {
    drop(name, &RtdbNameUse::group);
}

// ---- DataNode ----

DataNode::DataNode() = default;
DataNode::~DataNode() = default;

DataNode::DataNode(RtdbNodeKind kind, DataNode* parent, std::string name)
    : kind_(kind), name_(std::move(name)), parent_(parent) {
    if (kind_ == RtdbNodeKind::Database)
        names_ = std::make_unique<RtdbNameIndex>();
}

DataNode* DataNode::database() {
    DataNode* n = this;
    while (n && !n->isDatabase())
        n = n->parent_;
    return n;
}

const DataNode* DataNode::database() const {
    return const_cast<DataNode*>(this)->database();
}

RtdbNameIndex* DataNode::index() {
    DataNode* db = database();
    return db ? db->names_.get() : nullptr;
}

const RtdbNameIndex* DataNode::nameIndex() const {
    return const_cast<DataNode*>(this)->index();
}

int DataNode::indexOfChild(const DataNode* node) const {
    for (std::size_t i = 0; i < children_.size(); ++i)
        if (children_[i].get() == node)
            return static_cast<int>(i);
    return -1;
}

int DataNode::findItem(std::string_view name) const {
    for (std::size_t i = 0; i < items_.size(); ++i)
        if (items_[i].name == name)
            return static_cast<int>(i);
    return -1;
}

bool DataNode::nameInUse(std::string_view name) const {
    const RtdbNameIndex* idx = nameIndex();
    return idx && idx->contains(name);
}

bool DataNode::hasItemNamed(std::string_view name) const {
    const RtdbNameIndex* idx = nameIndex();
    if (!idx)
        return false;
    const RtdbNameUse* u = idx->find(name);
    return u && (u->data + u->alias) > 0;
}

DataNode& DataNode::addDatabase(std::string name, bool sync) {
    auto node =
        std::unique_ptr<DataNode>(new DataNode(RtdbNodeKind::Database, this, std::move(name)));
    node->sync_ = sync;
    children_.push_back(std::move(node));
    return *children_.back();
}

DataNode& DataNode::addGroup(std::string name) {
    auto node = std::unique_ptr<DataNode>(new DataNode(RtdbNodeKind::Group, this, std::move(name)));
    if (RtdbNameIndex* idx = index())
        idx->addGroup(node->name_);
    children_.push_back(std::move(node));
    return *children_.back();
}

void DataNode::unindexSubtree(RtdbNameIndex& idx) const {
    if (isGroup())
        idx.removeGroup(name_);
    for (const DataItem& item : items_)
        idx.removeItem(item);
    for (const auto& c : children_)
        c->unindexSubtree(idx);
}

void DataNode::indexSubtree(RtdbNameIndex& idx) const {
    if (isGroup())
        idx.addGroup(name_);
    for (const DataItem& item : items_)
        idx.addItem(item);
    for (const auto& c : children_)
        c->indexSubtree(idx);
}

std::unique_ptr<DataNode> DataNode::makeDatabase(std::string name, bool sync) {
    auto node =
        std::unique_ptr<DataNode>(new DataNode(RtdbNodeKind::Database, nullptr, std::move(name)));
    node->sync_ = sync;
    return node;
}

std::unique_ptr<DataNode> DataNode::makeGroup(std::string name) {
    return std::unique_ptr<DataNode>(new DataNode(RtdbNodeKind::Group, nullptr, std::move(name)));
}

std::unique_ptr<DataNode> DataNode::takeChild(std::size_t i) {
    if (i >= children_.size())
        return nullptr;
    std::unique_ptr<DataNode> c = std::move(children_[i]);
    children_.erase(children_.begin() + static_cast<std::ptrdiff_t>(i));
    if (c->isGroup())
        if (RtdbNameIndex* idx = index())
            c->unindexSubtree(*idx);
    return c;
}

void DataNode::insertChild(std::size_t i, std::unique_ptr<DataNode> node) {
    if (!node)
        return;
    node->parent_ = this;
    i = std::min(i, children_.size());
    DataNode& c = *node;
    children_.insert(children_.begin() + static_cast<std::ptrdiff_t>(i), std::move(node));
    if (c.isGroup())
        if (RtdbNameIndex* idx = index())
            c.indexSubtree(*idx);
}

void DataNode::removeChild(std::size_t i) {
    if (i >= children_.size())
        return;
    DataNode& c = *children_[i];
    if (c.isGroup())
        if (RtdbNameIndex* idx = index())
            c.unindexSubtree(*idx);
    children_.erase(children_.begin() + static_cast<std::ptrdiff_t>(i));
}

void DataNode::removeChild(const DataNode* node) {
    int i = indexOfChild(node);
    if (i >= 0)
        removeChild(static_cast<std::size_t>(i));
}

void DataNode::setName(std::string name) {
    if (isGroup()) {
        if (RtdbNameIndex* idx = index()) {
            idx->removeGroup(name_);
            idx->addGroup(name);
        }
    }
    name_ = std::move(name);
}

void DataNode::reserveNames(std::size_t count) {
    if (names_)
        names_->reserve(count);
}

void DataNode::addItem(DataItem item) {
    if (RtdbNameIndex* idx = index())
        idx->addItem(item);
    items_.push_back(std::move(item));
}

void DataNode::setItem(std::size_t i, DataItem item) {
    if (i >= items_.size())
        return;
    if (RtdbNameIndex* idx = index()) {
        idx->removeItem(items_[i]);
        idx->addItem(item);
    }
    items_[i] = std::move(item);
}

void DataNode::removeItem(std::size_t i) {
    if (i >= items_.size())
        return;
    if (RtdbNameIndex* idx = index())
        idx->removeItem(items_[i]);
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(i));
}

std::vector<std::pair<std::size_t, DataItem>>
DataNode::takeItemsNamed(const std::vector<std::string>& names) {
    std::vector<std::pair<std::size_t, DataItem>> removed;
    if (names.empty())
        return removed;
    std::unordered_set<std::string_view> doomed(names.begin(), names.end());
    RtdbNameIndex* idx = index();
    std::size_t out = 0;
    for (std::size_t i = 0; i < items_.size(); ++i) {
        if (doomed.contains(std::string_view(items_[i].name))) {
            if (idx)
                idx->removeItem(items_[i]);
            removed.emplace_back(i, std::move(items_[i]));
        } else {
            if (out != i)
                items_[out] = std::move(items_[i]);
            ++out;
        }
    }
    items_.resize(out);
    return removed;
}

void DataNode::restoreItems(const std::vector<std::pair<std::size_t, DataItem>>& removed) {
    if (removed.empty())
        return;
    RtdbNameIndex* idx = index();
    std::vector<DataItem> merged;
    merged.reserve(items_.size() + removed.size());
    std::size_t kept = 0;
    for (const auto& [pos, item] : removed) {
        while (merged.size() < pos && kept < items_.size())
            merged.push_back(std::move(items_[kept++]));
        if (idx)
            idx->addItem(item);
        merged.push_back(item);
    }
    while (kept < items_.size())
        merged.push_back(std::move(items_[kept++]));
    items_ = std::move(merged);
}

void DataNode::appendItems(const std::vector<DataItem>& items) {
    items_.reserve(items_.size() + items.size());
    RtdbNameIndex* idx = index();
    if (idx)
        idx->reserve(idx->size() + items.size());
    for (const DataItem& item : items) {
        if (idx)
            idx->addItem(item);
        items_.push_back(item);
    }
}

void DataNode::appendItems(std::vector<DataItem>&& items) {
    if (items_.empty()) {
        if (RtdbNameIndex* idx = index()) {
            idx->reserve(idx->size() + items.size());
            for (const DataItem& item : items)
                idx->addItem(item);
        }
        items_ = std::move(items);
        return;
    }
    items_.reserve(items_.size() + items.size());
    RtdbNameIndex* idx = index();
    if (idx)
        idx->reserve(idx->size() + items.size());
    for (DataItem& item : items) {
        if (idx)
            idx->addItem(item);
        items_.push_back(std::move(item));
    }
    items.clear();
}

std::vector<DataItem> DataNode::takeItemsFrom(std::size_t count) {
    std::vector<DataItem> tail;
    if (count >= items_.size())
        return tail;
    tail.reserve(items_.size() - count);
    RtdbNameIndex* idx = index();
    for (std::size_t i = count; i < items_.size(); ++i) {
        if (idx)
            idx->removeItem(items_[i]);
        tail.push_back(std::move(items_[i]));
    }
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(count), items_.end());
    return tail;
}

void DataNode::truncateItems(std::size_t count) {
    if (count >= items_.size())
        return;
    if (RtdbNameIndex* idx = index())
        for (std::size_t i = count; i < items_.size(); ++i)
            idx->removeItem(items_[i]);
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(count), items_.end());
}

std::size_t DataNode::removeItemsNamed(const std::vector<std::string>& names) {
    if (names.empty())
        return 0;
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view s) const noexcept {
            return std::hash<std::string_view>{}(s);
        }
    };
    std::unordered_set<std::string_view, Hash, std::equal_to<>> doomed(names.begin(), names.end());
    RtdbNameIndex* idx = index();
    auto keep = std::remove_if(items_.begin(), items_.end(), [&](const DataItem& item) {
        if (!doomed.contains(std::string_view(item.name)))
            return false;
        if (idx)
            idx->removeItem(item);
        return true;
    });
    std::size_t removed = static_cast<std::size_t>(items_.end() - keep);
    items_.erase(keep, items_.end());
    return removed;
}

} // namespace rq

#include "sections/hmidb/HmiDbSection.h"

#include "core/DataTypes.h"

namespace rq {

namespace {

struct GroupCount {
    std::size_t groups = 0;
    std::size_t items = 0;
};

template <class Item> void countGroup(const HmiDataGroup<Item>& group, GroupCount& c) {
    c.items += group.items.size();
    c.groups += group.groups.size();
    for (const auto& sub : group.groups)
        countGroup(sub, c);
}

std::string where(std::string_view record, std::string_view name, std::string_view attr) {
    std::string w = "hmidb.xml: ";
    w += record;
    w += " \"";
    w += name;
    w += "\" ";
    w += attr;
    return w;
}

void checkItem(CheckContext& ctx, const HmiIoItem& item) {
    ctx.rawValue(where("data", item.name, "name"), item.name);
    ctx.rawValue(where("data", item.name, "dbname"), item.dbname);
    ctx.rawValue(where("data", item.name, "dataname"), item.dataname);
    ctx.reference("hmidb.xml: data \"" + item.name + "\"", item.dbname, item.dataname);
}

void checkItem(CheckContext& ctx, const HmiMemoryItem& item) {
    ctx.rawValue(where("data", item.name, "name"), item.name);
    ctx.rawValue(where("data", item.name, "type"), item.type);
    if (DataTypeTable::indexOfKeyword(item.type) < 0)
        ctx.finding(where("data", item.name, "type") + ": \"" + item.type +
                    "\" is not a data type keyword");
    ctx.rawValue(where("data", item.name, "length"), item.length);
    ctx.rawValue(where("data", item.name, "init"), item.init);
}

// Names may repeat anywhere in this section, so only the written values, the
// references and the type keywords are looked at.
template <class Item> void checkGroup(CheckContext& ctx, const HmiDataGroup<Item>& group) {
    for (const auto& sub : group.groups) {
        ctx.rawValue(where("datagroup", sub.name, "name"), sub.name);
        checkGroup(ctx, sub);
    }
    for (const auto& item : group.items)
        checkItem(ctx, item);
}

} // namespace

void HmiDbSection::clear() {
    io = HmiIoGroup{kIoGroupName, {}, {}};
    memory = HmiMemoryGroup{kMemoryGroupName, {}, {}};
}

std::vector<std::pair<std::string, std::size_t>> HmiDbSection::counts() const {
    GroupCount ioCount;
    GroupCount memoryCount;
    countGroup(io, ioCount);
    countGroup(memory, memoryCount);
    return {{"groups", ioCount.groups + memoryCount.groups},
            {"io_data", ioCount.items},
            {"memory_data", memoryCount.items}};
}

void HmiDbSection::check(CheckContext& ctx) const {
    checkGroup(ctx, io);
    checkGroup(ctx, memory);
}

} // namespace rq

// Writing hmidb.xml: CR LF line ends, one tab per nesting level, values as held.

#include "sections/hmidb/HmiDbSection.h"

#include <charconv>

namespace rq {

namespace {

void appendTabs(std::string& out, int level) {
    out.append(static_cast<std::size_t>(level), '\t');
}

void appendInt(std::string& out, int32_t value) {
    char buf[16];
    auto r = std::to_chars(buf, buf + sizeof buf, value);
    out.append(buf, r.ptr);
}

void writeData(std::string& out, const HmiIoItem& item) {
    out += "<data name=\"";
    out += item.name;
    out += "\" dbname=\"";
    out += item.dbname;
    out += "\" dataname=\"";
    out += item.dataname;
    out += "\" period=\"";
    appendInt(out, item.period);
    out += "\" />\r\n";
}

void writeData(std::string& out, const HmiMemoryItem& item) {
    out += "<data name=\"";
    out += item.name;
    out += "\" type=\"";
    out += item.type;
    out += "\" length=\"";
    out += item.length;
    out += "\" init=\"";
    out += item.init;
    out += "\" />\r\n";
}

// A group at `level`: its line, then its sub-groups, then its items, one level
// deeper, then the closing line.
// The two fixed groups are written under their fixed names.
template <class Item>
void writeDatagroup(std::string& out, std::string_view name, const HmiDataGroup<Item>& group,
                    int level) {
    appendTabs(out, level);
    out += "<datagroup name=\"";
    out += name;
    out += "\">\r\n";
    for (const auto& sub : group.groups)
        writeDatagroup(out, sub.name, sub, level + 1);
    for (const auto& item : group.items) {
        appendTabs(out, level + 1);
        writeData(out, item);
    }
    appendTabs(out, level);
    out += "</datagroup>\r\n";
}

} // namespace

void HmiDbSection::write(std::string& out) const {
    out += "<?xml version=\"1.0\" ?>\r\n";
    out += "<hmidb name=\"hmi\" period_unit=\"ms\">\r\n";
    writeDatagroup(out, kIoGroupName, io, 1);
    writeDatagroup(out, kMemoryGroupName, memory, 1);
    out += "</hmidb>\r\n";
}

} // namespace rq

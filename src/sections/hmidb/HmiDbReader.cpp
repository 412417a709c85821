// Reading hmidb.xml. Attribute values are taken exactly as the parser gives them.

#include "core/SectionRead.h"
#include "core/Xml.h"
#include "sections/hmidb/HmiDbSection.h"

namespace rq {

namespace {

// <data name dbname dataname period/> under "io"; a missing period reads as 0.
HmiIoItem readIoData(const XmlStream& s) {
    HmiIoItem item;
    item.name = s.attr("name");
    item.dbname = s.attr("dbname");
    item.dataname = s.attr("dataname");
    item.period = parseDecimal(s.attrView("period"));
    return item;
}

// <data name type length init/> under "memory".
HmiMemoryItem readMemoryData(const XmlStream& s) {
    HmiMemoryItem item;
    item.name = s.attr("name");
    item.type = s.attr("type");
    item.length = s.attr("length");
    item.init = s.attr("init");
    return item;
}

HmiIoItem readData(const XmlStream& s, HmiIoGroup*) {
    return readIoData(s);
}
HmiMemoryItem readData(const XmlStream& s, HmiMemoryGroup*) {
    return readMemoryData(s);
}

// The content of a <datagroup>, in document order: nested groups and data items.
// Every other element is skipped here.
template <class Item> void readDatagroup(XmlStream& s, HmiDataGroup<Item>& into) {
    for (auto c = s.children(); c.next();) {
        if (s.is("datagroup")) {
            HmiDataGroup<Item> sub;
            sub.name = s.attr("name");
            readDatagroup(s, sub);
            into.groups.push_back(std::move(sub));
        } else if (s.is("data")) {
            into.items.push_back(readData(s, &into));
        }
    }
}

} // namespace

bool HmiDbSection::read(const std::string& path, ReadContext& ctx) {
    return readSectionXml(
        XmlInput::file(path), "hmidb", ctx, [this] { clear(); },
        [this](XmlStream& s, ReadContext& c) {
            // Top level: only the groups "io" and "memory" (each may appear more than
            // once and adds to its fixed group); the root's own attributes are constants.
            for (auto n = s.children(); n.next();) {
                if (!s.is("datagroup"))
                    continue;
                const std::string name = s.attr("name");
                if (name == kIoGroupName)
                    readDatagroup(s, io);
                else if (name == kMemoryGroupName)
                    readDatagroup(s, memory);
                else
                    c.drop("datagroup \"" + name + "\"",
                           "only the groups \"io\" and \"memory\" are read at the top; left out "
                           "with its content");
            }
            return true;
        });
}

} // namespace rq

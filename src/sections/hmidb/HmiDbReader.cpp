// Reading hmidb.xml. Attribute values are taken exactly as libxml2 gives them,
// without the code-page step of the other readers.

#include "core/Xml.h"
#include "sections/hmidb/HmiDbSection.h"

namespace rq {

namespace {

// <data name dbname dataname period/> under "io"; a missing period reads as 0.
HmiIoItem readIoData(const xmlNode* node) {
    HmiIoItem item;
    item.name = ReadAttrRaw(node, "name");
    item.dbname = ReadAttrRaw(node, "dbname");
    item.dataname = ReadAttrRaw(node, "dataname");
    item.period = parseDecimal(ReadAttrRaw(node, "period"));
    return item;
}

// <data name type length init/> under "memory".
HmiMemoryItem readMemoryData(const xmlNode* node) {
    HmiMemoryItem item;
    item.name = ReadAttrRaw(node, "name");
    item.type = ReadAttrRaw(node, "type");
    item.length = ReadAttrRaw(node, "length");
    item.init = ReadAttrRaw(node, "init");
    return item;
}

HmiIoItem readData(const xmlNode* node, HmiIoGroup*) {
    return readIoData(node);
}
HmiMemoryItem readData(const xmlNode* node, HmiMemoryGroup*) {
    return readMemoryData(node);
}

// The content of a <datagroup>, in document order: nested groups and data items.
// Every other element is skipped here.
template <class Item> void readDatagroup(const xmlNode* group, HmiDataGroup<Item>& into) {
    for (const xmlNode* n = group->children; n; n = n->next) {
        if (isElement(n, "datagroup")) {
            HmiDataGroup<Item> sub;
            sub.name = ReadAttrRaw(n, "name");
            readDatagroup(n, sub);
            into.groups.push_back(std::move(sub));
        } else if (isElement(n, "data")) {
            into.items.push_back(readData(n, &into));
        }
    }
}

} // namespace

bool HmiDbSection::read(const std::string& path, ReadContext& ctx) {
    clear();
    XmlDocument doc;
    if (!doc.load(path, "hmidb", &ctx.error))
        return false;
    // Top level: only the groups "io" and "memory" (each may appear more than once
    // and adds to its fixed group); the root's own attributes are constants.
    for (const xmlNode* n = doc.root()->children; n; n = n->next) {
        if (!isElement(n, "datagroup"))
            continue;
        const std::string name = ReadAttrRaw(n, "name");
        if (name == kIoGroupName)
            readDatagroup(n, io);
        else if (name == kMemoryGroupName)
            readDatagroup(n, memory);
        else
            ctx.drop("datagroup \"" + name + "\"",
                     "only the groups \"io\" and \"memory\" are read at the top; left out with "
                     "its content");
    }
    return true;
}

} // namespace rq

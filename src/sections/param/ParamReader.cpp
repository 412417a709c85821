// Reading param.xml. A <data> without a database name or data name is dropped;
// records are kept in file order, pairs that repeat included.

#include "core/Xml.h"
#include "sections/param/ParamSection.h"

namespace rq {

namespace {

// False when the element lacks a required attribute.
bool readData(const xmlNode* node, ParamItem& item) {
    item.dbname = ReadAttrText(node, "dbname");
    if (item.dbname.empty())
        return false;
    item.dataname = ReadAttrText(node, "dataname");
    if (item.dataname.empty())
        return false;
    item.value = ReadAttrText(node, "value");
    return true;
}

} // namespace

bool ParamSection::read(const std::string& path, ReadContext& ctx) {
    clear();
    XmlDocument doc;
    if (!doc.load(path, "params", &ctx.error))
        return false;
    for (const xmlNode* n = doc.root()->children; n; n = n->next) {
        if (!isElement(n, "data"))
            continue;
        ParamItem item;
        if (readData(n, item))
            items.push_back(std::move(item));
        else
            ctx.drop("data",
                     item.dbname.empty() ? "no database name; left out" : "no data name; left out");
    }
    return true;
}

} // namespace rq

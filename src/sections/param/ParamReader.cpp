// Reading param.xml. A <data> without a database name or data name is dropped;
// records are kept in file order, pairs that repeat included.

#include "core/SectionRead.h"
#include "sections/param/ParamSection.h"

namespace rq {

namespace {

// False when the element lacks a required attribute.
bool readData(const XmlStream& s, ParamItem& item) {
    item.dbname = s.attr("dbname");
    if (item.dbname.empty())
        return false;
    item.dataname = s.attr("dataname");
    if (item.dataname.empty())
        return false;
    item.value = s.attr("value");
    return true;
}

} // namespace

bool ParamSection::read(const std::string& path, ReadContext& ctx) {
    return readSectionXml(
        XmlInput::file(path), "params", ctx, [this] { clear(); },
        [this](XmlStream& s, ReadContext& c) {
            for (auto n = s.children(); n.next();) {
                if (!s.is("data"))
                    continue;
                ParamItem item;
                if (readData(s, item))
                    items.push_back(std::move(item));
                else
                    c.drop("data", item.dbname.empty() ? "no database name; left out"
                                                       : "no data name; left out");
            }
            return true;
        });
}

} // namespace rq

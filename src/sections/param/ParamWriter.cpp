// Writing param.xml: CR LF line ends, values as held, no blank before "/>".

#include "sections/param/ParamSection.h"

namespace rq {

namespace {

void writeData(std::string& out, const ParamItem& item) {
    out += "\t<data dbname=\"";
    out += item.dbname;
    out += "\" dataname=\"";
    out += item.dataname;
    out += "\" value=\"";
    out += item.value;
    out += "\"/>\r\n";
}

} // namespace

void ParamSection::write(std::string& out) const {
    out += "<?xml version=\"1.0\" ?>\r\n";
    out += "<params>\r\n";
    for (const auto& item : items)
        writeData(out, item);
    out += "</params>\r\n";
}

} // namespace rq

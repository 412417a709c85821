// Writing datalog.xml: CR LF line ends, values as held. A whole-database log is one
// line ending in " />"; a log of chosen variables opens with a line ending in
// " >", lists its variables and closes with </log>, even when it has none.

#include "sections/datalog/DataLogSection.h"

namespace rq {

namespace {

void writeData(std::string& out, const DataRef& ref) {
    out += "\t\t<data dbname=\"";
    out += ref.dbname;
    out += "\" dataname=\"";
    out += ref.dataname;
    out += "\" />\r\n";
}

void writeLog(std::string& out, const DataLog& log) {
    out += "\t<log name=\"";
    out += log.name;
    out += "\" source=\"";
    out += log.source();
    out += "\" period=\"";
    out += log.period;
    out += "\" period_var=\"";
    out += log.period_var;
    out += "\" control_var=\"";
    out += log.control_var;
    out += "\" size=\"";
    out += log.size;
    if (log.kind == DataLogKind::Database) {
        out += "\" dbname=\"";
        out += log.dbname;
        out += "\" />\r\n";
        return;
    }
    out += "\" >\r\n";
    for (const auto& ref : log.data)
        writeData(out, ref);
    out += "\t</log>\r\n";
}

} // namespace

void DataLogSection::write(std::string& out) const {
    out += "<?xml version=\"1.0\" ?>\r\n";
    out += "<datalog>\r\n";
    for (const auto& log : logs)
        writeLog(out, log);
    out += "</datalog>\r\n";
}

} // namespace rq

// Reading datalog.xml. A <log> without a name or a source, or with a source other
// than "rtdb" and "rtdb_data", is dropped; the other values are taken as they
// stand (empty when missing, no defaults).

#include "core/SectionRead.h"
#include "sections/datalog/DataLogSection.h"

namespace rq {

namespace {

// <data dbname dataname/> of a log of chosen variables.
DataRef readData(const XmlStream& s) {
    return {s.attr("dbname"), s.attr("dataname")};
}

// False when the element is to be dropped; the stream then still stands at it.
bool readLog(XmlStream& s, DataLog& log) {
    log.name = s.attr("name");
    if (log.name.empty())
        return false;
    const std::string_view source = s.attrView("source");
    if (source == "rtdb")
        log.kind = DataLogKind::Database;
    else if (source == "rtdb_data")
        log.kind = DataLogKind::Variables;
    else
        return false; // empty or unknown
    log.size = s.attr("size");
    log.period = s.attr("period");
    log.period_var = s.attr("period_var");
    log.control_var = s.attr("control_var");
    if (log.kind == DataLogKind::Database) {
        log.dbname = s.attr("dbname");
        return true;
    }
    for (auto c = s.children(); c.next();) {
        if (s.is("data"))
            log.data.push_back(readData(s));
    }
    return true;
}

} // namespace

bool DataLogSection::read(const std::string& path, ReadContext& ctx) {
    return readSectionXml(
        XmlInput::file(path), "datalog", ctx, [this] { clear(); },
        [this](XmlStream& s, ReadContext& c) {
            for (auto n = s.children(); n.next();) {
                if (!s.is("log"))
                    continue;
                DataLog log;
                if (readLog(s, log))
                    logs.push_back(std::move(log));
                else if (log.name.empty())
                    c.drop("log", "no name; left out");
                else
                    c.drop("log \"" + log.name + "\"",
                           "source \"" + s.attr("source") +
                               "\" is neither \"rtdb\" nor \"rtdb_data\"; "
                               "left out");
            }
            return true;
        });
}

} // namespace rq

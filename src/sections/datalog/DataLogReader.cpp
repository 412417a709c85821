// Reading datalog.xml. A <log> without a name or a source, or with a source other
// than "rtdb" and "rtdb_data", is dropped; the other values are taken as they
// stand (empty when missing, no defaults).

#include "core/Xml.h"
#include "sections/datalog/DataLogSection.h"

namespace rq {

namespace {

// <data dbname dataname/> of a log of chosen variables.
DataRef readData(const xmlNode* node) {
    return {ReadAttrText(node, "dbname"), ReadAttrText(node, "dataname")};
}

// False when the element is to be dropped.
bool readLog(const xmlNode* node, DataLog& log) {
    log.name = ReadAttrText(node, "name");
    if (log.name.empty())
        return false;
    const std::string source = ReadAttrText(node, "source");
    if (source == "rtdb")
        log.kind = DataLogKind::Database;
    else if (source == "rtdb_data")
        log.kind = DataLogKind::Variables;
    else
        return false; // empty or unknown
    log.size = ReadAttrText(node, "size");
    log.period = ReadAttrText(node, "period");
    log.period_var = ReadAttrText(node, "period_var");
    log.control_var = ReadAttrText(node, "control_var");
    if (log.kind == DataLogKind::Database) {
        log.dbname = ReadAttrText(node, "dbname");
        return true;
    }
    for (const xmlNode* n = node->children; n; n = n->next) {
        if (isElement(n, "data"))
            log.data.push_back(readData(n));
    }
    return true;
}

} // namespace

bool DataLogSection::read(const std::string& path, ReadContext& ctx) {
    clear();
    XmlDocument doc;
    if (!doc.load(path, "datalog", &ctx.error))
        return false;
    for (const xmlNode* n = doc.root()->children; n; n = n->next) {
        if (!isElement(n, "log"))
            continue;
        DataLog log;
        if (readLog(n, log))
            logs.push_back(std::move(log));
        else if (log.name.empty())
            ctx.drop("log", "no name; left out");
        else
            ctx.drop("log \"" + log.name + "\"",
                     "source \"" + ReadAttrText(n, "source") +
                         "\" is neither \"rtdb\" nor \"rtdb_data\"; left out");
    }
    return true;
}

} // namespace rq

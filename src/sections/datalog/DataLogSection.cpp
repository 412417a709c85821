#include "sections/datalog/DataLogSection.h"

#include <unordered_set>

namespace rq {

const char* DataLog::source() const {
    return kind == DataLogKind::Database ? "rtdb" : "rtdb_data";
}

int DataLogSection::findLog(std::string_view name) const {
    for (std::size_t i = 0; i < logs.size(); ++i)
        if (logs[i].name == name)
            return static_cast<int>(i);
    return -1;
}

std::vector<std::pair<std::string, std::size_t>> DataLogSection::counts() const {
    std::size_t data = 0;
    for (const auto& log : logs)
        data += log.data.size();
    return {{"logs", logs.size()}, {"data", data}};
}

void DataLogSection::check(CheckContext& ctx) const {
    // Log names are unique within the section, variables within one log.
    std::unordered_set<std::string_view> names;
    names.reserve(logs.size());
    std::unordered_set<std::string> refs;
    for (const auto& log : logs) {
        const std::string where = "datalog.xml: log \"" + log.name + "\" ";
        ctx.rawValue(where + "name", log.name);
        ctx.rawValue(where + "period", log.period);
        ctx.rawValue(where + "period_var", log.period_var);
        ctx.rawValue(where + "control_var", log.control_var);
        ctx.rawValue(where + "size", log.size);
        // The control variable is picked through the browse dialog as "DB.DATA"; the
        // period variable is typed and not looked up.
        ctx.joinedReference(where + "control_var", log.control_var);
        if (!names.insert(log.name).second)
            ctx.finding("datalog.xml: duplicate log \"" + log.name + "\"");
        if (log.kind == DataLogKind::Database) {
            ctx.rawValue(where + "dbname", log.dbname);
            continue;
        }
        refs.clear();
        refs.reserve(log.data.size());
        for (const auto& ref : log.data) {
            const std::string at = where + "data \"" + ref.joined() + "\"";
            ctx.rawValue(at + " dbname", ref.dbname);
            ctx.rawValue(at + " dataname", ref.dataname);
            ctx.reference(at, ref.dbname, ref.dataname);
            std::string key = ref.dbname; // a zero byte cannot occur in a name
            key += '\0';
            key += ref.dataname;
            if (!refs.insert(std::move(key)).second)
                ctx.finding(where + "duplicate data \"" + ref.joined() + "\"");
        }
    }
}

} // namespace rq

#include "sections/param/ParamSection.h"

#include <unordered_set>

namespace rq {

int ParamSection::findItem(std::string_view dbname, std::string_view dataname) const {
    for (std::size_t i = 0; i < items.size(); ++i)
        if (items[i].dbname == dbname && items[i].dataname == dataname)
            return static_cast<int>(i);
    return -1;
}

std::vector<std::pair<std::string, std::size_t>> ParamSection::counts() const {
    return {{"data", items.size()}};
}

void ParamSection::check(CheckContext& ctx) const {
    // The add command refuses a pair that is already in the list.
    std::unordered_set<std::string> pairs;
    pairs.reserve(items.size());
    for (const auto& item : items) {
        const std::string where = "param.xml: data \"" + item.dbname + "." + item.dataname + "\"";
        ctx.rawValue(where + " dbname", item.dbname);
        ctx.rawValue(where + " dataname", item.dataname);
        ctx.rawValue(where + " value", item.value);
        ctx.reference(where, item.dbname, item.dataname);
        // A zero byte cannot occur in either name, so it keeps "a.b"+"c" and
        // "a"+"b.c" apart.
        std::string key = item.dbname;
        key += '\0';
        key += item.dataname;
        if (!pairs.insert(std::move(key)).second)
            ctx.finding("param.xml: duplicate data \"" + item.dbname + "." + item.dataname + "\"");
    }
}

} // namespace rq

#include "core/ConfigSection.h"

#include "core/DataTypes.h"
#include "core/StorableValue.h"

namespace rq {

void CheckContext::rawValue(const std::string& where, std::string_view value) {
    const std::string bad = unstorableCharactersIn(value);
    if (!bad.empty())
        finding(where + ": the value holds " + bad +
                ", which is written unescaped and keeps "
                "the file from reading back");
}

void CheckContext::reference(const std::string& where, std::string_view dbname,
                             std::string_view dataname) {
    if (dbname.empty() && dataname.empty())
        return;
    if (!hasRealtimeData(dbname, dataname))
        finding(where + ": no database holds the real-time data \"" + std::string(dbname) + "." +
                std::string(dataname) + "\"");
}

void CheckContext::joinedReference(const std::string& where, std::string_view text) {
    if (text.empty())
        return;
    DataRef ref = DataRef::split(text);
    if (!hasRealtimeData(ref.dbname, ref.dataname))
        finding(where + ": no database holds the real-time data \"" + std::string(text) + "\"");
}

} // namespace rq

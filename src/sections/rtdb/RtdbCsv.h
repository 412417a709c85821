#pragma once
// The real-time database as a table: one row per data item or alias, with its
// database and the path of its data groups ("tanks/tank1", empty directly in the
// database). A row is identified by database and name, since data, aliases and
// groups share one namespace per database; a row whose group path changes moves
// the item to the end of that group.

#include "core/TableExchange.h"
#include "sections/rtdb/RtdbSection.h"

#include <memory>

namespace rq {

// database, group path, name, type, length, initial value, alias, description
std::unique_ptr<TableExchange> makeRtdbTable(RtdbSection& section);

} // namespace rq

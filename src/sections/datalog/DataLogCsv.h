#pragma once
// The variables of the data logs as a table: data log, database, data name. A row
// is identified by all three, as the add command refuses a variable a log has
// already. Logs of a whole database have no variables and no rows.

#include "core/TableExchange.h"
#include "sections/datalog/DataLogSection.h"

#include <memory>

namespace rq {

std::unique_ptr<TableExchange> makeDataLogTable(DataLogSection& section);

} // namespace rq

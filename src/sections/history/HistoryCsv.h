#pragma once
// The recorded variables of the history records as a table: record, database,
// data name, type (a keyword: period, change, vartrigger), period, change value,
// trigger variable, query variable, description. A row is identified by record,
// database and data name, as the add command refuses a variable a record has
// already. As in "History Data Record", only the value of the row's type is
// taken; the other two stay as they were.

#include "core/TableExchange.h"
#include "sections/history/HistorySection.h"

#include <memory>

namespace rq {

std::unique_ptr<TableExchange> makeHistoryTable(HistorySection& section);

} // namespace rq

#pragma once
// The parameters as a table: database, data name, initial value; a row is
// identified by database and data name, as the add command refuses a second
// parameter of the same data.

#include "core/TableExchange.h"
#include "sections/param/ParamSection.h"

#include <memory>

namespace rq {

std::unique_ptr<TableExchange> makeParamTable(ParamSection& section);

} // namespace rq

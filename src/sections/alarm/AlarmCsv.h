#pragma once
// The data of the alarm groups as a table: group, database, data name, priority,
// status variable, then per condition (high, high high, low, low low, on, off) its
// variable, alarm text, limit (the four analog conditions only) and restore text.
// A row is identified by group, database and data name, as the add command
// refuses data a group has already. As in "Alarm Data Information", an analog
// condition is kept when its limit is given, a digital one when its variable or
// alarm text is.

#include "core/TableExchange.h"
#include "sections/alarm/AlarmSection.h"

#include <memory>

namespace rq {

std::unique_ptr<TableExchange> makeAlarmTable(AlarmSection& section);

} // namespace rq

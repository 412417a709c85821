#pragma once
// The HMI database as a table: group, name, database, data name, refresh period,
// type, length, initial value. The group is the path of group names from the
// fixed group: "io" (Real-time related data) or "memory" (custom data), then the
// nested groups, joined by '/' ("io/pumps"). Rows of "io" fill database, data name
// and refresh period; rows of "memory" fill type (a keyword), length and initial
// value; the other columns are left empty and ignored. A row is identified by
// group and name (the dialogs let two data of one group share a name: the n-th
// such row of the file stands for the n-th of the group). Groups are made in their
// own dialog, not by a row.

#include "core/TableExchange.h"
#include "sections/hmidb/HmiDbSection.h"

#include <memory>

namespace rq {

std::unique_ptr<TableExchange> makeHmiDbTable(HmiDbSection& section);

} // namespace rq

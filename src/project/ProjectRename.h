#pragma once
// Renaming a real-time data item of the project together with every reference to
// it, in one save that rewrites only the files that change.

#include <optional>
#include <string>

namespace rq {

class Project;

// Renames the data item or alias `data` of the project's database `db` to
// `newName`, with the aliases of that database that stand for it and every
// reference (see RefIndex), then writes the files that changed. Nothing is written
// and the message is returned when the item does not exist, the new name is
// refused by the data dialog's checks or already names data, an alias or a group
// of the database, a file could not be read at the open or would be saved with
// other changes than the renamed names.
std::optional<std::string> renameRealtimeData(Project& project, const std::string& db,
                                              const std::string& data, const std::string& newName);

} // namespace rq

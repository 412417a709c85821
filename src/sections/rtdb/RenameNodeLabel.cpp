#include "sections/rtdb/RtdbCommands.h"
#include "sections/rtdb/RtdbEdits.h"

namespace rq {

bool checkNodeLabel(const RtdbEditor& ed, const DataNode& node, const std::string& newName) {
    if (newName.empty())
        return false;
    if (node.isDatabase() || node.isGroup()) {
        auto message = node.isDatabase() ? validateDatabaseForm({newName, true})
                                         : validateDataGroupForm({newName});
        if (message) {
            ed.sink.showMessage(*message, MessageIcon::Stop);
            return false;
        }
    }
    if (node.isDatabase()) {
        for (const auto& db : ed.rtdb.root().children()) {
            if (db.get() != &node && db->name() == newName) {
                ed.sink.showMessage(rtdbtext::kDatabaseExists, MessageIcon::Stop);
                return false;
            }
        }
        return true;
    }
    if (node.isGroup()) {
        if (node.nameInUse(newName)) {
            ed.sink.showMessage(rtdbtext::kDataExists, MessageIcon::Stop);
            return false;
        }
        return true;
    }
    return false;
}

bool renameNodeLabel(const RtdbEditor& ed, DataNode& node, const std::string& newName) {
    if (!checkNodeLabel(ed, node, newName))
        return false;
    if (newName == node.name())
        return true;
    auto change = std::make_unique<ChangeNodeProperties>(
        node.isDatabase() ? "Rename Database" : "Rename Data Group", node, newName, node.sync());
    if (node.isDatabase())
        pushDatabaseRename(ed, std::string(node.name()), newName, std::move(change));
    else
        ed.history.push(std::move(change));
    return true;
}

} // namespace rq

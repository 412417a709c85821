#include "core/EditStepGroup.h"
#include "sections/rtdb/RtdbCommands.h"
#include "sections/rtdb/RtdbEdits.h"

namespace rq {

namespace {

// Steps that make the aliases in `node` and below that stand for `from` stand for
// `to`.
void retargetAliases(DataNode& node, const std::string& from, const std::string& to,
                     std::vector<std::unique_ptr<EditCommand>>& steps) {
    for (std::size_t i = 0; i < node.itemCount(); ++i) {
        const DataItem& item = node.item(i);
        if (item.isAlias() && item.target == from) {
            DataItem changed = item;
            changed.target = to;
            steps.push_back(
                std::make_unique<ReplaceDataItem>("Modify Data", node, i, std::move(changed)));
        }
    }
    for (std::size_t i = 0; i < node.childCount(); ++i)
        retargetAliases(node.child(i), from, to, steps);
}

bool agreesToUpdate(const RtdbEditor& ed, const std::vector<DataUse>& uses, const std::string& item,
                    const std::string& newItem, bool database) {
    auto question = renameUsesQuestion(uses, item, newItem, database);
    return question && ed.sink.askYesNo(*question, MessageIcon::Question, false);
}

void pushGroup(const RtdbEditor& ed, std::vector<std::unique_ptr<EditCommand>> steps) {
    std::string name = steps.front()->name();
    ed.history.push(std::make_unique<EditStepGroup>(std::move(name), std::move(steps)));
}

} // namespace

bool confirmDeleteUses(const RtdbEditor& ed, const std::vector<DataUse>& uses) {
    auto question = deleteUsesQuestion(uses);
    return !question || ed.sink.askYesNo(*question, MessageIcon::Question, true);
}

void pushDataRename(const RtdbEditor& ed, DataNode& node, const std::string& oldName,
                    const std::string& newName, std::unique_ptr<EditCommand> change) {
    DataNode* database = node.database();
    if (!ed.refs || !database || oldName == newName) {
        ed.history.push(std::move(change));
        return;
    }
    const std::string& db = database->name();
    if (!agreesToUpdate(ed, usesOfItems(*ed.refs, node, {oldName}), db + "." + oldName,
                        db + "." + newName, false)) {
        ed.history.push(std::move(change));
        return;
    }
    std::vector<std::unique_ptr<EditCommand>> steps;
    steps.push_back(std::move(change));
    retargetAliases(*database, oldName, newName, steps);
    if (auto refs = ed.refs->renameData(db, oldName, newName))
        steps.push_back(std::move(refs));
    pushGroup(ed, std::move(steps));
}

void pushDatabaseRename(const RtdbEditor& ed, const std::string& oldName,
                        const std::string& newName, std::unique_ptr<EditCommand> change) {
    if (!ed.refs || oldName == newName ||
        !agreesToUpdate(ed, ed.refs->usesOfDatabase(oldName), oldName, newName, true)) {
        ed.history.push(std::move(change));
        return;
    }
    std::vector<std::unique_ptr<EditCommand>> steps;
    steps.push_back(std::move(change));
    if (auto refs = ed.refs->renameDatabase(oldName, newName))
        steps.push_back(std::move(refs));
    pushGroup(ed, std::move(steps));
}

} // namespace rq

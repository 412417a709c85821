#include "core/SectionEditor.h"
#include "sections/rtdb/RtdbCommands.h"
#include "sections/rtdb/RtdbEdits.h"

namespace rq {

namespace {

bool otherDatabaseNamed(const RtdbSection& rtdb, const DataNode& node, const std::string& name) {
    for (const auto& db : rtdb.root().children())
        if (db.get() != &node && db->name() == name)
            return true;
    return false;
}

} // namespace

RtdbEditResult editNodeProperties(const RtdbEditor& ed, DataNode* selected) {
    if (!selected || !(selected->isDatabase() || selected->isGroup()))
        return {};
    DatabaseForm form{selected->name(), selected->sync()};
    bool accepted = false;
    if (selected->isDatabase()) {
        accepted = askUntilAccepted(
            ed.sink, form, [&](DatabaseForm& f) { return askDatabaseForm(ed, f); },
            [&](const DatabaseForm& f) -> std::optional<std::string> {
                if (!f.name.empty() && otherDatabaseNamed(ed.rtdb, *selected, f.name))
                    return std::string(rtdbtext::kDatabaseExists);
                return std::nullopt;
            });
    } else {
        DataGroupForm group{form.name};
        accepted = askUntilAccepted(
            ed.sink, group, [&](DataGroupForm& f) { return askDataGroupForm(ed, f); },
            [&](const DataGroupForm& f) -> std::optional<std::string> {
                if (!f.name.empty() && f.name != selected->name() && selected->nameInUse(f.name))
                    return std::string(rtdbtext::kGroupExists);
                return std::nullopt;
            });
        form.name = group.name;
    }
    if (!accepted || form.name.empty())
        return {};
    if (form.name == selected->name() && form.sync == selected->sync())
        return {};
    const std::string oldName = selected->name(), newName = form.name;
    auto change = std::make_unique<ChangeNodeProperties>(
        selected->isDatabase() ? "Modify Database" : "Modify Data Group", *selected,
        std::move(form.name), form.sync);
    if (selected->isDatabase())
        pushDatabaseRename(ed, oldName, newName, std::move(change));
    else
        ed.history.push(std::move(change));
    return {true, nullptr};
}

} // namespace rq

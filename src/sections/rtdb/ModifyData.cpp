#include "core/DataTypes.h"
#include "core/SectionEditor.h"
#include "sections/rtdb/RtdbCommands.h"
#include "sections/rtdb/RtdbEdits.h"

namespace rq {

RtdbEditResult modifyData(const RtdbEditor& ed, DataNode* selected,
                          const std::vector<std::size_t>& rows) {
    if (!selected || !(selected->isDatabase() || selected->isGroup()))
        return {};
    std::optional<std::size_t> row = firstSelectedRow(rows, selected->itemCount());
    if (!row)
        return {};
    // The item is found by the name that the row shows.
    const std::string shown = selected->item(*row).name.str();
    int index = selected->findItem(shown);
    if (index < 0)
        return {};
    DataForm form = dataFormFromItem(selected->item(*row));
    auto show = [&](DataForm& f) { return ed.dialogs.dataDialog(f); };
    // Two records of one name make a database the runtime cannot load: a new name
    // that the database uses already is refused like a duplicate add.
    auto refuse = [&](const DataForm& f) -> std::optional<std::string> {
        if (f.name != shown && selected->nameInUse(f.name))
            return std::string(rtdbtext::kDataExists);
        return std::nullopt;
    };
    if (!askUntilAccepted(ed.sink, form, show, refuse))
        return {};
    const std::size_t at = static_cast<std::size_t>(index);
    DataItem item = selected->item(at);
    item.name = form.name;
    if (form.alias) {
        item.kind = DataItemKind::Alias;
        item.target = form.aliasText;
    } else {
        item.kind = DataItemKind::Data;
        item.type = DataTypeTable::keywordAt(form.typeIndex);
        item.length = std::to_string(form.length);
        item.init = form.init;
        item.description = form.description;
    }
    if (item == selected->item(at))
        return {};
    const std::string oldName = selected->item(at).name.str(), newName = item.name.str();
    pushDataRename(
        ed, *selected, oldName, newName,
        std::make_unique<ReplaceDataItem>("Modify Data", *selected, at, std::move(item)));
    return {true, nullptr};
}

} // namespace rq

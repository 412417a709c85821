#include "core/SectionEditor.h"
#include "sections/hmidb/HmiDbCommands.h"

namespace rq {

namespace {

// Names may repeat in this section: the row's own item is the one changed, so
// that modifying the second of two items of one name never overwrites the first.
template <class Item, class Form, class Ask, class FromItem, class ToItem>
bool modify(const HmiDbEditor& ed, const HmiPlace& at, const std::vector<std::size_t>& rows,
            Ask ask, FromItem fromItem, ToItem toItem) {
    const auto& items = groupAt<Item>(ed.section, at.path).items;
    std::optional<std::size_t> row = firstSelectedRow(rows, items.size());
    if (!row)
        return false;
    Form form = fromItem(items[*row]);
    if (!ask(form))
        return false;
    Item item = toItem(form);
    if (item == items[*row])
        return false;
    ed.history.push(std::make_unique<ReplaceHmiData<Item>>("Modify Data", ed.section, at.path, *row,
                                                           std::move(item)));
    return true;
}

} // namespace

bool modifyHmiData(const HmiDbEditor& ed, const HmiPlace& at,
                   const std::vector<std::size_t>& rows) {
    if (at.kind == HmiDbSection::kIoKind)
        return modify<HmiIoItem, IoDataForm>(
            ed, at, rows, [&](IoDataForm& f) { return ed.dialogs.ioDataDialog(f); }, ioFormFromItem,
            ioItemFromForm);
    if (at.kind == HmiDbSection::kMemoryKind)
        return modify<HmiMemoryItem, MemoryDataForm>(
            ed, at, rows, [&](MemoryDataForm& f) { return ed.dialogs.memoryDataDialog(f); },
            memoryFormFromItem, memoryItemFromForm);
    return false;
}

} // namespace rq

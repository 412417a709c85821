#include "core/CommandIds.h"
#include "sections/printer/PrinterEditor.h"

namespace rq {

bool configurePrinter(PrinterSection& s, const std::string& catalogPath, PrinterDialogHost& dialogs,
                      UndoHistory& history) {
    PrinterCatalog catalog;
    std::string error;
    catalog.load(catalogPath, &error); // lists stay empty without a readable catalog
    PrinterForm form = printerFormFromConfig(s.config(), catalog);
    if (!dialogs.printDialog(form, catalog))
        return false;
    PrinterConfig changed = s.config();
    storePrinterForm(form, catalog, changed);
    if (changed == s.config())
        return false;
    history.push(std::make_unique<ReplacePrinterConfig>(s, std::move(changed)));
    return true;
}

EditorList PrinterSectionEditor::list(const void*) const {
    EditorList l;
    l.rows = [] { return std::size_t{0}; };
    l.cell = [](std::size_t, int) { return std::string_view(); };
    return l;
}

EditorResult PrinterSectionEditor::run(int command, const EditorSelection&) {
    if (command != cmd::kPrintConfiguration ||
        !configurePrinter(s_, catalogPath_, *dialogs_, history_))
        return EditorResult::none();
    return EditorResult::rows();
}

} // namespace rq

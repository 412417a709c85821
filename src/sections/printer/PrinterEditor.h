#pragma once
// The printer editor: the one dialog "Print Configuration", opened from the
// Configuration menu (command 32911) with the choices of the printer catalog, read
// anew each time; OK replaces the configuration as one step of the history.

#include "core/EditCommand.h"
#include "core/SectionEditor.h"
#include "core/SectionTable.h"
#include "core/UndoHistory.h"
#include "sections/printer/PrinterForms.h"

#include <string>

namespace rq {

inline constexpr int kPrinterSectionIndex = sectionIndexOf("printer.xml");

// The configuration replaced by another (undo puts the old one back).
class ReplacePrinterConfig : public EditCommand {
public:
    ReplacePrinterConfig(PrinterSection& s, PrinterConfig config);
    void redo() override;
    void undo() override;

private:
    PrinterSection& s_;
    PrinterConfig other_; // the value not in the section now
};

// The dialog as the command sees it: modal, its lists filled from the catalog,
// false on Cancel; on OK it runs validatePrinterForm and stays open while that
// refuses.
class PrinterDialogHost {
public:
    virtual ~PrinterDialogHost() = default;
    virtual bool printDialog(PrinterForm& form, const PrinterCatalog& catalog) = 0;
};

// Reads the catalog at `catalogPath` (a missing or unreadable catalog gives empty
// lists), opens the dialog; true when OK changed the section (one step).
bool configurePrinter(PrinterSection& s, const std::string& catalogPath, PrinterDialogHost& dialogs,
                      UndoHistory& history);

// Without a node of its own: the Configuration menu runs its one command.
class PrinterSectionEditor : public SectionEditor {
public:
    PrinterSectionEditor(PrinterSection& s, std::string catalogPath, PrinterDialogHost& dialogs,
                         UndoHistory& history)
        : s_(s), catalogPath_(std::move(catalogPath)), dialogs_(&dialogs), history_(history) {}

    std::vector<EditorNode> nodes() const override { return {}; }
    int treeMenu(const void*) const override { return 0; }
    int listMenu(const void*) const override { return 0; }
    EditorList list(const void*) const override;
    EditorKeys keys(const void*) const override { return {}; }
    EditorResult run(int command, const EditorSelection& selection) override;

private:
    PrinterSection& s_;
    std::string catalogPath_;
    PrinterDialogHost* dialogs_;
    UndoHistory& history_;
};

} // namespace rq

// The printer editor without a display: the catalog read anew for each dialog,
// the selections, OK without a selection, the storable-value check, and one step
// through undo and redo compared by the bytes of printer.xml.

#include "sections/printer/PrinterEditor.h"
#include "core/StorableValue.h"
#include "support/SectionTestKit.h"

#include <gtest/gtest.h>

#include <functional>

using namespace rq;

namespace {

const char* const kCatalog = "<?xml version=\"1.0\"?>\n<printerconf>\n"
                             "<printers><printer name=\"Epson\" driver=\"escp2-me1\"/>"
                             "<printer name=\"HP\" driver=\"pcl\"/></printers>\n"
                             "<resolutions><resolution name=\"180\" description=\"low\"/>"
                             "<resolution name=\"360sw\" description=\"high\"/></resolutions>\n"
                             "<papers><paper name=\"A4\" description=\"A4 sheet\"/></papers>\n"
                             "</printerconf>\n";

// Answers through `edit` (nothing = Cancel); records the form and the catalog's
// printer names the dialog opened with.
struct ScriptedDialog : PrinterDialogHost {
    std::function<bool(PrinterForm&)> edit;
    PrinterForm opened;
    std::vector<std::string> printers;
    bool printDialog(PrinterForm& f, const PrinterCatalog& catalog) override {
        opened = f;
        printers.clear();
        for (const PrinterEntry& p : catalog.printers)
            printers.push_back(p.name);
        return edit && edit(f);
    }
};

std::string bytes(const PrinterSection& s) {
    std::string out;
    s.write(out);
    return out;
}

struct PrinterEditorTest : ::testing::Test {
    PrinterEditorTest() { rqtest::writeFile(catalogPath, kCatalog); }
    bool run() { return editor.run(32911, {}).changed; }

    rqtest::TempDir dir;
    std::string catalogPath = dir.file("printerconf.xml");
    PrinterSection section;
    ScriptedDialog dialog;
    UndoHistory history;
    PrinterSectionEditor editor{section, catalogPath, dialog, history};
};

} // namespace

TEST_F(PrinterEditorTest, SelectsByDriverAndNameAndKeepsWhatIsNotSelected) {
    EXPECT_FALSE(run()); // Cancel
    EXPECT_EQ(dialog.printers, (std::vector<std::string>{"Epson", "HP"}));
    EXPECT_EQ(dialog.opened.printer, 0);
    EXPECT_EQ(dialog.opened.resolution, 1);
    EXPECT_EQ(dialog.opened.paper, 0);
    EXPECT_EQ(dialog.opened.scaling, "1.0");

    // A stored value that no entry has selects nothing; OK keeps it.
    section.config().printerName = "gone";
    section.config().paper = "B5";
    dialog.edit = [](PrinterForm& f) {
        f.resolution = 0;
        f.topMargin = "2.5";
        return true;
    };
    EXPECT_TRUE(run());
    EXPECT_EQ(dialog.opened.printer, -1);
    EXPECT_EQ(dialog.opened.paper, -1);
    EXPECT_EQ(section.config(), (PrinterConfig{"gone", "180", "B5", "2.5", "1.0", "1.0"}));

    // Read anew each time: a changed catalog shows at once, a missing one empties
    // the lists.
    rqtest::writeFile(catalogPath, "<printerconf><printers><printer name=\"New\" driver=\"pcl\"/>"
                                   "</printers></printerconf>");
    dialog.edit = nullptr;
    run();
    EXPECT_EQ(dialog.printers, std::vector<std::string>{"New"});
    std::remove(catalogPath.c_str());
    dialog.edit = [](PrinterForm& f) {
        f.scaling = "2";
        return true;
    };
    EXPECT_TRUE(run());
    EXPECT_TRUE(dialog.printers.empty());
    EXPECT_EQ(section.config(), (PrinterConfig{"gone", "180", "B5", "2.5", "1.0", "2"}));
}

TEST_F(PrinterEditorTest, TextsAsTypedButStorableAndOneStepByTheBytes) {
    PrinterForm f;
    f.topMargin = "abc";
    EXPECT_EQ(validatePrinterForm(f), std::nullopt);
    f.scaling = "1&2";
    EXPECT_EQ(validatePrinterForm(f), checkStorableValue("Print Magnification", "1&2"));
    f.leftMargin = "<";
    EXPECT_EQ(validatePrinterForm(f), checkStorableValue("Left Margin(cm)", "<"));

    const std::string before = bytes(section);
    dialog.edit = [](PrinterForm&) { return true; }; // OK unchanged: no step
    EXPECT_FALSE(run());
    dialog.edit = [](PrinterForm& p) {
        p.printer = 1;
        p.leftMargin = "0.5";
        return true;
    };
    EXPECT_TRUE(run());
    EXPECT_FALSE(editor.run(32863, {}).changed);
    EXPECT_EQ(history.count(), 1u);
    EXPECT_EQ(history.undoText(), "Undo Print Configuration");
    const std::string after = bytes(section);
    EXPECT_NE(
        after.find("printer_name=\"pcl\" resolution=\"360sw\" paper=\"A4\" top_margin=\"1.0\" "
                   "left_margin=\"0.5\" scaling=\"1.0\"/>"),
        std::string::npos);
    ASSERT_TRUE(history.undo());
    EXPECT_EQ(bytes(section), before);
    ASSERT_TRUE(history.redo());
    EXPECT_EQ(bytes(section), after);
}

// The history records on the offscreen platform: both dialogs with their checks and
// pick buttons, and the editor in the main window (record nodes, the list, the
// list's keys, undo).

#include "sections/history/ui/HistoryDialogs.h"
#include "sections/history/ui/HistoryEditorUi.h"
#include "sections/rtdb/ui/RtdbBrowseDialog.h"
#include "shell/ListView.h"
#include "shell/MainWindow.h"
#include "shell/ProjectTree.h"
#include "shell/QtText.h"

#include "ShellApp.h"
#include "support/ScriptedDialog.h"
#include "support/TestSupport.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <gtest/gtest.h>

#include <filesystem>

namespace {

using rqshell::str;

struct HistoryUi : ::testing::Test {
    HistoryUi() { rqtest::shellApp(); }
    rqtest::RecordingSink sink;
};

TEST_F(HistoryUi, ConfigDialogChecksItsNumbers) {
    rqshell::CHistoryConfigDialog d(sink);
    EXPECT_EQ(str(d.windowTitle()), "History Data Configuration");
    EXPECT_EQ(str(d.nameEdit()->accessibleName()), "History Record Name:");
    EXPECT_EQ(str(d.locationBox()->itemText(1)), "CF Card");
    rq::HistoryRecordForm f = d.form(); // a new record's values
    EXPECT_EQ(f.period + f.remaindays + f.indexperiod, "10001600");
    EXPECT_EQ(f.location, 0);
    d.show();
    d.setForm({"h", "1000", 1, "x", "600"});
    d.accept();
    EXPECT_TRUE(d.isVisible());
    EXPECT_EQ(sink.texts(),
              (std::vector<std::string>{
                  "The field \"Saving Date\" must be a whole number greater than 0."}));
    d.setForm({"h", "1000", 1, "30", "600"});
    d.accept();
    EXPECT_EQ(d.result(), QDialog::Accepted);
    EXPECT_EQ(d.form().location, 1);
}

TEST_F(HistoryUi, DataDialogPicksItsReferencesAndEnablesTheValueOfItsKind) {
    rq::RtdbSection project;
    rq::DataNode& db = project.root().addDatabase("plant");
    db.addItem(rq::DataItem::makeData("level", "float", "4", "0", ""));
    rqshell::CHistoryDataDialog d(project, nullptr, sink);
    EXPECT_EQ(str(d.windowTitle()), "History Data Record");
    QLineEdit* dataname = d.dataField()->dataEdit();
    EXPECT_TRUE(dataname->isReadOnly() && d.dataField()->edit()->isReadOnly());
    EXPECT_EQ(str(dataname->accessibleName()), "Realtime Data Name:");
    EXPECT_EQ(str(d.dataField()->edit()->accessibleName()), "Database Name:");
    EXPECT_EQ(str(d.triggerField()->edit()->accessibleName()), "Spring Variable:");
    EXPECT_TRUE(dataname->isVisibleTo(&d));

    d.show();
    d.kindBox()->setCurrentIndex(1);
    EXPECT_TRUE(d.changeEdit()->isEnabled());
    EXPECT_FALSE(d.periodEdit()->isEnabled() || d.triggerField()->isEnabled());
    d.accept();
    EXPECT_EQ(sink.texts(), (std::vector<std::string>{"Please choose data!"}));

    // Each pick button opens the browse dialog: the data's fills both names, the
    // others "DB.DATA".
    auto choose = [&] {
        QTimer::singleShot(0, [&] {
            auto* b = qobject_cast<rqshell::CRtdbBrowseDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(b, nullptr);
            b->selectNode(&db);
            b->list()->selectRow(0);
            b->accept();
        });
    };
    choose();
    d.dataField()->pickButton()->click();
    choose();
    d.queryField()->pickButton()->click();
    rq::HistoryDataForm f = d.form();
    EXPECT_EQ(f.dbname + "|" + f.dataname + "|" + f.queryvarname, "plant|level|plant.level");
    d.accept();
    EXPECT_EQ(sink.texts().back(), "Please input data change value!");
    d.changeEdit()->setText("0.5");
    d.accept();
    EXPECT_EQ(d.result(), QDialog::Accepted);
    EXPECT_EQ(d.form().kind, 1);
}

TEST_F(HistoryUi, MainWindowListsTheVariablesOfTheSelectedRecord) {
    rq::Catalogs catalogs;
    rqshell::CMainFrame frame{catalogs, rqtest::programDir(), &sink, nullptr};
    rqtest::TempDir dir;
    std::filesystem::copy(std::string(std::getenv("RQ_SOURCE_DIR")) + "/data/examples/demo",
                          dir.path() / "demo", std::filesystem::copy_options::recursive);
    ASSERT_TRUE(frame.openProjectDirectory(QString::fromStdString(dir.file("demo"))));
    struct Dialogs : rq::HistoryDialogHost {
        explicit Dialogs(rq::MessageSink& s) : sink(s) {}
        bool recordDialog(rq::HistoryRecordForm& f) override {
            return record.answer(f, sink, rq::validateHistoryRecordForm);
        }
        bool dataDialog(rq::HistoryDataForm& f) override {
            return data.answer(f, sink, rq::validateHistoryDataForm);
        }
        rq::MessageSink& sink;
        rqtest::ScriptedDialog<rq::HistoryRecordForm> record;
        rqtest::ScriptedDialog<rq::HistoryDataForm> data;
    } dialogs(sink);
    frame.editor<rq::HistorySectionEditor>(rq::SectionObject::History).setDialogHost(&dialogs);

    QTreeWidgetItem* node = frame.tree().fixedNode(rqshell::FixedNode::HistoryRecord);
    ASSERT_EQ(node->childCount(), 2);
    EXPECT_EQ(str(node->child(1)->text(0)), "archive");
    frame.tree().setCurrentItem(node->child(0));
    rqshell::SectionListModel& list = frame.view().listModel();
    ASSERT_EQ(list.columnCount(), 8);
    EXPECT_EQ(list.rowCount(), 3);
    EXPECT_EQ(str(list.text(1, 2)), "Data change record");

    dialogs.data.script = {rq::HistoryDataForm{"plant", "Flow", 0, "100", "", "", "", ""}};
    QKeyEvent insert(QEvent::KeyPress, Qt::Key_Insert, Qt::NoModifier);
    QApplication::sendEvent(&frame.view(), &insert);
    ASSERT_EQ(list.rowCount(), 4);
    EXPECT_EQ(str(list.text(3, 3)), "100");
    EXPECT_TRUE(frame.project().model().modified);
    frame.runCommand(57643); // Undo
    EXPECT_EQ(list.rowCount(), 3);
    EXPECT_FALSE(frame.project().model().modified);

    // A new record becomes the selected node.
    dialogs.record.script = {rq::HistoryRecordForm{"fast", "100", 0, "1", "60"}};
    frame.runCommand(32912);
    ASSERT_EQ(node->childCount(), 3);
    EXPECT_EQ(frame.tree().currentItem(), node->child(2));
}

} // namespace

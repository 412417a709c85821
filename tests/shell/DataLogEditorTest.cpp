// The data log editor in the workspace: its two dialogs on the offscreen platform
// (fields, checks, the pick buttons) and its nodes, list, keys and undo in the main
// window.

#include "sections/datalog/ui/DataLogDialogs.h"
#include "sections/datalog/ui/DataLogEditorUi.h"
#include "sections/rtdb/ui/RtdbBrowseDialog.h"
#include "sections/rtdb/ui/RtdbPickField.h"
#include "shell/ListView.h"
#include "shell/MainWindow.h"
#include "shell/ProjectTree.h"

#include "ShellApp.h"
#include "support/TestSupport.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTableView>
#include <QTimer>
#include <gtest/gtest.h>

#include <deque>
#include <filesystem>

namespace {

using Texts = std::vector<std::string>;

std::string str(const QString& s) {
    return s.toUtf8().toStdString();
}

struct DataLogUi : ::testing::Test {
    DataLogUi() {
        rqtest::shellApp();
        rq::DataNode& db = project.root().addDatabase("plant");
        db.addItem(rq::DataItem::makeData("level", "float", "4", "0", ""));
        plant = &db;
    }
    // Presses a pick button and chooses the first variable of "plant" in the browse
    // dialog that it opens.
    void pickFirst(QPushButton* button) {
        QTimer::singleShot(0, [this] {
            auto* b = qobject_cast<rqshell::CRtdbBrowseDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(b, nullptr);
            b->selectNode(plant);
            b->list()->selectRow(0);
            b->accept();
        });
        button->click();
    }
    rq::RtdbSection project;
    const rq::DataNode* plant;
    rqtest::RecordingSink sink;
};

} // namespace

TEST_F(DataLogUi, LogDialogChecksAndPicks) {
    rqshell::CDataLogDialog some(rq::DataLogKind::Variables, project, nullptr, sink);
    EXPECT_EQ(some.databaseField(), nullptr); // only a whole-database log has one

    rqshell::CDataLogDialog d(rq::DataLogKind::Database, project, nullptr, sink);
    EXPECT_EQ(str(d.windowTitle()), "Realtime Data Record");
    EXPECT_EQ(str(d.periodEdit()->text()), "1000");
    EXPECT_EQ(str(d.sizeEdit()->text()), "100");
    ASSERT_NE(d.databaseField(), nullptr);
    const std::pair<QWidget*, const char*> names[] = {
        {d.nameEdit(), "Record Name:"},
        {d.periodEdit(), "Default Record Period:"},
        {d.periodVarEdit(), "Period Variable:"},
        {d.sizeEdit(), "Record Data Size:"},
        {d.databaseField()->edit(), "Realtime Database:"},
        {d.controlField()->edit(), "Control Variable:"}};
    for (auto [w, name] : names)
        EXPECT_EQ(str(w->accessibleName()), name);

    d.show();
    d.accept();
    d.nameEdit()->setText("all");
    d.periodEdit()->clear();
    d.accept();
    d.periodEdit()->setText("500");
    d.sizeEdit()->clear();
    d.accept();
    EXPECT_TRUE(d.isVisible());
    EXPECT_EQ(sink.texts(), (Texts{"Please input data log name!", "Please input data log period!",
                                   "Please input data log size!"}));
    d.sizeEdit()->setText("20");
    pickFirst(d.databaseField()->pickButton()); // the database of the variable only
    pickFirst(d.controlField()->pickButton());  // the variable as "DB.DATA"
    d.accept();
    EXPECT_FALSE(d.isVisible());
    EXPECT_EQ(d.result(), QDialog::Accepted);
    rq::DataLogForm f = d.form();
    EXPECT_EQ(f.dbname, "plant");
    EXPECT_EQ(f.control_var, "plant.level");
    EXPECT_EQ(f.name + "/" + f.period + "/" + f.size, "all/500/20");
}

TEST_F(DataLogUi, VariableDialogPicksBothNames) {
    rqshell::CLogDataDialog d(project, nullptr, sink);
    EXPECT_EQ(str(d.windowTitle()), "Realtime Data Record");
    EXPECT_EQ(str(d.dataField()->dataEdit()->accessibleName()), "Realtime Data:");
    EXPECT_EQ(str(d.dataField()->edit()->accessibleName()), "Database Name:");
    d.setForm({"old", "db"});
    EXPECT_EQ(str(d.dataField()->dataEdit()->text()), "old");
    d.show();
    pickFirst(d.dataField()->pickButton());
    d.accept();
    EXPECT_FALSE(d.isVisible());
    EXPECT_EQ(d.form().dataname, "level");
    EXPECT_EQ(d.form().dbname, "plant");
}

namespace {

struct ScriptedDialogs : rq::DataLogDialogHost {
    std::deque<rq::DataLogForm> logs;
    std::deque<rq::LogDataForm> data;
    template <class Q, class F> static bool next(Q& q, F& f) {
        if (q.empty())
            return false;
        f = q.front();
        q.pop_front();
        return true;
    }
    bool logDialog(rq::DataLogForm& f) override { return next(logs, f); }
    bool logDataDialog(rq::LogDataForm& f) override { return next(data, f); }
};

void press(QWidget& w, int key) {
    QKeyEvent e(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&w, &e);
}

} // namespace

TEST_F(DataLogUi, LogsAreNodesAndTheirVariablesTheList) {
    rq::Catalogs catalogs;
    rqshell::CMainFrame frame(catalogs, rqtest::programDir(), &sink);
    rqtest::TempDir dir;
    std::filesystem::copy(std::string(std::getenv("RQ_SOURCE_DIR")) + "/data/examples/demo",
                          dir.path() / "demo", std::filesystem::copy_options::recursive);
    ASSERT_TRUE(frame.openProjectDirectory(QString::fromStdString(dir.file("demo"))));
    ScriptedDialogs dialogs;
    frame.editor<rq::DataLogSectionEditor>(rq::SectionObject::DataLog).setDialogHost(&dialogs);
    rqshell::CPrjTree& tree = frame.tree();
    QTreeWidgetItem* top = tree.fixedNode(rqshell::FixedNode::RealtimeRecord);
    ASSERT_EQ(top->childCount(), 2);
    EXPECT_EQ(str(top->child(1)->text(0)), "hmi_all");

    // Every command of both menus is there to use.
    tree.setCurrentItem(top->child(0));
    rqshell::TreeNodeHandler* h = tree.selectedHandler();
    ASSERT_NE(h, nullptr);
    for (int id : {h->GetMenuId(), h->GetListMenuId()}) {
        std::unique_ptr<QMenu> menu(frame.buildContextMenu(id, &frame));
        ASSERT_FALSE(menu->actions().isEmpty());
        for (QAction* a : menu->actions()) {
            EXPECT_TRUE(a->isEnabled()) << str(a->text());
            if (a->data().toInt() == 32843)
                EXPECT_EQ(str(a->statusTip()), "Add Full Record Database  ");
        }
    }

    rqshell::SectionListModel& list = frame.view().listModel();
    ASSERT_EQ(list.columnCount(), 2);
    EXPECT_EQ(list.rowCount(), 2);
    EXPECT_EQ(str(list.text(1, 1)), "Tank2_Level");

    // Insert adds a variable, Enter modifies the selected one, Delete deletes it.
    dialogs.data = {{"Pump1_Run", "plant"}};
    press(frame.view(), Qt::Key_Insert);
    ASSERT_EQ(list.rowCount(), 3);
    frame.view().selectRow(2);
    dialogs.data = {{"P1", "plant"}};
    press(frame.view(), Qt::Key_Return);
    EXPECT_EQ(str(list.text(2, 1)), "P1");
    frame.view().selectRow(2);
    sink.answers = {true};
    press(frame.view(), Qt::Key_Delete);
    EXPECT_EQ(list.rowCount(), 2);

    // A new log becomes the selected node; undo takes it away again.
    rq::DataLogForm all;
    all.kind = rq::DataLogKind::Database;
    all.name = "all";
    dialogs.logs = {all};
    frame.runCommand(32843);
    ASSERT_EQ(top->childCount(), 3);
    EXPECT_EQ(tree.currentItem(), top->child(2));
    EXPECT_EQ(list.columnCount(), 0); // a whole-database log lists nothing
    EXPECT_EQ(str(frame.action(57643)->text()), "Undo Add All Database Record");
    for (int i = 0; i < 4; ++i)
        frame.runCommand(57643);
    EXPECT_EQ(top->childCount(), 2);
    EXPECT_FALSE(frame.project().model().modified);
}

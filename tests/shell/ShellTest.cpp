#include "sections/alarm/ui/AlarmDialogs.h"
#include "sections/datalog/ui/DataLogDialogs.h"
#include "sections/datalog/ui/DataLogEditorUi.h"
#include "sections/device/ui/DeviceDialogs.h"
#include "sections/device/ui/DeviceEditorUi.h"
#include "sections/fbd/ui/FbdDialogs.h"
#include "sections/fbd/ui/FbdEditorUi.h"
#include "sections/history/ui/HistoryDialogs.h"
#include "sections/history/ui/HistoryEditorUi.h"
#include "sections/hmidb/ui/HmiDbDialogs.h"
#include "sections/hmidb/ui/HmiDbEditorUi.h"
#include "sections/hmiwindow/ui/HmiWindowDialogs.h"
#include "sections/param/ui/ParamDialogs.h"
#include "sections/param/ui/ParamEditorUi.h"
#include "sections/printer/ui/PrinterDialog.h"
#include "sections/redundancy/ui/RedundancyDialog.h"
#include "sections/rtdb/ui/RtdbBrowseDialog.h"
#include "sections/rtdb/ui/RtdbDialogs.h"
#include "sections/rtdb/ui/RtdbEditorUi.h"
#include "sections/rtdb/ui/RtdbPickField.h"
#include "shell/Application.h"
#include "shell/ListView.h"
#include "shell/MainWindow.h"
#include "shell/ProjectDialogs.h"
#include "shell/ProjectTree.h"
#include "shell/QtText.h"

#include "ShellApp.h"
#include "support/TestSupport.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QProcess>
#include <QPushButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableView>
#include <QThread>
#include <QTimer>
#include <QTreeWidget>
#include <gtest/gtest.h>

#include <any>
#include <atomic>
#include <deque>
#include <filesystem>
#include <functional>
#include <thread>

namespace {

using rqshell::CMainFrame;
using rqshell::FixedNode;

QApplication& app() {
    return rqtest::shellApp();
}

using rqshell::str;

using rqtest::press;

struct Fixture : ::testing::Test {
    Fixture() {
        app();
        catalogs.hmi.LoadHmiDeviceCatalog(rqtest::programDir() + "/hmidevice.xml");
    }
    rq::Catalogs catalogs;
    rqtest::RecordingSink sink;
    rq::SilentSink silent;
};

struct MainWindowTest : Fixture {
    struct RecordingLauncher : rq::ProgramLauncher {
        std::vector<std::string> lines;
        bool launch(const std::string&, const std::string& line, std::string*) override {
            lines.push_back(line);
            return true;
        }
    } launcher;
    CMainFrame frame{catalogs, rqtest::programDir(), &sink, &launcher};

    // A top-level menu's entries as "text|command|shortcut" lines, separators skipped.
    std::vector<std::string> entries(const QString& title) {
        for (QAction* top : frame.menuBar()->actions()) {
            if (top->text() != title || !top->menu())
                continue;
            frame.updateCommandStates();
            std::vector<std::string> out;
            for (QAction* a : top->menu()->actions())
                if (!a->isSeparator())
                    out.push_back(str(a->text()) + "|" + std::to_string(a->data().toInt()) + "|" +
                                  str(a->shortcut().toString()) + "|" +
                                  (a->isEnabled() ? "on" : "off"));
            return out;
        }
        return {"no menu " + str(title)};
    }
};

TEST_F(MainWindowTest, MainMenuEntriesCommandsShortcutsAndStates) {
    std::vector<std::string> tops;
    for (QAction* a : frame.menuBar()->actions())
        tops.push_back(str(a->text()));
    EXPECT_EQ(tops, (std::vector<std::string>{"Project(&P)", "View(&V)", "Tool(&T)",
                                              "Configuration(&C)", "Help(&H)", "About(&A)..."}));
    EXPECT_EQ(frame.menuBar()->actions().back()->data().toInt(), 57664);

    EXPECT_EQ(entries("Project(&P)"),
              (std::vector<std::string>{"New(&N)|57600|Ctrl+N|on", "Open(&O)...|57601|Ctrl+O|on",
                                        "Save(&S)|57603|Ctrl+S|on", "Undo|57643|Ctrl+Z|off",
                                        "Redo|57644|Ctrl+Y|off", "Property...|32809||on",
                                        "Recent File|57616||off", "Quit(&X)|57665||on"}));
    EXPECT_EQ(entries("View(&V)"),
              (std::vector<std::string>{"Toolbar(&T)|59392||on", "Status Bar(&S)|59393||on",
                                        "Project Manager|103||on", "Find References|32997||off"}));
    EXPECT_EQ(
        entries("Tool(&T)"),
        (std::vector<std::string>{
            "Compile...    F9|32823||on", "Offline Simulation       F5|32824||on",
            "OnLine Simulation...|32875||on", "Download Project...   F10|32871||on",
            "Upload Project...|32872||on", "Download Package...|3||on",
            "Download Startup Image...|32873||on", "HMI Running Condition Monitoring|32915||on"}));
    EXPECT_EQ(entries("Configuration(&C)"),
              (std::vector<std::string>{"Alarm Configuration|32856||on",
                                        "Redundant Configuration|32863||off",
                                        "Print Configuration|32911||on"}));
    EXPECT_EQ(entries("Help(&H)"),
              (std::vector<std::string>{"User Guide|32990|F1|on", "About(&A)...|57664||on"}));

    // F5, F9 and F10 are bound to their commands without changing the menu texts.
    std::map<std::string, int> keys;
    for (QAction* a : frame.actions())
        if (!a->shortcut().isEmpty())
            keys[str(a->shortcut().toString())] = a->data().toInt();
    EXPECT_EQ(keys, (std::map<std::string, int>{{"F5", 32824}, {"F9", 32823}, {"F10", 32871}}));

    struct Prompt {
        int command;
        const char* status;
        const char* tip;
    };
    for (const Prompt& p : {Prompt{32809, "Show project property", "Setting"},
                            Prompt{3, "Download upgrade package", "Dowload Package"},
                            Prompt{32873, "Download startup image ", "Download Startup Image"},
                            Prompt{32875, "Online simulate  HMI running", "Online Simulator"},
                            Prompt{32911, "HMI print configuration", ""}}) {
        QAction* a = frame.action(p.command);
        ASSERT_NE(a, nullptr) << p.command;
        EXPECT_EQ(str(a->statusTip()), p.status);
        if (*p.tip) {
            EXPECT_EQ(str(a->toolTip()), p.tip);
        }
    }
}

TEST_F(MainWindowTest, FourteenBoldExpandedNodes) {
    rqshell::CPrjTree& tree = frame.tree();
    ASSERT_EQ(tree.topLevelItemCount(), 1);
    std::vector<std::string> lines;
    for (QTreeWidgetItemIterator it(&tree); *it; ++it) {
        QTreeWidgetItem* item = *it;
        std::string parent = item->parent() ? str(item->parent()->text(0)) : "";
        lines.push_back(parent + ">" + str(item->text(0)));
        // The HMI database's two fixed groups are the section's own nodes.
        EXPECT_EQ(item->font(0).bold(), parent != "Window database") << str(item->text(0));
        EXPECT_FALSE(item->icon(0).isNull());
        EXPECT_TRUE(item->childCount() == 0 || item->isExpanded());
    }
    EXPECT_EQ(lines,
              (std::vector<std::string>{
                  ">project", "project>real-time database", "project>HMI", "HMI>Window database",
                  "Window database>Real-time related data", "Window database>custom data",
                  "HMI>windows", "project>Function block", "project>Ladder", "project>Parameter",
                  "project>Real-time data record", "project>History data record",
                  "project>alarm  configuration", "project>redundant configuration",
                  "project>device configuration", "project>module  configuration"}));
}

TEST_F(MainWindowTest, ContextMenusPerNode) {
    struct Case {
        FixedNode node;
        bool tree; // the tree's menu, else the list's
        std::vector<std::string> entries;
    };
    const std::vector<Case> cases = {
        {FixedNode::RealtimeDatabase,
         true,
         {"New Database|32807|on", "Delete Database|32808|on", "New Data Group|32802|on",
          "Delete Data Group|32803|on", "Modify|32806|on"}},
        {FixedNode::RealtimeDatabase,
         false,
         {"New Data(&N)|32810|on", "Delete Data(&D)|32811|on", "Modify(&P)|32812|on",
          "Batch Data|32906|on", "Find References|32997|off"}},
        {FixedNode::WindowDatabase,
         true,
         {"New Data Group|32813|on", "Delete Data Group|32814|on", "Modify|32874|on"}},
        {FixedNode::WindowDatabase,
         false,
         {"New Data(&N)|32816|on", "Delete Data(&D)|32817|on", "Modify(&P)|32818|on"}},
        {FixedNode::Windows,
         false,
         {"New Window(&N)|32819|on", "Delete Window(&D)|32820|on", "Modify(&P)|32821|on",
          "Edit(&E)|32822|on"}},
        {FixedNode::Device,
         true,
         {"New Device Link|0|on", "Serial Port|32831|on", "Common Link|32833|on",
          "TCP Network Client|32834|on", "TCP Network Service|32914|on",
          "Delete Device Link|32827|on", "New Device|32828|on", "Delete Device|32829|on",
          "Modify|32830|on"}},
        {FixedNode::RealtimeRecord,
         true,
         {"New Data Record|32842|on", "New All Database Record|32843|on",
          "Delete Data Record|32844|on", "Modify|32845|on"}},
        {FixedNode::HistoryRecord,
         true,
         {"New History Data Record|32912|on", "Delete History Data Record|32913|on",
          "Modify|32853|on"}},
        {FixedNode::Alarm,
         true,
         {"Add Alarm Group|32854|on", "Delete Alram Group|32855|on", "Modify Alarm Group|32909|on",
          "Configuration|32856|on"}},
        {FixedNode::Module,
         false,
         {"Add Module(&N)|32860|on", "Delete Module(&D)|32861|on", "Modify(&P)|32862|on"}},
        {FixedNode::Redundant, true, {"Configuration|32863|off"}},
        {FixedNode::FunctionBlock,
         true,
         {"New FDB|32864|off", "Delete FBD|32865|off", "Configuration|32866|off"}},
    };
    auto lines = [&](int id) {
        std::unique_ptr<QMenu> menu(frame.buildContextMenu(id, &frame));
        std::vector<std::string> got;
        std::function<void(QMenu*)> walk = [&](QMenu* m) {
            for (QAction* a : m->actions()) {
                if (a->isSeparator())
                    continue;
                got.push_back(str(a->text()) + "|" + std::to_string(a->data().toInt()) + "|" +
                              (a->isEnabled() ? "on" : "off"));
                if (a->menu())
                    walk(a->menu());
            }
        };
        walk(menu.get());
        return got;
    };
    for (const Case& c : cases) {
        rqshell::TreeNodeHandler* h = rqshell::CPrjTree::handler(frame.tree().fixedNode(c.node));
        ASSERT_NE(h, nullptr);
        EXPECT_EQ(lines(c.tree ? h->GetMenuId() : h->GetListMenuId()), c.entries)
            << str(frame.tree().fixedNode(c.node)->text(0));
    }
    EXPECT_EQ(lines(rqshell::menuid::kParamList),
              (std::vector<std::string>{"New Parameter(&N)|32917|on",
                                        "Delete Parameter(&D)|32918|on", "Modify(&P)|32919|on"}));
    std::unique_ptr<QMenu> logs(frame.buildContextMenu(rqshell::menuid::kDataLogTree, &frame));
    QAction* full = nullptr;
    for (QAction* a : logs->actions())
        if (a->data().toInt() == 32843)
            full = a;
    ASSERT_NE(full, nullptr);
    EXPECT_EQ(str(full->statusTip()), "Add Full Record Database  ");
    EXPECT_EQ(lines(rqshell::menuid::kDataLogList),
              (std::vector<std::string>{"New Data(&N)|32846|on", "Delete Data(&D)|32848|on",
                                        "Modify(&P)|32849|on"}));
    EXPECT_EQ(lines(rqshell::menuid::kAlarmList),
              (std::vector<std::string>{"Add Data(&N)|32857|on", "Delete Data(&D)|32858|on",
                                        "Modify(&P)|32859|on"}));
    // No menu on "project", "HMI", "Ladder"; the view menu for a list without one.
    for (FixedNode n : {FixedNode::Project, FixedNode::Hmi, FixedNode::Ladder})
        EXPECT_EQ(rqshell::CPrjTree::handler(frame.tree().fixedNode(n)), nullptr);
    std::unique_ptr<QMenu> view(frame.buildContextMenu(rqshell::menuid::kView, &frame));
    std::vector<std::string> texts;
    for (QAction* a : view->actions())
        texts.push_back(str(a->text()) + "|" + std::to_string(a->data().toInt()));
    EXPECT_EQ(texts, (std::vector<std::string>{"Menu Bar|32771", "Tool Bar(&T)|59392",
                                               "Status Bar(&S)|59393", "Project Manager|103"}));
}

TEST_F(MainWindowTest, ClosingKeepsLayoutAndFirstRunDocksTheTreeLeft) {
    EXPECT_EQ(frame.dockWidgetArea(frame.treeBar()), Qt::LeftDockWidgetArea);
    EXPECT_EQ(str(frame.treeBar()->windowTitle()), "project manager");
    frame.removeDockWidget(frame.treeBar());
    frame.addDockWidget(Qt::RightDockWidgetArea, frame.treeBar());
    frame.treeBar()->show();
    frame.runCommand(59393);    // the status bar goes
    EXPECT_TRUE(frame.close()); // not modified: no question
    EXPECT_TRUE(sink.entries.empty());

    CMainFrame next(catalogs, rqtest::programDir(), &sink, &launcher);
    next.restoreLayout();
    EXPECT_EQ(next.dockWidgetArea(next.treeBar()), Qt::RightDockWidgetArea);
    EXPECT_TRUE(next.statusBar()->isHidden());
    next.runCommand(59393);
    next.removeDockWidget(next.treeBar());
    next.addDockWidget(Qt::LeftDockWidgetArea, next.treeBar());
    next.treeBar()->show();
    next.close();
}

// A recent entry whose project moved away is reported and leaves the list; the
// others stay in their order.
TEST_F(MainWindowTest, RecentEntryThatNoLongerOpensLeavesTheList) {
    frame.addRecent("/nowhere/kept");
    frame.addRecent("/nowhere/moved");
    ASSERT_EQ(frame.recentFiles().value(0), "/nowhere/moved");
    frame.runCommand(57616); // the first entry
    EXPECT_EQ(frame.recentFiles().value(0), "/nowhere/kept");
    EXPECT_FALSE(frame.recentFiles().contains("/nowhere/moved"));
    ASSERT_EQ(sink.entries.size(), 1u);
    EXPECT_EQ(sink.texts()[0].rfind("Failed to open the project \"/nowhere/moved\".", 0), 0u);
    frame.removeRecent("/nowhere/kept");
}

TEST_F(MainWindowTest, LabelEditsAndLadderDoubleClick) {
    rqshell::CPrjTree& tree = frame.tree();
    // "project", a node without handler and a fixed section node refuse the edit.
    for (FixedNode n : {FixedNode::Project, FixedNode::Hmi, FixedNode::RealtimeDatabase}) {
        tree.editItem(tree.fixedNode(n));
        EXPECT_EQ(tree.findChild<QLineEdit*>(), nullptr);
    }
    tree.finishRename(tree.fixedNode(FixedNode::Project), "other");
    EXPECT_EQ(str(tree.fixedNode(FixedNode::Project)->text(0)), "project");

    QTreeWidgetItem* ladder = tree.fixedNode(FixedNode::Ladder);
    Q_EMIT tree.itemDoubleClicked(ladder, 0); // no HMI type: nothing
    rqtest::TempDir dir;
    rq::HmiDeviceType type;
    type.ladder = 1;
    frame.project().model().hmiType = &type;
    frame.project().model().projectDirectory = dir.str();
    Q_EMIT tree.itemDoubleClicked(tree.fixedNode(FixedNode::Parameter), 0);
    Q_EMIT tree.itemDoubleClicked(ladder, 0);
    EXPECT_TRUE(sink.entries.empty());
    EXPECT_EQ(launcher.lines,
              std::vector<std::string>{"Ladrune *\"" + dir.str() + "\"*ladder.xml"});
    EXPECT_TRUE(std::filesystem::exists(dir.path() / "ladder.xml"));
}

// Runs `act` on the next modal dialog once it is shown.
template <class Dialog> void onNextModal(std::function<void(Dialog*)> act) {
    auto* timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, [timer, act] {
        if (auto* d = qobject_cast<Dialog*>(QApplication::activeModalWidget())) {
            timer->stop();
            timer->deleteLater();
            act(d);
        }
    });
    timer->start(5);
}

TEST_F(MainWindowTest, NewProjectAndAddDataThroughTheRealDialogs) {
    rqtest::TempDir dir;
    ASSERT_FALSE(catalogs.hmi.empty());
    const std::string display = catalogs.hmi.entries().front().display;
    onNextModal<rqshell::CProjectDialog>([&](rqshell::CProjectDialog* d) {
        d->setForm({"demo", "", dir.str() + "/", display, "10.0.0.9"});
        d->accept();
    });
    frame.runCommand(57600);
    EXPECT_EQ(frame.project().model().projectDirectory, dir.str() + "/demo");
    EXPECT_EQ(frame.project().model().slaveIp, "10.0.0.9");
    EXPECT_TRUE(std::filesystem::is_directory(dir.path() / "demo/hisdata"));

    frame.project().rtdb.root().addDatabase("db");
    frame.projectLoaded();
    frame.tree().setCurrentItem(frame.tree().fixedNode(FixedNode::RealtimeDatabase)->child(0));
    onNextModal<rqshell::CDataDialog>([](rqshell::CDataDialog* d) {
        d->nameEdit()->setText("s1");
        d->typeBox()->setCurrentIndex(9); // string
        d->lengthEdit()->setText("12");
        d->accept();
    });
    frame.runCommand(32810);
    ASSERT_EQ(frame.view().listModel().rowCount(), 1);
    EXPECT_EQ(str(frame.view().listModel().text(0, 1)), "string");
    EXPECT_EQ(str(frame.view().listModel().text(0, 2)), "12");
    EXPECT_TRUE(frame.project().model().modified);
}

// The three dialogs of the Configuration menu, each through its menu entry: OK
// is one step that Undo takes back.
TEST_F(MainWindowTest, ConfigurationMenuOpensItsDialogsAndEachOkIsOneStep) {
    rq::HmiDeviceType redundant;
    redundant.redundancy = 1;
    frame.project().model().hmiType = &redundant;
    frame.updateCommandStates();
    rq::Project& p = frame.project();

    ASSERT_TRUE(frame.action(32863)->isEnabled());
    onNextModal<rqshell::CRedundancyDialog>([&](rqshell::CRedundancyDialog* d) {
        EXPECT_EQ(str(d->masterIpEdit(1)->accessibleName()), "2: Primary IP Address:");
        EXPECT_EQ(d->roleBox()->count(), 4);
        d->roleBox()->setCurrentIndex(2);
        d->masterIpEdit(0)->setText("10.1.1.1");
        d->accept();
    });
    frame.action(32863)->trigger();
    EXPECT_EQ(p.redundancy.config().type, "slave");
    EXPECT_EQ(p.redundancy.config().linkMasterIp[0], "10.1.1.1");

    ASSERT_TRUE(frame.action(32911)->isEnabled());
    onNextModal<rqshell::CPrintConfigDialog>([&](rqshell::CPrintConfigDialog* d) {
        EXPECT_EQ(d->printerBox()->currentIndex(), 0); // the new project's escp2-me1
        ASSERT_GE(d->printerBox()->count(), 2);
        d->printerBox()->setCurrentIndex(1);
        d->topMarginEdit()->setText("2.0");
        d->accept();
    });
    frame.action(32911)->trigger();
    rq::PrinterCatalog catalog;
    ASSERT_TRUE(catalog.load(rqtest::programDir() + "/printerconf.xml", nullptr));
    EXPECT_EQ(p.printer.config().printerName, catalog.printers[1].driver);
    EXPECT_EQ(p.printer.config().topMargin, "2.0");

    ASSERT_TRUE(frame.action(32856)->isEnabled());
    onNextModal<rqshell::CAlarmConfigDialog>([&](rqshell::CAlarmConfigDialog* d) {
        d->sizeEdit()->setText("many");
        d->accept(); // refused, stays open
        d->sizeEdit()->setText("300");
        d->accept();
    });
    frame.action(32856)->trigger();
    EXPECT_EQ(sink.texts(), std::vector<std::string>{rq::alarmtext::kBadBufferSize});
    EXPECT_EQ(p.alarm.logSize(), "300");
    EXPECT_TRUE(p.model().modified);

    EXPECT_EQ(str(frame.action(57643)->text()), "Undo Alarm Configuration");
    frame.runCommand(57643);
    frame.runCommand(57643);
    frame.runCommand(57643);
    EXPECT_EQ(p.alarm.logSize(), rq::AlarmSection::kDefaultLogSize);
    EXPECT_EQ(p.printer.config(), rq::PrinterConfig{});
    EXPECT_EQ(p.redundancy.config(), rq::RedundancyConfig{});
}

// A section object that only records its commands, to see the gating by HMI type.
struct RecordingSection : rqshell::ShellSection {
    rq::SectionObject obj;
    std::vector<int> ran;
    explicit RecordingSection(rq::SectionObject o) : obj(o) {}
    rq::SectionObject object() const override { return obj; }
    void clearNodes() override {}
    void rebuildNodes() override {}
    void runCommand(int c) override { ran.push_back(c); }
};

// Every editor's dialogs answered from one script: each opening takes the next
// form, Cancel when it is of another kind or the script is empty. Counts openings.
struct ScriptedDialogs : rq::RtdbDialogHost,
                         rq::HmiDbDialogHost,
                         rq::ParamDialogHost,
                         rq::AlarmDialogHost,
                         rq::FbdDialogHost,
                         rq::DataLogDialogHost,
                         rq::HistoryDialogHost {
    std::deque<std::any> forms;
    int opened = 0;
    template <class F> bool next(F& f) {
        ++opened;
        if (forms.empty())
            return false;
        const F* form = std::any_cast<F>(&forms.front());
        if (form)
            f = *form;
        forms.pop_front();
        return form != nullptr;
    }
    bool databaseDialog(rq::DatabaseForm& f) override { return next(f); }
    bool dataGroupDialog(rq::DataGroupForm& f) override { return next(f); }
    bool dataDialog(rq::DataForm& f) override { return next(f); }
    bool batchDataDialog(rq::BatchDataForm& f) override { return next(f); }
    bool groupDialog(rq::HmiGroupForm& f) override { return next(f); }
    bool ioDataDialog(rq::IoDataForm& f) override { return next(f); }
    bool memoryDataDialog(rq::MemoryDataForm& f) override { return next(f); }
    bool paramDialog(rq::ParamForm& f) override { return next(f); }
    bool configDialog(rq::AlarmConfigForm& f) override { return next(f); }
    bool groupDialog(rq::AlarmGroupForm& f) override { return next(f); }
    bool dataDialog(rq::AlarmDataForm& f) override { return next(f); }
    bool blockDialog(rq::FbdBlockForm& f) override { return next(f); }
    bool paramDialog(rq::FbdParamForm& f) override { return next(f); }
    bool logDialog(rq::DataLogForm& f) override { return next(f); }
    bool logDataDialog(rq::LogDataForm& f) override { return next(f); }
    bool recordDialog(rq::HistoryRecordForm& f) override { return next(f); }
    bool dataDialog(rq::HistoryDataForm& f) override { return next(f); }
    void install(CMainFrame& frame) {
        using rq::SectionObject;
        frame.editor<rq::RtdbSectionEditor>(SectionObject::Rtdb).setDialogHost(this);
        frame.editor<rq::HmiDbSectionEditor>(SectionObject::HmiDb).setDialogHost(this);
        frame.editor<rq::ParamSectionEditor>(SectionObject::Param).setDialogHost(this);
        frame.editor<rq::AlarmSectionEditor>(SectionObject::Alarm).setDialogHost(this);
        frame.editor<rq::FbdSectionEditor>(SectionObject::Fbd).setDialogHost(this);
        frame.editor<rq::DataLogSectionEditor>(SectionObject::DataLog).setDialogHost(this);
        frame.editor<rq::HistorySectionEditor>(SectionObject::History).setDialogHost(this);
    }
};

TEST_F(MainWindowTest, HmiTypeGatesFunctionBlocksAndRedundancyEachTime) {
    ScriptedDialogs fbd;
    fbd.install(frame);
    frame.registerSection(std::make_unique<RecordingSection>(rq::SectionObject::Redundancy));

    rq::HmiDeviceType plain, full;
    full.fbd = 1;
    full.redundancy = 1;
    auto states = [&] {
        std::unique_ptr<QMenu> m(frame.buildContextMenu(rqshell::menuid::kFbdTree, &frame));
        std::string s;
        for (QAction* a : m->actions())
            s += a->isEnabled() ? '1' : '0';
        frame.updateCommandStates();
        s += frame.action(32863)->isEnabled() ? '1' : '0';
        return s;
    };
    EXPECT_EQ(states(), "0000");
    frame.project().model().hmiType = &plain;
    EXPECT_EQ(states(), "0000");
    frame.project().model().hmiType = &full;
    EXPECT_EQ(states(), "1111");
    frame.runCommand(32864);
    frame.project().model().hmiType = &plain;
    frame.runCommand(32864); // refused: gated
    EXPECT_EQ(fbd.opened, 1);
}

TEST_F(Fixture, SecondStartAsksTheFirstToComeForward) {
    const QString name = QStringLiteral("RQPDev_Test_%1").arg(QCoreApplication::applicationPid());
    rqshell::SingleInstance first(name);
    ASSERT_TRUE(first.claim());
    int activations = 0;
    QObject::connect(&first, &rqshell::SingleInstance::activateRequested, [&] { ++activations; });
    QStringList opened;
    QObject::connect(&first, &rqshell::SingleInstance::openRequested,
                     [&](const QString& dir) { opened << dir; });
    rqshell::SingleInstance second(name);
    EXPECT_FALSE(second.claim());
    rqshell::SingleInstance third(name);
    EXPECT_FALSE(third.claim(QStringLiteral("/projects/plant 2")));
    for (int i = 0; i < 200 && activations < 2; ++i) {
        QApplication::processEvents();
        QThread::msleep(10);
    }
    EXPECT_EQ(activations, 2);
    EXPECT_EQ(opened, QStringList{QStringLiteral("/projects/plant 2")});
}

// Waiting for the command line's project: the read runs on another thread while
// this one handles its events (the splash paints), for at least the given time.
TEST_F(Fixture, WaitingForTheReadKeepsEventsGoingForAtLeastItsTime) {
    std::atomic<bool> ticked{false};
    bool tickedDuringWork = false;
    std::thread::id worker;
    QTimer::singleShot(20, [&] { ticked = true; });
    QElapsedTimer clock;
    clock.start();
    rqshell::runWhileWaiting(
        [&] {
            worker = std::this_thread::get_id();
            for (int i = 0; i < 500 && !ticked; ++i)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            tickedDuringWork = ticked;
        },
        300);
    EXPECT_TRUE(tickedDuringWork);
    EXPECT_NE(worker, std::this_thread::get_id());
    EXPECT_GE(clock.elapsed(), 300);
    EXPECT_THROW(rqshell::runWhileWaiting([] { throw std::runtime_error("read"); }, 0),
                 std::runtime_error);
}

// The window that takes over a project read before it existed shows and does
// what opening the same directory from the window does: the messages in their
// order, the tree, the title, the recent list, and the failures of a directory
// that is no project or whose required file does not read.
TEST_F(Fixture, ProjectReadBeforeTheWindowOpensAsTheWindowWould) {
    rqtest::TempDir dir;
    for (const char* name : {"good", "broken"})
        rqtest::copyDemo(dir, name);
    rqtest::writeFile(dir.path() / "good/rtdb.xml",
                      "<rtdbs><rtdb name=\"a\"/><rtdb name=\"a\"/></rtdbs>");
    rqtest::writeFile(dir.path() / "good/alarm.xml", "not xml");
    rqtest::writeFile(dir.path() / "broken/hmiwindow.xml", "<other/>");
    std::filesystem::create_directories(dir.path() / "empty");
    auto treeLines = [](const QTreeWidget& tree) {
        std::string out;
        std::function<void(const QTreeWidgetItem*, int)> walk = [&](auto* item, int depth) {
            out += std::string(depth, ' ') + str(item->text(0)) + "\n";
            for (int i = 0; i < item->childCount(); ++i)
                walk(item->child(i), depth + 1);
        };
        for (int i = 0; i < tree.topLevelItemCount(); ++i)
            walk(tree.topLevelItem(i), 0);
        return out;
    };
    for (const char* name : {"good", "empty", "broken"}) {
        SCOPED_TRACE(name);
        const std::string project = dir.file(name);
        rqtest::RecordingSink byWindow, byAhead;
        CMainFrame window(catalogs, rqtest::programDir(), &byWindow);
        const bool opened = window.openProjectDirectory(QString::fromStdString(project));
        const QStringList recent = window.recentFiles();
        window.removeRecent(project);

        rq::OpenAhead ahead;
        auto read = std::make_unique<rq::Project>(catalogs, silent);
        std::thread::id reader;
        rqshell::runWhileWaiting(
            [&] {
                reader = std::this_thread::get_id();
                rq::readAhead(read->doc, project, ahead);
            },
            0);
        EXPECT_NE(reader, std::this_thread::get_id());
        CMainFrame taking(catalogs, rqtest::programDir(), &byAhead, nullptr, std::move(read));
        EXPECT_EQ(taking.finishOpen(ahead), opened);
        EXPECT_EQ(opened, std::string(name) == "good");
        ASSERT_EQ(byAhead.texts(), byWindow.texts());
        EXPECT_EQ(byAhead.texts().size(), opened ? 2u : 1u);
        for (size_t i = 0; i < byWindow.entries.size(); ++i)
            EXPECT_EQ(byAhead.entries[i].icon, byWindow.entries[i].icon);
        EXPECT_EQ(taking.recentFiles(), recent);
        EXPECT_EQ(treeLines(taking.tree()), treeLines(window.tree()));
        EXPECT_EQ(str(taking.windowTitle()), str(window.windowTitle()));
        EXPECT_EQ(taking.project().model().projectDirectory,
                  window.project().model().projectDirectory);
        EXPECT_EQ(&taking.project().doc.sink(), &byAhead);
        taking.removeRecent(project);
    }
}

// Two real starts, each with its own TMPDIR (where the local socket lives),
// XDG_RUNTIME_DIR and settings: the second, mostly while the first still shows its
// splash, hands its relative project argument to the first, which opens it after
// its own (and so enters both in its recent list, the handed one on top).
TEST(SecondStart, HandsItsProjectDirectoryToTheRunningOne) {
    rqtest::TempDir tmp;
    for (const char* name : {"a", "b"})
        rqtest::copyDemo(tmp, name);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char* dir : {"tmp", "run", "config", "home"}) {
        std::filesystem::create_directories(tmp.path() / dir);
        std::filesystem::permissions(tmp.path() / dir, std::filesystem::perms::owner_all);
    }
    env.insert("TMPDIR", QString::fromStdString(tmp.file("tmp")));
    env.insert("XDG_RUNTIME_DIR", QString::fromStdString(tmp.file("run")));
    env.insert("XDG_CONFIG_HOME", QString::fromStdString(tmp.file("config")));
    env.insert("HOME", QString::fromStdString(tmp.file("home")));
    env.insert("QT_QPA_PLATFORM", "offscreen");
    const QString program = QString::fromStdString(
        std::filesystem::absolute(rqtest::programDir() + "/rqpdev").string());
    QProcess first;
    first.setProcessEnvironment(env);
    first.start(program, {QString::fromStdString(tmp.file("a"))});
    ASSERT_TRUE(first.waitForStarted());
    const std::filesystem::path socket = tmp.path() / "tmp" / "RQPDev_Main";
    for (int i = 0; i < 200 && !std::filesystem::exists(socket); ++i)
        QThread::msleep(50);
    ASSERT_TRUE(std::filesystem::exists(socket));

    QProcess second;
    second.setProcessEnvironment(env);
    second.setWorkingDirectory(QString::fromStdString(tmp.str()));
    second.start(program, {"--no-splash", "b"});
    ASSERT_TRUE(second.waitForFinished(20000));
    EXPECT_EQ(second.exitCode(), 0);

    const std::filesystem::path conf = tmp.path() / "config/Tessarine/RQPDev.conf";
    const std::string wanted = "File1=" + tmp.file("b") + "\nFile2=" + tmp.file("a");
    bool opened = false;
    for (int i = 0; i < 200 && !opened; ++i) {
        QThread::msleep(50);
        opened = std::filesystem::exists(conf) &&
                 rqtest::readFile(conf).find(wanted) != std::string::npos;
    }
    EXPECT_TRUE(opened);
    EXPECT_EQ(first.state(), QProcess::Running);
    first.kill();
    first.waitForFinished();
}

TEST_F(Fixture, ProjectDialogOkRunsTheProjectChecks) {
    rq::Project project(catalogs, sink);
    rqshell::CProjectDialog d(catalogs.hmi, rq::ProjectDialogMode::Create);
    d.setAcceptCheck([&](const rq::ProjectForm& f) {
        return rq::acceptProjectForm(f, rq::ProjectDialogMode::Create, project.doc) != nullptr;
    });
    d.show();
    d.accept();
    EXPECT_TRUE(d.isVisible());
    EXPECT_EQ(sink.texts(), std::vector<std::string>{"Please input project name!"});

    rqshell::CProjectDialog prop(catalogs.hmi, rq::ProjectDialogMode::Property);
    EXPECT_FALSE(prop.browseButton()->isEnabled());
    ASSERT_FALSE(catalogs.hmi.empty());
    rq::ProjectForm f{"n", "d", "/p/", catalogs.hmi.entries().back().display, "1.2.3.4"};
    prop.setForm(f);
    EXPECT_EQ(prop.form().hmiDisplay, f.hmiDisplay);
    EXPECT_EQ(prop.form().path, "/p/");
}

// Every dialog of the editors names each field by its label, and an OK on the
// fields as they open shows the dialog's first message and keeps it open.
TEST_F(Fixture, EveryEditorDialogNamesItsFieldsAndRefusesAnEmptyOk) {
    rq::RtdbSection rtdb;
    const rqshell::RealtimeSource rt{rtdb, nullptr};
    const rq::DeviceChoices choices{catalogs.io, "serial"};
    rq::PrinterCatalog printers;
    struct Case {
        std::function<QDialog*()> make;
        const char* message; // nullptr: the fields as they open pass
    };
    const Case cases[] = {
        {[&] { return new rqshell::CDatabaseDialog; }, nullptr},
        {[&] { return new rqshell::CDataGroupDialog; }, nullptr},
        {[&] { return new rqshell::CDataDialog(sink, false); },
         "Please input data name and initial value!"},
        {[&] { return new rqshell::CDataDialog(sink, true); }, "Please enter an integer."},
        {[&] { return new rqshell::CIoDataDialog(rtdb, nullptr, sink); },
         "Please input data name, database name and variable name!"},
        {[&] { return new rqshell::CMemoryDataDialog(sink); },
         "Please input data name and initial value!"},
        {[&] { return new rqshell::CParamDialog(rtdb, nullptr, sink); }, "Please choose data!"},
        {[&] { return new rqshell::CFbdConfigDialog(sink); }, "Please input FBD name!"},
        {[&] { return new rqshell::CFbdParamDialog(rtdb, nullptr, sink); }, "Please choose data!"},
        {[&] { return new rqshell::CAlarmGroupDialog(sink); }, "Please input alarm group!"},
        {[&] { return new rqshell::CAlarmDataDialog(rtdb, nullptr, sink); }, "Please choose data!"},
        {[&] {
             return new rqshell::CDataLogDialog(rq::DataLogKind::Database, rtdb, nullptr, sink);
         },
         "Please input data log name!"},
        {[&] { return new rqshell::CLogDataDialog(rtdb, nullptr, sink); }, nullptr},
        {[&] { return new rqshell::CHistoryConfigDialog(sink); }, nullptr},
        {[&] { return new rqshell::CHistoryDataDialog(rtdb, nullptr, sink); },
         "Please choose data!"},
        {[&] { return new rqshell::CWindowSettingDialog(sink); },
         "Please input the window name and file name!"},
        {[&] { return new rqshell::CDeviceInfoDialog(choices, rt, sink); }, nullptr},
        {[&] { return new rqshell::CRedundancyDialog(sink); }, nullptr},
        {[&] { return new rqshell::CPrintConfigDialog(printers, sink); }, nullptr},
        {[&] { return new rqshell::CAlarmConfigDialog(sink); }, nullptr},
    };
    for (const Case& c : cases) {
        std::unique_ptr<QDialog> d(c.make());
        SCOPED_TRACE(str(d->windowTitle()));
        for (QWidget* w : d->findChildren<QWidget*>())
            if (qobject_cast<QLineEdit*>(w) || qobject_cast<QComboBox*>(w)) {
                EXPECT_FALSE(w->accessibleName().isEmpty()) << str(w->objectName());
            }
        if (!c.message)
            continue;
        sink.entries.clear();
        d->show();
        d->accept();
        EXPECT_TRUE(d->isVisible());
        ASSERT_FALSE(sink.entries.empty());
        EXPECT_EQ(sink.texts().front(), c.message);
    }
}

// The checks after the first: lengths of bit data, whole numbers, the kinds that
// enable their fields.
TEST_F(Fixture, DataDialogsCheckLengthsAndNumbers) {
    rqshell::CDataDialog d(sink, false);
    d.show();
    d.nameEdit()->setText("b");
    d.typeBox()->setCurrentIndex(5); // long: length locked at 4
    EXPECT_FALSE(d.lengthEdit()->isEnabled());
    EXPECT_EQ(d.lengthEdit()->text(), "4");
    d.typeBox()->setCurrentIndex(0); // bit: length editable
    for (const char* length : {"8", "x", "7"}) {
        d.lengthEdit()->setText(length);
        d.accept();
    }
    EXPECT_FALSE(d.isVisible());
    EXPECT_EQ(d.form().typeIndex, 0);
    EXPECT_EQ(d.form().length, 7);

    rqshell::CMemoryDataDialog memory(sink);
    memory.show();
    memory.typeBox()->setCurrentIndex(6);
    EXPECT_FALSE(memory.lengthEdit()->isEnabled());
    EXPECT_EQ(str(memory.lengthEdit()->text()), "4");
    memory.nameEdit()->setText("b");
    memory.typeBox()->setCurrentIndex(0);
    for (const char* length : {"8", "7"}) {
        memory.lengthEdit()->setText(length);
        memory.accept();
    }
    EXPECT_FALSE(memory.isVisible());

    rq::RtdbSection rtdb;
    rqshell::CIoDataDialog io(rtdb, nullptr, sink);
    io.show();
    io.setForm({"lv", "plant", "level", 500});
    for (const char* period : {"x", "0", "100"}) {
        io.periodEdit()->setText(period);
        io.accept();
    }
    EXPECT_FALSE(io.isVisible());
    EXPECT_EQ(io.form().period, 100);

    rqshell::CHistoryConfigDialog history(sink);
    history.show();
    history.setForm({"h", "1000", 1, "x", "600"});
    history.accept();
    history.setForm({"h", "1000", 1, "30", "600"});
    history.accept();
    EXPECT_EQ(history.result(), QDialog::Accepted);
    EXPECT_EQ(history.form().location, 1);

    rqshell::CDataLogDialog log(rq::DataLogKind::Variables, rtdb, nullptr, sink);
    log.show();
    log.setForm({rq::DataLogKind::Variables, "all", "", "", "", "", ""});
    log.accept();
    log.periodEdit()->setText("500");
    log.accept();
    EXPECT_TRUE(log.isVisible());
    EXPECT_EQ(sink.texts(), (std::vector<std::string>{
                                "bit data length error(must be 1~7)!", "Please enter an integer.",
                                "bit data length error(must be 1~7)!", "Please enter an integer.",
                                "period value error!",
                                "The field \"Saving Date\" must be a whole number greater than 0.",
                                "Please input data log period!", "Please input data log size!"}));
}

// Every pick button opens the browse dialog: a field of the data's own fills both
// names, the others "DB.DATA"; the enabling parameter of a block is picked among
// boolean data only.
TEST_F(Fixture, PickButtonsFillTheirFieldsFromTheBrowseDialog) {
    rq::RtdbSection project;
    rq::DataNode& db = project.root().addDatabase("plant");
    db.addItem(rq::DataItem::makeData("level", "float", "4", "0", ""));
    db.addItem(rq::DataItem::makeData("on", "bit", "1", "0", ""));
    auto pick = [&](QAbstractButton* button, int row = 0) {
        rqtest::pickNext(&db, row);
        button->click();
    };
    auto accepted = [](QDialog& d) {
        d.show();
        d.accept();
        return d.result() == QDialog::Accepted;
    };

    rqshell::CParamDialog param(project, nullptr, sink);
    EXPECT_TRUE(param.databaseEdit()->isReadOnly() && param.dataEdit()->isReadOnly());
    param.valueEdit()->setText("1.5");
    pick(param.pickButton());
    EXPECT_TRUE(accepted(param));
    EXPECT_EQ(param.form().dbname + "|" + param.form().dataname + "|" + param.form().value,
              "plant|level|1.5");

    rqshell::CAlarmDataDialog alarm(project, nullptr, sink);
    pick(alarm.dataField()->pickButton());
    pick(alarm.row(rq::kAlarmHigh).limit->pickButton());
    pick(alarm.statusField()->pickButton());
    alarm.row(rq::kAlarmHigh).text->setText("high");
    EXPECT_TRUE(accepted(alarm));
    const rq::AlarmDataForm a = alarm.form();
    EXPECT_EQ(a.dbname + "|" + a.dataname + "|" + a.statusVar, "plant|level|plant.level");
    EXPECT_EQ(a.conditions[rq::kAlarmHigh].limit + "|" + a.conditions[rq::kAlarmHigh].text,
              "plant.level|high");
    EXPECT_EQ(alarm.row(rq::kAlarmOpen).limit, nullptr);

    rqshell::CFbdParamDialog fbd(project, nullptr, sink);
    fbd.setForm({"EN", "system", "Logic_True", true});
    pick(fbd.dataField()->pickButton()); // "on", the only boolean
    EXPECT_EQ(fbd.form().varname, "on");
    fbd.setForm({"IN", "", "", false});
    pick(fbd.dataField()->pickButton(), 1);
    EXPECT_TRUE(accepted(fbd));
    EXPECT_EQ(fbd.form().varname, "on");

    rqshell::CIoDataDialog io(project, nullptr, sink);
    io.nameEdit()->setText("lv");
    pick(io.pickField()->pickButton());
    EXPECT_TRUE(accepted(io));
    EXPECT_EQ(io.form().dbname + "|" + io.form().dataname, "plant|level");

    rqshell::CDataLogDialog log(rq::DataLogKind::Database, project, nullptr, sink);
    log.nameEdit()->setText("all");
    pick(log.databaseField()->pickButton()); // the database of the variable only
    pick(log.controlField()->pickButton());
    EXPECT_TRUE(accepted(log));
    EXPECT_EQ(log.form().dbname + "|" + log.form().control_var, "plant|plant.level");
    EXPECT_EQ(
        rqshell::CDataLogDialog(rq::DataLogKind::Variables, project, nullptr, sink).databaseField(),
        nullptr);

    rqshell::CLogDataDialog logData(project, nullptr, sink);
    logData.setForm({"old", "db"});
    pick(logData.dataField()->pickButton());
    EXPECT_TRUE(accepted(logData));
    EXPECT_EQ(logData.form().dbname + "|" + logData.form().dataname, "plant|level");

    rqshell::CHistoryDataDialog history(project, nullptr, sink);
    history.kindBox()->setCurrentIndex(1);
    EXPECT_TRUE(history.changeEdit()->isEnabled());
    EXPECT_FALSE(history.periodEdit()->isEnabled() || history.triggerField()->isEnabled());
    pick(history.dataField()->pickButton());
    pick(history.queryField()->pickButton());
    EXPECT_FALSE(accepted(history));
    history.changeEdit()->setText("0.5");
    EXPECT_TRUE(accepted(history));
    const rq::HistoryDataForm h = history.form();
    EXPECT_EQ(h.dbname + "|" + h.dataname + "|" + h.queryvarname, "plant|level|plant.level");
    EXPECT_EQ(h.kind, 1);
    EXPECT_EQ(sink.texts(), std::vector<std::string>{"Please input data change value!"});
}

TEST_F(Fixture, FbdConfigurationOffersTheCatalogsSubTypes) {
    rqshell::CFbdConfigDialog c(sink);
    ASSERT_EQ(c.typeBox()->count(), 9);
    EXPECT_EQ(str(c.typeBox()->itemText(4)), "Logic");
    c.setForm({"b1", "", "", true});
    EXPECT_FALSE(c.subTypeBox()->isEnabled());
    c.show();
    c.accept();
    EXPECT_TRUE(c.isVisible());
    c.typeBox()->setCurrentIndex(1);
    ASSERT_EQ(c.subTypeBox()->count(), 6);
    EXPECT_TRUE(c.subTypeBox()->isEnabled());
    c.subTypeBox()->setCurrentIndex(5);
    c.accept();
    EXPECT_FALSE(c.isVisible());
    EXPECT_EQ(c.form().typeText + "|" + c.form().subTypeText, "Compare|!=");
    EXPECT_EQ(sink.texts(), std::vector<std::string>{"Please choose FBD type!"});

    rqshell::CFbdConfigDialog m(sink);
    m.setForm({"b1", "Arithmetic", "Divide", false});
    EXPECT_FALSE(m.typeBox()->isEnabled());
    EXPECT_EQ(str(m.subTypeBox()->currentText()), "Divide");
}

TEST_F(Fixture, OneSheetPerLinkKind) {
    rq::RtdbSection rtdb;
    const rqshell::RealtimeSource rt{rtdb, nullptr};
    struct Case {
        rq::LinkKind kind;
        const char* sheet;
        std::vector<std::string> pages;
    } cases[] = {
        {rq::LinkKind::Serial, "CDeviceComLinkPropSheet", {"Basic Setting", "Serial Port Setting"}},
        {rq::LinkKind::None, "CDeviceNoneLinkPropSheet", {"Basic Setting"}},
        {rq::LinkKind::TcpClient,
         "CDeviceTcpClientLinkPropSheet",
         {"Basic Setting", "TCP Client Configuration"}},
        {rq::LinkKind::TcpServer,
         "CDeviceTcpServerLinkPropSheet",
         {"Basic Setting", "TCP Server Configuration"}},
        {rq::LinkKind::Ferolt, "CDeviceNoneLinkPropSheet", {"Basic Setting"}},
    };
    for (const Case& c : cases) {
        const QString title = QString::fromUtf8(rq::linkAddTitle(c.kind));
        rqshell::CDeviceLinkPropSheet d(c.kind, title, rt, sink);
        EXPECT_EQ(str(d.objectName()), c.sheet);
        std::vector<std::string> pages;
        for (int i = 0; i < d.pages()->count(); ++i)
            pages.push_back(str(d.pages()->tabText(i)));
        EXPECT_EQ(pages, c.pages) << c.sheet;
        // OK with no name shows the page's message and keeps the sheet open.
        d.show();
        sink.entries.clear();
        d.accept();
        EXPECT_TRUE(d.isVisible());
        EXPECT_EQ(sink.texts(),
                  std::vector<std::string>{"The link name is null, please set link name!"});
        d.nameEdit()->setText("n");
        if (c.kind == rq::LinkKind::TcpClient) {
            d.accept();
            EXPECT_EQ(sink.texts().back(), "IP address is null, please input IP address!");
            rq::LinkForm f = d.form();
            f.server_ip = "10.1.1.1";
            d.setForm(f);
        }
        d.accept();
        EXPECT_FALSE(d.isVisible()) << c.sheet;
        EXPECT_EQ(d.form().server_port, 8200);
        EXPECT_EQ(d.form().listen_port, 1);
    }
}

TEST_F(Fixture, BrowseDialogListsProjectAndSystemDatabasesWithExclusions) {
    rq::RtdbSection project, system;
    rq::DataNode& db = project.root().addDatabase("plant");
    rq::DataNode& g = db.addGroup("pumps");
    g.addItem(rq::DataItem::makeData("p1", "float", "4", "0", "flow"));
    g.addItem(rq::DataItem::makeData("b1", "bit", "1", "0", ""));
    g.addItem(rq::DataItem::makeAlias("a1", "p1"));
    system.root().addDatabase("sys").addItem(rq::DataItem::makeData("clock", "long", "4", "0", ""));

    rqshell::CRtdbBrowseDialog d(project, &system);
    ASSERT_EQ(d.tree()->topLevelItemCount(), 2);
    EXPECT_EQ(str(d.tree()->topLevelItem(1)->text(0)), "system database");
    EXPECT_EQ(str(d.tree()->topLevelItem(1)->child(0)->text(0)), "sys");

    d.selectNode(&g);
    EXPECT_EQ(d.list()->model()->rowCount(), 3);
    EXPECT_TRUE(d.list()->isColumnHidden(0));
    d.setExcluded(0, true); // bit
    EXPECT_EQ(d.list()->model()->rowCount(), 2);
    d.list()->selectRow(1); // the alias stays listed
    d.accept();
    ASSERT_TRUE(d.reference());
    EXPECT_EQ(*d.reference(), (rq::DataRef{"plant", "a1"}));

    // The program directory's system database is read once and shared.
    const rq::RtdbSection* sys = rqshell::systemDatabase(rqtest::programDir());
    ASSERT_NE(sys, nullptr);
    EXPECT_GT(sys->databaseCount(), 0u);
    EXPECT_EQ(sys, rqshell::systemDatabase(rqtest::programDir()));
    EXPECT_EQ(rqshell::systemDatabase("/nonexistent"), nullptr);
}

// The main window on a copy of the demo project, every editor's dialogs scripted.
struct EditorTest : MainWindowTest {
    EditorTest() {
        catalogs.io.load(rqtest::programDir() + "/iodevdrv.xml");
        EXPECT_TRUE(frame.openProjectDirectory(QString::fromStdString(rqtest::copyDemo(dir))));
        dialogs.install(frame);
    }
    QTreeWidgetItem* node(FixedNode fixed, std::vector<int> path = {}) {
        QTreeWidgetItem* item = frame.tree().fixedNode(fixed);
        for (int i : path)
            item = item ? item->child(i) : nullptr;
        return item;
    }
    void undoAll() {
        while (frame.project().doc.history().canUndo()) {
            frame.runCommand(57643);
        }
    }
    rqtest::TempDir dir;
    ScriptedDialogs dialogs;
    rqshell::SectionListModel& list = frame.view().listModel();
};

// Each tree command that adds a node: the node comes last and selected with its
// list, a label edit renames it, and undo takes everything back to the file's state.
TEST_F(EditorTest, EveryTreeCommandAddsANodeThatUndoTakesBack) {
    rq::DataLogForm all;
    all.kind = rq::DataLogKind::Database;
    all.name = "new";
    struct Case {
        FixedNode parent;
        std::vector<int> path;
        int command;
        std::any form;
        bool selected; // the new node becomes the selected one, with its list
        int listRows;
        bool renames; // by a label edit
        const char* undo;
    };
    // clang-format off
    const Case cases[] = {
        {FixedNode::RealtimeDatabase, {}, 32807, rq::DatabaseForm{"new", true}, true, 0, true, "Undo Add Database"},
        {FixedNode::RealtimeDatabase, {0}, 32802, rq::DataGroupForm{"new"}, false, 7, true, "Undo Add Data Group"},
        {FixedNode::WindowDatabase, {0}, 32813, rq::HmiGroupForm{"new"}, false, 2, true, "Undo Add Data Group"},
        {FixedNode::Alarm, {}, 32854, rq::AlarmGroupForm{"new"}, true, 0, true, "Undo Add Alarm Group"},
        {FixedNode::RealtimeRecord, {}, 32843, all, true, 0, true, "Undo Add All Database Record"},
        {FixedNode::HistoryRecord, {}, 32912, rq::HistoryRecordForm{"new", "100", 0, "1", "60"}, true, 0, true,
         "Undo Add History Data Record"},
        {FixedNode::FunctionBlock, {}, 32864, rq::FbdBlockForm{"new", "PID", "", true}, true, 13, false,
         "Undo Add FBD"},
    };
    // clang-format on
    rq::HmiDeviceType withFbd;
    withFbd.fbd = 1;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.command);
        if (c.parent == FixedNode::FunctionBlock)
            frame.project().model().hmiType = &withFbd;
        frame.tree().setCurrentItem(node(c.parent, c.path));
        const int before = node(c.parent, c.path)->childCount();
        dialogs.forms = {c.form};
        frame.runCommand(c.command);
        QTreeWidgetItem* parent = node(c.parent, c.path); // the section may build it anew
        ASSERT_EQ(parent->childCount(), before + 1);
        QTreeWidgetItem* added = parent->child(before);
        EXPECT_EQ(str(added->text(0)), "new");
        EXPECT_EQ(frame.tree().currentItem(), c.selected ? added : parent);
        EXPECT_EQ(list.rowCount(), c.listRows);
        EXPECT_EQ(str(frame.action(57643)->text()), c.undo);
        frame.tree().finishRename(added, "renamed");
        EXPECT_EQ(str(added->text(0)), c.renames ? "renamed" : "new");
        undoAll();
        EXPECT_EQ(node(c.parent, c.path)->childCount(), before);
        // The type with function blocks, set for the last case, stays a change.
        EXPECT_EQ(frame.project().model().modified, c.parent == FixedNode::FunctionBlock);
    }
    EXPECT_TRUE(sink.entries.empty());
}

// Each list: Insert adds a row through the section's dialog, Enter modifies a
// row of the file, Delete asks and deletes the added one; undo goes back to the
// file's rows, redo forward again.
TEST_F(EditorTest, EveryListTakesInsertEnterAndDeleteAndUndoesThem) {
    rq::DataForm data = rq::newDataForm();
    data.name = "added";
    data.typeIndex = 7;
    data.length = 4;
    rq::DataForm changed = data;
    changed.name = "changed";
    struct Case {
        FixedNode fixed;
        std::vector<int> path;
        std::any added; // none: the list takes no Insert
        int column;     // of the texts below
        const char* addedText;
        std::any modified;
        const char* modifiedText;
        const char* undo; // after the Delete
    };
    using History = rq::HistoryDataForm;
    // clang-format off
    const Case cases[] = {
        {FixedNode::RealtimeDatabase, {0}, data, 0, "added", changed, "changed", "Undo Delete Data"},
        {FixedNode::WindowDatabase, {0}, rq::IoDataForm{"added", "plant", "Tank1_Temp", 200}, 0, "added",
         rq::IoDataForm{"changed", "plant", "Tank1_Temp", 200}, "changed", "Undo Delete Data"},
        {FixedNode::WindowDatabase, {1}, rq::MemoryDataForm{"added", 5, 4, "0"}, 0, "added",
         rq::MemoryDataForm{"changed", 5, 4, "0"}, "changed", "Undo Delete Data"},
        {FixedNode::Parameter, {}, rq::ParamForm{"plant", "Tank1_Temp", "3"}, 2, "3",
         rq::ParamForm{"hmi", "Page", "4"}, "4", "Undo Delete Parameter"},
        {FixedNode::Alarm, {0}, rq::AlarmDataForm{"plant", "Tank2_Temp", "1", "", {}}, 1, "Tank2_Temp",
         rq::AlarmDataForm{"plant", "Tank2_Level", "1", "", {}}, "Tank2_Level", "Undo Delete Alarm Data"},
        {FixedNode::RealtimeRecord, {0}, rq::LogDataForm{"Pump1_Run", "plant"}, 1, "Pump1_Run",
         rq::LogDataForm{"P1", "plant"}, "P1", "Undo Delete Data"},
        {FixedNode::HistoryRecord, {0}, History{"plant", "Flow", 0, "100", "", "", "", ""}, 1, "Flow",
         History{"plant", "Tank2_Temp", 0, "100", "", "", "", ""}, "Tank2_Temp", "Undo Delete Data"},
        {FixedNode::FunctionBlock, {0}, {}, 2, nullptr, rq::FbdParamForm{"SP", "plant", "sp", false}, "sp",
         nullptr},
    };
    // clang-format on
    for (const Case& c : cases) {
        QTreeWidgetItem* item = node(c.fixed, c.path);
        ASSERT_NE(item, nullptr);
        SCOPED_TRACE(str(item->text(0)));
        frame.tree().setCurrentItem(item);
        auto texts = [&] {
            std::vector<std::string> out;
            for (int r = 0; r < list.rowCount(); ++r)
                out.push_back(str(list.text(r, c.column)));
            return out;
        };
        const std::vector<std::string> rows = texts();
        const int before = list.rowCount();
        ASSERT_GT(before, 1);
        if (c.added.has_value()) {
            dialogs.forms = {c.added};
            press(frame.view(), Qt::Key_Insert);
            ASSERT_EQ(list.rowCount(), before + 1);
            EXPECT_EQ(str(list.text(before, c.column)), c.addedText);
        }
        frame.view().selectRow(1);
        dialogs.forms = {c.modified};
        press(frame.view(), Qt::Key_Return);
        EXPECT_EQ(str(list.text(1, c.column)), c.modifiedText);
        if (c.undo) {
            frame.view().selectRow(before);
            sink.answers = {true};
            press(frame.view(), Qt::Key_Delete);
            EXPECT_EQ(list.rowCount(), before);
            EXPECT_EQ(str(frame.action(57643)->text()), c.undo);
        }
        const std::string label = str(item->text(0));
        undoAll();
        EXPECT_EQ(str(frame.tree().currentItem()->text(0)), label);
        EXPECT_EQ(texts(), rows);
        EXPECT_FALSE(frame.project().model().modified);
        frame.runCommand(57644);
        EXPECT_EQ(list.rowCount(), c.added.has_value() ? before + 1 : before);
        EXPECT_TRUE(frame.project().model().modified);
        undoAll();
    }
    EXPECT_EQ(dialogs.forms.size(), 0u);
}

// The real-time database's refusals and questions, and Undo's and Redo's entries.
TEST_F(EditorTest, RealtimeDatabaseRefusesUsedNamesAndAsksBeforeDeleting) {
    QTreeWidgetItem* top = node(FixedNode::RealtimeDatabase);
    const int databases = top->childCount();
    frame.tree().setCurrentItem(top);
    dialogs.forms = {rq::DatabaseForm{"plant", true}};
    frame.runCommand(32807);
    EXPECT_EQ(sink.texts(), std::vector<std::string>{"The database already exist!"});
    EXPECT_EQ(top->childCount(), databases);

    dialogs.forms = {rq::DatabaseForm{"db2", false}};
    frame.runCommand(32807);
    QTreeWidgetItem* db2 = top->child(databases);
    frame.tree().finishRename(db2, "plant");
    EXPECT_EQ(str(db2->text(0)), "db2");

    // Delete with nothing selected asks nothing; with a row selected asks once.
    frame.tree().setCurrentItem(db2);
    dialogs.forms = {rq::newDataForm()};
    std::any_cast<rq::DataForm&>(dialogs.forms[0]).name = "t";
    frame.runCommand(32810);
    ASSERT_EQ(list.rowCount(), 1);
    sink.entries.clear();
    frame.runCommand(32811);
    EXPECT_TRUE(sink.entries.empty());
    frame.view().selectRow(0);
    sink.answers = {false};
    press(frame.view(), Qt::Key_Delete);
    EXPECT_EQ(sink.texts(), std::vector<std::string>{"Are you sure to delete current data ?"});
    EXPECT_EQ(list.rowCount(), 1);

    QAction* undo = frame.action(57643);
    QAction* redo = frame.action(57644);
    EXPECT_EQ(str(undo->text()), "Undo Add Data");
    EXPECT_FALSE(redo->isEnabled());
    EXPECT_EQ(redo->shortcuts().size(), 2);
    frame.runCommand(57643);
    frame.runCommand(57643);
    EXPECT_FALSE(undo->isEnabled());
    EXPECT_EQ(str(redo->text()), "Redo Add Database");

    // Emptying the tree on New leaves the fixed nodes only.
    frame.projectCleared();
    EXPECT_EQ(top->childCount(), 0);
}

TEST_F(EditorTest, DeviceLinksComeBackWithTheirDevicesOnUndo) {
    QTreeWidgetItem* top = node(FixedNode::Device);
    std::vector<std::string> labels;
    for (int l = 0; l < top->childCount(); ++l) {
        labels.push_back(str(top->child(l)->text(0)));
        for (int d = 0; d < top->child(l)->childCount(); ++d)
            labels.push_back(str(top->child(l)->child(d)->text(0)));
    }
    EXPECT_EQ(labels, (std::vector<std::string>{"bus1", "tankio", "meter", "plc", "drive",
                                                "plc_backup", "scada", "sim", "simdev"}));
    EXPECT_TRUE(top->child(0)->isExpanded());

    frame.tree().setCurrentItem(top->child(0)->child(0));
    ASSERT_EQ(list.columnCount(), 6);
    EXPECT_EQ(list.rowCount(), 4);
    EXPECT_EQ(str(list.text(2, 2)), "No group");
    EXPECT_GE(frame.view().columnWidth(0), 150);
    frame.view().selectRow(1);
    sink.answers = {true};
    press(frame.view(), Qt::Key_Delete);
    EXPECT_EQ(list.rowCount(), 3);

    frame.tree().setCurrentItem(top->child(1));
    sink.answers = {true};
    frame.runCommand(32827);
    EXPECT_EQ(top->childCount(), 4);
    EXPECT_EQ(frame.tree().currentItem(), top);
    undoAll();
    ASSERT_EQ(top->childCount(), 5);
    EXPECT_EQ(str(top->child(1)->child(0)->text(0)), "drive");
    frame.tree().setCurrentItem(top->child(0)->child(0));
    EXPECT_EQ(list.rowCount(), 4);
    EXPECT_FALSE(frame.project().model().modified);
}

// The HMI database's two fixed groups keep their names and stay when the tree is
// emptied.
TEST_F(EditorTest, WindowDatabaseKeepsItsTwoFixedGroups) {
    QTreeWidgetItem* top = node(FixedNode::WindowDatabase);
    ASSERT_EQ(top->childCount(), 2);
    for (int i : {0, 1})
        EXPECT_FALSE(rqshell::CPrjTree::handler(top->child(i))->BeginRename(top->child(i)));
    QTreeWidgetItem* group = top->child(0)->child(0);
    ASSERT_NE(group, nullptr);
    EXPECT_TRUE(rqshell::CPrjTree::handler(group)->BeginRename(group));
    frame.projectCleared();
    ASSERT_EQ(top->childCount(), 2);
    EXPECT_EQ(top->child(0)->childCount(), 0);
    EXPECT_EQ(str(top->child(1)->text(0)), "custom data");
}

} // namespace

// The windows through the real "Window Setting": OK with a field missing stays
// open; the new window's layout file comes with it and goes with its undo; "Edit"
// starts the designer on the selected row's file.
TEST_F(MainWindowTest, WindowsThroughWindowSetting) {
    rqtest::TempDir dir;
    ASSERT_TRUE(frame.openProjectDirectory(QString::fromStdString(rqtest::copyDemo(dir))));
    frame.tree().setCurrentItem(frame.tree().fixedNode(FixedNode::Windows));
    rqshell::SectionListModel& list = frame.view().listModel();
    ASSERT_EQ(list.columnCount(), 5);
    ASSERT_EQ(list.rowCount(), 3);
    EXPECT_EQ(str(list.text(2, 4)), "Disable");

    onNextModal<rqshell::CWindowSettingDialog>([&](rqshell::CWindowSettingDialog* d) {
        EXPECT_EQ(str(d->windowTitle()), "Window Setting");
        EXPECT_EQ(str(d->nameEdit()->accessibleName()), "Name:");
        EXPECT_EQ(str(d->titleEdit()->accessibleName()), "Title:");
        EXPECT_EQ(str(d->fileEdit()->accessibleName()), "File Name:");
        EXPECT_EQ(str(d->createFileBox()->text()), "Create File Auto");
        EXPECT_TRUE(d->createFileBox()->isChecked());
        d->nameEdit()->setText("alarms");
        d->accept(); // no file name: refused, stays open
        EXPECT_TRUE(d->isVisible());
        d->fileEdit()->setText("alarms");
        d->startupBox()->setChecked(true);
        d->accept();
    });
    frame.runCommand(32819);
    EXPECT_EQ(sink.texts(),
              std::vector<std::string>{"Please input the window name and file name!"});
    ASSERT_EQ(list.rowCount(), 4);
    EXPECT_EQ(str(list.text(3, 2)), "alarms.xml");
    EXPECT_EQ(str(list.text(3, 3)), "Show");
    const std::filesystem::path file = dir.path() / "demo/alarms.xml";
    EXPECT_TRUE(std::filesystem::exists(file));

    frame.view().selectRow(3);
    frame.runCommand(32822);
    EXPECT_EQ(launcher.lines,
              std::vector<std::string>{"RQDev *\"" + dir.file("demo") + "\"*alarms.xml"});
    frame.runCommand(57643);
    EXPECT_EQ(list.rowCount(), 3);
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_FALSE(frame.project().model().modified);
}

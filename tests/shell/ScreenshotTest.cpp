// Renders the main window on the demo project and every dialog of the workspace to
// PNG files, for a person to look at. Runs only when RQ_SCREENSHOT_DIR names the
// output directory (tools/screenshots.sh does so under Xvfb).

#include "core/CommandIds.h"
#include "core/ValueChecks.h"
#include "sections/alarm/ui/AlarmDialogs.h"
#include "sections/datalog/ui/DataLogDialogs.h"
#include "sections/device/ui/DeviceDialogs.h"
#include "sections/fbd/ui/FbdDialogs.h"
#include "sections/history/ui/HistoryDialogs.h"
#include "sections/hmidb/ui/HmiDbDialogs.h"
#include "sections/hmiwindow/ui/HmiWindowDialogs.h"
#include "sections/modules/ui/ModuleDialog.h"
#include "sections/param/ui/ParamDialogs.h"
#include "sections/printer/ui/PrinterDialog.h"
#include "sections/redundancy/ui/RedundancyDialog.h"
#include "sections/rtdb/ui/RtdbBrowseDialog.h"
#include "sections/rtdb/ui/RtdbDialogs.h"
#include "sections/rtdb/ui/RtdbEditorUi.h"
#include "shell/Application.h"
#include "shell/DeployDialogs.h"
#include "shell/ListView.h"
#include "shell/MainWindow.h"
#include "shell/NodeImages.h"
#include "shell/ProjectDialogs.h"
#include "shell/ProjectTree.h"
#include "shell/TableExchangeUi.h"

#include "ShellApp.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QScreen>
#include <gtest/gtest.h>

namespace {

struct Screenshots : ::testing::Test {
    void SetUp() override {
        const char* dir = std::getenv("RQ_SCREENSHOT_DIR");
        if (!dir || !*dir)
            GTEST_SKIP() << "RQ_SCREENSHOT_DIR not set";
        out = dir;
        rqtest::shellApp();
        catalogs.loadFrom(rqtest::programDir());
    }
    void save(QWidget& w, const char* name) {
        w.show();
        w.raise();
        for (int i = 0; i < 5; ++i)
            QApplication::processEvents();
        // Xvfb runs without a window manager: the caption is drawn above the window.
        QPixmap pm = w.grab();
        QImage shot(pm.width(), pm.height() + 22, QImage::Format_RGB32);
        shot.fill(QColor(40, 70, 150));
        QPainter p(&shot);
        p.setPen(Qt::white);
        QString title = w.windowTitle();
        title.replace(QStringLiteral("[*]"),
                      w.isWindowModified() ? QStringLiteral("*") : QString());
        p.drawText(QRect(6, 0, pm.width() - 6, 22), Qt::AlignVCenter | Qt::AlignLeft, title);
        p.drawPixmap(0, 22, pm);
        p.end();
        ASSERT_TRUE(shot.save(QString::fromStdString(out + "/" + name + ".png")));
        w.hide();
    }
    // The main window with a node selected: the fixed node, or its child on `path`
    // as far as the project has one.
    void saveNode(rqshell::CMainFrame& frame, rqshell::FixedNode fixed, std::vector<int> path,
                  const char* name) {
        QTreeWidgetItem* item = frame.tree().fixedNode(fixed);
        for (int i : path)
            if (i < item->childCount())
                item = item->child(i);
        frame.tree().setCurrentItem(item);
        save(frame, name);
    }
    void saveMenu(rqshell::CMainFrame& frame, int id, const char* name) {
        std::unique_ptr<QMenu> menu(frame.buildContextMenu(id, &frame));
        menu->adjustSize();
        ASSERT_TRUE(menu->grab().save(QString::fromStdString(out + "/" + name + ".png")));
    }
    void saveBox(QMessageBox::Icon icon, const std::string& text, const char* name) {
        const bool question = icon == QMessageBox::Question;
        QMessageBox box(icon, QApplication::applicationName(), QString::fromStdString(text),
                        question ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok);
        if (question)
            box.setDefaultButton(QMessageBox::No);
        save(box, name);
    }
    std::string demo() const {
        const char* src = std::getenv("RQ_SOURCE_DIR");
        return std::string(src ? src : ".") + "/data/examples/demo";
    }
    std::string out;
    rq::Catalogs catalogs;
    rq::SilentSink sink;
};

TEST_F(Screenshots, MainWindowAndDialogs) {
    rqshell::CMainFrame frame(catalogs, rqtest::programDir(), &sink);
    frame.resize(1100, 700);
    ASSERT_TRUE(frame.openProjectDirectory(QString::fromStdString(demo())));
    saveNode(frame, rqshell::FixedNode::RealtimeDatabase, {0}, "main-window");

    // Context menus as the tree and the list show them.
    const std::pair<int, const char*> menus[] = {{rqshell::menuid::kRtdbTree, "menu-rtdb-tree"},
                                                 {rqshell::menuid::kRtdbList, "menu-rtdb-list"},
                                                 {rqshell::menuid::kDeviceTree, "menu-device-tree"},
                                                 {rqshell::menuid::kView, "menu-view"}};
    for (auto [id, name] : menus)
        saveMenu(frame, id, name);

    // The Tool menu with its state of this moment.
    frame.updateCommandStates();
    for (QAction* top : frame.menuBar()->actions())
        if (top->text() == "Tool(&T)" && top->menu()) {
            top->menu()->adjustSize();
            ASSERT_TRUE(top->menu()->grab().save(QString::fromStdString(out + "/menu-tool.png")));
        }

    rqshell::CProjectDialog create(catalogs.hmi, rq::ProjectDialogMode::Create);
    save(create, "project-dialog-new");
    rqshell::CProjectDialog prop(catalogs.hmi, rq::ProjectDialogMode::Property);
    const rq::ProjectModel& m = frame.project().model();
    prop.setForm({m.name, m.description, m.projectDirectory,
                  m.hmiType ? std::optional<std::string>(m.hmiType->display) : std::nullopt,
                  m.slaveIp});
    save(prop, "project-dialog-property");

    rqshell::COnlineSimulationDialog online;
    online.setForm({m.slaveIp, 8200, 200, 200});
    save(online, "online-simulation");
    rqshell::CAboutDlg about;
    save(about, "about");

    rqshell::CDatabaseDialog db;
    db.setForm({"plant", true});
    save(db, "rtdb-database");
    rqshell::CDataGroupDialog group;
    group.setForm({"pumps"});
    save(group, "rtdb-data-group");
    rqshell::CDataDialog data(sink, false);
    rq::DataForm f = rq::newDataForm();
    f.name = "flow";
    f.typeIndex = 7;
    rq::applyTypeSelection(f);
    f.description = "pump flow";
    data.setForm(f);
    save(data, "rtdb-data");
    rqshell::CDataDialog batch(sink, true);
    batch.setBatchForm({f, 1, 10});
    save(batch, "rtdb-batch-data");

    rqshell::CRtdbBrowseDialog browse(frame.project().rtdb,
                                      rqshell::systemDatabase(rqtest::programDir()));
    if (frame.project().rtdb.databaseCount())
        browse.selectNode(&frame.project().rtdb.database(0));
    save(browse, "rtdb-browse");

    // The deployment dialogs; the monitor and the download with figures as a
    // device would fill them.
    rqshell::CCompileDialog compile(frame.project().doc, sink);
    save(compile, "compile");
    rqshell::CDownloadDialog download(frame.project().doc, rqtest::programDir(), sink);
    download.progressBar()->setValue(40);
    download.progressText()->setText("rqupdate.rqp: 25.6 MiB of 64.0 MiB, 88.2 MiB/s");
    download.statusLine()->setText("Downloading, please waiting...");
    download.statusLine()->show();
    save(download, "download-project");
    rqshell::CUploadDialog upload(m.projectDirectory, m.slaveIp, rqtest::programDir(), sink);
    upload.pathField()->setText("/home/engineer/projects");
    save(upload, "upload-project");
    rqshell::CUpgradeDialog upgrade(m.slaveIp, sink);
    upgrade.fileField()->setText("/home/engineer/rqupdate20261120.rqp");
    save(upgrade, "download-package");
    rqshell::CLogoDialog logo(m, rqtest::programDir(), sink);
    logo.imageField()->setText("/home/engineer/logo.bmp");
    save(logo, "download-startup-image");
    rqshell::CMonitorDialog monitor(m.slaveIp, rqtest::programDir(), sink);
    const char* figures[] = {"1015808K", "412672K", "603136K", "10240K", "12.5", "1.0"};
    for (std::size_t i = 0; i < monitor.figureFields().size(); ++i)
        monitor.figureFields()[i]->setText(figures[i]);
    save(monitor, "monitor");
    rqshell::CPasswordDialog password(frame.project().model(), sink);
    save(password, "project-password");

    QLabel splash;
    splash.setPixmap(rqshell::splashPixmap());
    save(splash, "splash");

    // The device configuration: a device's data points, each link kind's sheet
    // with every page, the device and data point dialogs.
    saveNode(frame, rqshell::FixedNode::Device, {0, 0}, "device-data-points");
    const rqshell::RealtimeSource source{frame.project().rtdb,
                                         rqshell::systemDatabase(rqtest::programDir())};
    const std::pair<rq::LinkKind, const char*> kinds[] = {
        {rq::LinkKind::Serial, "device-link-serial"},
        {rq::LinkKind::None, "device-link-common"},
        {rq::LinkKind::TcpClient, "device-link-tcp-client"},
        {rq::LinkKind::TcpServer, "device-link-tcp-server"}};
    for (auto [kind, name] : kinds) {
        rqshell::CDeviceLinkPropSheet sheet(kind, QString::fromUtf8(rq::linkAddTitle(kind)), source,
                                            sink);
        for (int page = 0; page < sheet.pages()->count(); ++page) {
            sheet.pages()->setCurrentIndex(page);
            save(sheet, (std::string(name) + "-" + std::to_string(page + 1)).c_str());
        }
    }
    const rq::DeviceChoices choices{catalogs.io, "serial"};
    rqshell::CDeviceInfoDialog info(choices, source, sink);
    if (!frame.project().device.links().empty() &&
        !frame.project().device.links()[0].devices.empty()) {
        const rq::DeviceItem& d = frame.project().device.links()[0].devices[1];
        info.setForm(rq::deviceFormFromRecord(choices, d));
        save(info, "device-information");
        const rq::DeviceItem& io = frame.project().device.links()[0].devices[0];
        rqshell::CDeviceDataDialog data(catalogs.io, io, source, sink);
        data.setForm(rq::dataFormFromRecord(catalogs.io, io, io.data[0]));
        save(data, "device-data-setting");
    }

    // The parameters: the list of the "Parameter" node, its menu and "Parameter
    // Setting" filled from the first record.
    saveNode(frame, rqshell::FixedNode::Parameter, {}, "param-list");
    saveMenu(frame, rqshell::menuid::kParamList, "menu-param-list");
    rqshell::CParamDialog param(frame.project().rtdb, source.system, sink);
    if (!frame.project().param.items.empty())
        param.setForm(rq::paramFormFromRecord(frame.project().param.items.front()));
    save(param, "param-setting");
    // The function blocks: the list of the demo's first block, "FBD Configuration"
    // while adding and "FBD Parameter Setting" on the block's first binding.
    saveNode(frame, rqshell::FixedNode::FunctionBlock, {0}, "fbd-list");
    rqshell::CFbdConfigDialog fbdConfig(sink);
    fbdConfig.setForm({"level_sum", "Arithmetic", "Add", true});
    save(fbdConfig, "fbd-configuration");
    rqshell::CFbdParamDialog fbdParam(frame.project().rtdb, source.system, sink);
    if (!frame.project().fbd.blocks().empty())
        fbdParam.setForm(rq::fbdParamFormFromRow(frame.project().fbd.blocks().front(), 1));
    save(fbdParam, "fbd-parameter-setting");
    // The data logs: a log's variables, the section's two menus, a log of each
    // kind and a variable, filled from the demo.
    saveNode(frame, rqshell::FixedNode::RealtimeRecord, {0}, "datalog-variables");
    saveMenu(frame, rqshell::menuid::kDataLogTree, "menu-datalog-tree");
    saveMenu(frame, rqshell::menuid::kDataLogList, "menu-datalog-list");
    for (const rq::DataLog& log : frame.project().datalog.logs) {
        rqshell::CDataLogDialog dialog(log.kind, frame.project().rtdb, source.system, sink);
        dialog.setForm(rq::dataLogFormFromRecord(log));
        save(dialog, log.kind == rq::DataLogKind::Database ? "datalog-record-database"
                                                           : "datalog-record-variables");
        if (!log.data.empty()) {
            rqshell::CLogDataDialog data(frame.project().rtdb, source.system, sink);
            data.setForm(rq::logDataFormFromRef(log.data.front()));
            save(data, "datalog-data");
        }
    }

    // The HMI database: the io list of the fixed group, the memory list of a nested
    // group, the two menus and the two data dialogs filled from the demo's items.
    saveNode(frame, rqshell::FixedNode::WindowDatabase, {0}, "hmidb-io-list");
    saveNode(frame, rqshell::FixedNode::WindowDatabase, {1, 0}, "hmidb-memory-list");
    saveMenu(frame, rqshell::menuid::kHmiDbTree, "menu-hmidb-tree");
    saveMenu(frame, rqshell::menuid::kHmiDbList, "menu-hmidb-list");
    rqshell::CIoDataDialog ioData(frame.project().rtdb, source.system, sink);
    if (!frame.project().hmidb.io.items.empty())
        ioData.setForm(rq::ioFormFromItem(frame.project().hmidb.io.items.front()));
    save(ioData, "hmidb-io-data");
    rqshell::CMemoryDataDialog memoryData(sink);
    if (!frame.project().hmidb.memory.items.empty())
        memoryData.setForm(rq::memoryFormFromItem(frame.project().hmidb.memory.items.back()));
    save(memoryData, "hmidb-memory-data");

    // The windows: the list of the "windows" node, its menu and "Window Setting"
    // filled from the first window.
    saveNode(frame, rqshell::FixedNode::Windows, {}, "windows-list");
    saveMenu(frame, rqshell::menuid::kWindowsList, "menu-windows-list");
    rqshell::CWindowSettingDialog window(sink);
    if (!frame.project().hmiwindow.windows.empty())
        window.setForm(rq::windowFormFromRecord(frame.project().hmiwindow.windows.front()));
    save(window, "window-setting");
    // The history records: a record's variables, "History Data Configuration" and
    // "History Data Record" filled from the demo's first record and variable.
    saveNode(frame, rqshell::FixedNode::HistoryRecord, {0}, "history-list");
    rqshell::CHistoryConfigDialog historyConfig(sink);
    rqshell::CHistoryDataDialog historyData(frame.project().rtdb, source.system, sink);
    if (!frame.project().history.records().empty()) {
        const rq::HistoryRecord& r = frame.project().history.records().front();
        historyConfig.setForm(rq::historyRecordForm(r));
        if (r.data.size() > 2)
            historyData.setForm(rq::historyDataForm(r.data[2]));
    }
    save(historyConfig, "history-data-configuration");
    save(historyData, "history-data-record");
    // The configuration dialogs on the demo's values.
    rqshell::CRedundancyDialog redundancy(sink);
    redundancy.setForm(rq::redundancyFormFromConfig(frame.project().redundancy.config()));
    save(redundancy, "redundant-configuration");
    rq::PrinterCatalog printers;
    printers.load(rqtest::programDir() + "/" + rq::PrinterCatalog::kFileName, nullptr);
    rqshell::CPrintConfigDialog print(printers, sink);
    print.setForm(rq::printerFormFromConfig(frame.project().printer.config(), printers));
    save(print, "print-configuration");
    rqshell::CAlarmConfigDialog alarm(sink);
    alarm.setForm({frame.project().alarm.logSize()});
    save(alarm, "alarm-configuration");
    // The alarms: the list of the first group, its menu, "Setting Alarm Group" and
    // "Alarm Data Information" filled from the group's first alarm data.
    saveNode(frame, rqshell::FixedNode::Alarm, {0}, "alarm-list");
    saveMenu(frame, rqshell::menuid::kAlarmList, "menu-alarm-list");
    rqshell::CAlarmGroupDialog alarmGroup(sink);
    if (!frame.project().alarm.groups().empty())
        alarmGroup.setForm({frame.project().alarm.groups().front().name});
    save(alarmGroup, "alarm-group-setting");
    rqshell::CAlarmDataDialog alarmData(frame.project().rtdb, source.system, sink);
    if (!frame.project().alarm.groups().empty() &&
        !frame.project().alarm.groups().front().data.empty())
        alarmData.setForm(
            rq::alarmDataFormFromRecord(frame.project().alarm.groups().front().data.front()));
    save(alarmData, "alarm-data-information");

    // The user modules: the list of "module  configuration", its menu, and "Module
    // Setting" filled from the first module with the output of a compile.
    saveNode(frame, rqshell::FixedNode::Module, {}, "modules-list");
    saveMenu(frame, rqshell::menuid::kModulesList, "menu-modules-list");
    rqshell::CModuleDialog module(frame.project().model(), sink);
    if (!frame.project().modules.modules().empty())
        module.setForm(rq::moduleFormFromRecord(frame.project().modules.modules().front()));
    module.statusLine()->setText(rq::kCompileCompleteStatus);
    module.outputBox()->setPlainText(rq::kDefaultCompileOutput);
    save(module, "module-setting");

    // The node image strip, eight times enlarged.
    QImage strip = rqshell::nodeImageStrip();
    strip.scaled(strip.width() * 8, strip.height() * 8)
        .save(QString::fromStdString(out + "/node-images.png"));

    // After an open: the optional files that could not be read, in one message; at
    // Save, the question before an edited one of them is replaced.
    const std::string files = std::string(rq::kMsgUnreadableFiles) +
                              "\n\n/home/user/plant/device.xml: line 1: Premature end of data in "
                              "tag link line 1\n/home/user/plant/printer.xml: not a regular "
                              "file: it is a named pipe (FIFO)";
    saveBox(QMessageBox::Critical, files, "message-unreadable-files");
    saveBox(QMessageBox::Question,
            "/home/user/plant/device.xml: it could not be read when the project was opened (line "
            "1: Premature end of data in tag link line 1).\nYou have edited this section since. "
            "Replace the file with the section as it is now?",
            "question-replace-unreadable");

    // The value and address checks after the dialogs' own, and a failed open.
    const std::pair<std::string, const char*> checks[] = {
        {*rq::checkInitialValue(2, 1, "300"), "message-initial-value-range"},
        {*rq::checkInitialValue(9, 4, "too long"), "message-initial-value-length"},
        {*rq::checkIpv4Address("Server IP Address", "192.168.1"), "message-ip-address"},
        {"Failed to open the project \"/home/user/moved\".\n/home/user/moved: the directory "
         "does not exist",
         "message-open-failed"},
    };
    for (const auto& [text, name] : checks)
        saveBox(QMessageBox::Critical, text, name);

    // The merge of a spreadsheet file, before it is applied.
    rq::TableMerge merge;
    merge.added = 12;
    merge.changed = 3;
    merge.unchanged = 1187;
    merge.refused = {{7, "Please choose data type!"},
                     {19, "The field \"Data Address\" must not hold '<'; the project file "
                          "cannot store it."},
                     {204, "there is no device \"meter2\" on link \"bus1\""}};
    rqshell::CImportMergeDialog importDialog(merge, QStringLiteral("/home/user/points.csv"));
    save(importDialog, "dialog-import-merge");
}

// Find References on a data item of the demo that several sections use, and the
// questions before deleting or renaming it.
TEST_F(Screenshots, ReferencesDockAndQuestions) {
    rqshell::CMainFrame frame(catalogs, rqtest::programDir(), &sink);
    frame.resize(1100, 700);
    ASSERT_TRUE(frame.openProjectDirectory(QString::fromStdString(demo())));
    rq::DataNode* node = &frame.project().rtdb.findDatabase("plant")->child(0).child(0); // tank1
    ASSERT_GE(node->findItem("Tank1_Level"), 0);
    frame.tree().setCurrentItem(frame.editorSection(rq::SectionObject::Rtdb)->itemOf(node));
    frame.view().selectRow(node->findItem("Tank1_Level"));
    frame.runCommand(rq::cmd::kFindReferences);
    save(frame, "references-dock");

    const std::vector<rq::DataUse> uses =
        rq::usesOfItems(frame.project().references, *node, {"Tank1_Level"});
    saveBox(QMessageBox::Question, *rq::deleteUsesQuestion(uses), "question-delete-used-data");
    saveBox(QMessageBox::Question,
            *rq::renameUsesQuestion(uses, "plant.Tank1_Level", "plant.Tank1_Height", false),
            "question-rename-used-data");
}

} // namespace

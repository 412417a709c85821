#include "shell/MainWindow.h"
#include "shell/QtText.h"

#include "core/FileUtil.h"
#include "sections/alarm/ui/AlarmDialogs.h"
#include "sections/datalog/ui/DataLogEditorUi.h"
#include "sections/device/ui/DeviceEditorUi.h"
#include "sections/fbd/ui/FbdEditorUi.h"
#include "sections/history/ui/HistoryEditorUi.h"
#include "sections/hmidb/ui/HmiDbEditorUi.h"
#include "sections/hmiwindow/ui/HmiWindowEditorUi.h"
#include "sections/modules/ui/ModuleDialog.h"
#include "sections/param/ui/ParamEditorUi.h"
#include "sections/printer/ui/PrinterDialog.h"
#include "sections/redundancy/ui/RedundancyDialog.h"
#include "sections/rtdb/ui/RtdbEditorUi.h"
#include "shell/CommandSection.h"
#include "shell/DeployDialogs.h"
#include "shell/EditorEnv.h"
#include "shell/ListView.h"
#include "shell/ProjectDialogs.h"
#include "shell/ProjectTree.h"
#include "shell/ReferencesBar.h"
#include "shell/TableExchangeUi.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>
#include <QTimer>
#include <QToolBar>
#include <QUrl>

namespace rqshell {

namespace {

constexpr int kRecentCount = 4;
constexpr int kFirstRecent = rq::cmd::kRecentFile; // 57616 .. 57619

bool isProgramCommand(int c) {
    switch (c) {
    case rq::cmd::kNew:
    case rq::cmd::kOpen:
    case rq::cmd::kSave:
    case rq::cmd::kProperty:
    case rq::cmd::kQuit:
    case rq::cmd::kViewToolbar:
    case rq::cmd::kViewStatusBar:
    case rq::cmd::kViewProjectManager:
    case rq::cmd::kViewMenuBar:
    case rq::cmd::kOfflineSimulation:
    case rq::cmd::kOnlineSimulation:
    case rq::cmd::kCompile:
    case rq::cmd::kDownloadProject:
    case rq::cmd::kUploadProject:
    case rq::cmd::kDownloadPackage:
    case rq::cmd::kDownloadStartupImage:
    case rq::cmd::kMonitor:
    case rq::cmd::kAbout:
    case rq::cmd::kUserGuide:
        return true;
    default:
        return false;
    }
}

} // namespace

CMainFrame::CMainFrame(const rq::Catalogs& catalogs, std::string programDir, rq::MessageSink* sink,
                       rq::ProgramLauncher* launcher, std::unique_ptr<rq::Project> project)
    : catalogs_(catalogs), programDir_(std::move(programDir)), qtSink_(this),
      sink_(sink ? sink : &qtSink_), launcher_(launcher ? launcher : &detached_),
      project_(project ? std::move(project) : std::make_unique<rq::Project>(catalogs, *sink_)),
      flows_(std::make_unique<rq::ProjectFlows>(project_->doc, *this, *launcher_, programDir_)),
      settings_(QStringLiteral("Tessarine"), QStringLiteral("RQPDev")) {
    project_->doc.setSink(*sink_);
    setObjectName("CMainFrame");
    setDockOptions(QMainWindow::AnimatedDocks | QMainWindow::AllowTabbedDocks);
    createTree();
    createMenus();
    createToolBar();
    createStatusBar();

    // The section editors, one line each.
    const EditorEnv env{*project_, *sink_, this, catalogs_, programDir_, *launcher_};
    registerEditor(FixedNode::RealtimeDatabase, rq::SectionObject::Rtdb, makeRtdbEditor(env));
    registerEditor(FixedNode::Device, rq::SectionObject::Device, makeDeviceEditor(env));
    registerEditor(FixedNode::WindowDatabase, rq::SectionObject::HmiDb, makeHmiDbEditor(env));
    registerEditor(FixedNode::Parameter, rq::SectionObject::Param, makeParamEditor(env));
    registerEditor(FixedNode::Redundant, rq::SectionObject::Redundancy, makeRedundancyEditor(env));
    registerEditor(FixedNode::Alarm, rq::SectionObject::Alarm, makeAlarmEditor(env));
    registerEditor(FixedNode::FunctionBlock, rq::SectionObject::Fbd, makeFbdEditor(env));
    registerEditor(FixedNode::RealtimeRecord, rq::SectionObject::DataLog, makeDataLogEditor(env));
    registerEditor(FixedNode::Windows, rq::SectionObject::HmiWindow, makeHmiWindowEditor(env));
    registerEditor(FixedNode::Module, rq::SectionObject::Modules, makeModulesEditor(env));
    registerEditor(FixedNode::HistoryRecord, rq::SectionObject::History, makeHistoryEditor(env));
    registerSection(std::make_unique<CommandSection>(rq::SectionObject::Printer,
                                                     makePrinterEditor(env), shellContext()));

    tree_->expandEverything();
    updateTitle();
    updateCommandStates();
}

CMainFrame::~CMainFrame() {
    // The tree's items and the list's model point at handlers and records owned
    // here: let go of them first.
    view_->showEmpty();
    delete treeBar_;
    treeBar_ = nullptr;
    tree_ = nullptr;
}

ShellContext CMainFrame::shellContext() {
    return ShellContext{*tree_,
                        *view_,
                        *sink_,
                        this,
                        [this] { markModified(); },
                        [this](int command) { runCommand(command); }};
}

void CMainFrame::registerEditor(FixedNode node, rq::SectionObject object,
                                std::unique_ptr<rq::SectionEditor> editor) {
    registerSection(
        std::make_unique<EditorTreeSection>(object, node, std::move(editor), shellContext()));
}

EditorTreeSection* CMainFrame::editorSection(rq::SectionObject object) const {
    return dynamic_cast<EditorTreeSection*>(sectionFor(object));
}

void CMainFrame::registerSection(std::unique_ptr<ShellSection> section) {
    sections_.push_back(std::move(section));
    updateCommandStates();
}

ShellSection* CMainFrame::sectionFor(rq::SectionObject object) const {
    for (const auto& s : sections_)
        if (s->object() == object)
            return s.get();
    return nullptr;
}

void CMainFrame::createTree() {
    view_ = new CRQPDevView(this);
    setCentralWidget(view_);
    treeBar_ = new QDockWidget(QStringLiteral("project manager"), this);
    treeBar_->setObjectName("CPrjTreeBar");
    treeBar_->setAllowedAreas(Qt::AllDockWidgetAreas);
    tree_ = new CPrjTree(treeBar_);
    tree_->setAccessibleName(treeBar_->windowTitle());
    treeBar_->setWidget(tree_);
    addDockWidget(Qt::LeftDockWidgetArea, treeBar_);

    refsBar_ = new CReferencesBar(this);
    refsBar_->setAllowedAreas(Qt::AllDockWidgetAreas);
    addDockWidget(Qt::BottomDockWidgetArea, refsBar_);
    refsBar_->hide();
    connect(refsBar_, &CReferencesBar::useActivated, this, &CMainFrame::goToUse);

    connect(tree_, &CPrjTree::contextMenuWanted, this, &CMainFrame::showContextMenu);
    connect(tree_, &CPrjTree::ladderActivated, this, [this] { flows_->launchLadder(); });
    connect(tree_, &CPrjTree::emptySelection, this, [this] { view_->showEmpty(); });
    connect(view_, &CRQPDevView::rightClicked, this, &CMainFrame::onListRightClick);
    connect(view_, &CRQPDevView::rowDoubleClicked, this, [this] {
        if (TreeNodeHandler* h = tree_->selectedHandler())
            h->OnListDoubleClick(tree_->currentItem());
    });
    connect(view_, &CRQPDevView::keyCommand, this, [this](int key) {
        TreeNodeHandler* h = tree_->selectedHandler();
        if (!h)
            return;
        h->OnListKey(tree_->currentItem(), key == Qt::Key_Insert   ? ListKey::Add
                                           : key == Qt::Key_Delete ? ListKey::Delete
                                                                   : ListKey::Modify);
    });
}

QAction* CMainFrame::makeAction(const MenuEntry& entry, QObject* owner) {
    const int command = entry.command;
    std::string text = entry.text;
    std::string key;
    if (auto tab = text.find('\t'); tab != std::string::npos) {
        key = text.substr(tab + 1);
        text = text.substr(0, tab);
    }
    auto* a = new QAction(qs(text), owner);
    a->setData(command);
    if (!key.empty())
        a->setShortcut(QKeySequence(qs(key)));
    if (command == rq::cmd::kRedo)
        a->setShortcuts({QKeySequence(qs(key)), QKeySequence(QStringLiteral("Ctrl+Shift+Z"))});
    CommandPrompt prompt = commandPrompt(command);
    if (!prompt.status.empty())
        a->setStatusTip(qs(prompt.status));
    if (!prompt.tip.empty())
        a->setToolTip(qs(prompt.tip));
    if (command == rq::cmd::kViewToolbar || command == rq::cmd::kViewStatusBar ||
        command == rq::cmd::kViewProjectManager || command == rq::cmd::kViewMenuBar)
        a->setCheckable(true);
    connect(a, &QAction::triggered, this, [this, command] { runCommand(command); });
    return a;
}

void CMainFrame::fillMenu(QMenu* menu, const std::vector<MenuEntry>& entries, bool mainMenu) {
    for (const MenuEntry& e : entries) {
        if (e.isSeparator()) {
            menu->addSeparator();
        } else if (e.isPopup()) {
            QMenu* sub = menu->addMenu(qs(e.text));
            fillMenu(sub, e.popup, mainMenu);
        } else {
            if (mainMenu && actions_.count(e.command)) {
                // A command in two places of the main menu shares one action.
                menu->addAction(actions_[e.command]);
                continue;
            }
            QAction* a = makeAction(e, menu);
            menu->addAction(a);
            if (mainMenu)
                actions_[e.command] = a;
            else {
                a->setEnabled(commandEnabled(e.command));
                if (a->isCheckable())
                    a->setChecked(e.command == rq::cmd::kViewToolbar     ? !toolBar_->isHidden()
                                  : e.command == rq::cmd::kViewStatusBar ? !statusBar()->isHidden()
                                  : e.command == rq::cmd::kViewMenuBar   ? !menuBar()->isHidden()
                                                                         : !treeBar_->isHidden());
            }
        }
    }
}

void CMainFrame::createMenus() {
    QMenuBar* bar = menuBar();
    for (const MenuEntry& top : mainMenu()) {
        if (top.isPopup()) {
            QMenu* menu = bar->addMenu(qs(top.text));
            fillMenu(menu, top.popup, true);
            connect(menu, &QMenu::aboutToShow, this, [this] { updateCommandStates(); });
            if (top.text == "Project(&P)")
                projectMenu_ = menu;
        } else {
            QAction* a = makeAction(top, bar);
            bar->addAction(a);
            actions_[top.command] = a;
        }
    }
    recentPlaceholder_ = actions_[rq::cmd::kRecentFile];
    recentPlaceholder_->setEnabled(false);
    connect(projectMenu_, &QMenu::aboutToShow, this, [this] { updateRecentMenu(); });

    // F9, F5 and F10 appear in the menu texts themselves; the keys are bound here.
    const std::pair<int, Qt::Key> keys[] = {{rq::cmd::kCompile, Qt::Key_F9},
                                            {rq::cmd::kOfflineSimulation, Qt::Key_F5},
                                            {rq::cmd::kDownloadProject, Qt::Key_F10}};
    for (auto [command, key] : keys) {
        auto* a = new QAction(this);
        a->setData(command);
        a->setShortcut(QKeySequence(key));
        a->setShortcutContext(Qt::WindowShortcut);
        connect(a, &QAction::triggered, this, [this, command = command] { runCommand(command); });
        addAction(a);
        keyActions_.push_back(a);
    }
}

void CMainFrame::createToolBar() {
    toolBar_ = addToolBar(QStringLiteral("tool bar"));
    toolBar_->setObjectName("ToolBar");
    toolBar_->setIconSize(QSize(16, 16));
    QStyle* st = style();
    const std::pair<int, QStyle::StandardPixmap> buttons[] = {
        {rq::cmd::kNew, QStyle::SP_FileIcon},
        {rq::cmd::kOpen, QStyle::SP_DialogOpenButton},
        {rq::cmd::kSave, QStyle::SP_DialogSaveButton},
        {0, {}},
        {rq::cmd::kUndo, QStyle::SP_ArrowBack},
        {rq::cmd::kRedo, QStyle::SP_ArrowForward},
        {0, {}},
        {rq::cmd::kProperty, QStyle::SP_FileDialogDetailedView},
        {0, {}},
        {rq::cmd::kCompile, QStyle::SP_BrowserReload},
        {rq::cmd::kOfflineSimulation, QStyle::SP_MediaPlay},
        {rq::cmd::kOnlineSimulation, QStyle::SP_MediaSeekForward},
        {0, {}},
        {rq::cmd::kDownloadProject, QStyle::SP_ArrowDown},
        {rq::cmd::kUploadProject, QStyle::SP_ArrowUp},
        {rq::cmd::kDownloadPackage, QStyle::SP_DriveNetIcon},
        {rq::cmd::kDownloadStartupImage, QStyle::SP_DesktopIcon},
        {0, {}},
        {rq::cmd::kAbout, QStyle::SP_MessageBoxQuestion},
    };
    for (auto [command, icon] : buttons) {
        if (command == 0) {
            toolBar_->addSeparator();
            continue;
        }
        QAction* a = actions_.at(command);
        if (command == rq::cmd::kAbout) {
            // "About(&A)..." stands in the menu bar itself, where an icon would
            // replace its text: the button gets an action of its own.
            a = new QAction(a->text(), this);
            a->setData(command);
            connect(a, &QAction::triggered, this, [this] { runCommand(rq::cmd::kAbout); });
            keyActions_.push_back(a);
        }
        a->setIcon(st->standardIcon(icon));
        toolBar_->addAction(a);
    }
}

void CMainFrame::createStatusBar() {
    QStatusBar* bar = statusBar();
    hmiIndicator_ = new QLabel(bar);
    hmiIndicator_->setToolTip("HMI type of the project");
    bar->addPermanentWidget(hmiIndicator_);
    // The lock keys' state is not readable through the toolkit on every platform:
    // their indicators are shown inactive.
    for (const char* name : {"CAP", "NUM", "SCRL"}) {
        auto* l = new QLabel(QString::fromLatin1(name), bar);
        l->setEnabled(false);
        bar->addPermanentWidget(l);
    }
    bar->showMessage("Ready");
}

bool CMainFrame::commandEnabled(int command) const {
    if (isProgramCommand(command))
        return true;
    if (command == rq::cmd::kUndo)
        return project_->doc.history().canUndo();
    if (command == rq::cmd::kRedo)
        return project_->doc.history().canRedo();
    if (command >= kFirstRecent && command < kFirstRecent + kRecentCount)
        return command - kFirstRecent < recentFiles().size();
    if (command == rq::cmd::kFindReferences)
        return selectedDataItem().has_value();
    rq::SectionObject object = rq::sectionOfCommand(command);
    const ShellSection* section = object == rq::SectionObject::None ? nullptr : sectionFor(object);
    if (!section || !section->handles(command))
        return false;
    return rq::commandAllowedByHmiType(command, project_->model().hmiType);
}

QAction* CMainFrame::action(int command) const {
    auto it = actions_.find(command);
    return it == actions_.end() ? nullptr : it->second;
}

void CMainFrame::updateCommandStates() {
    for (auto& [command, a] : actions_) {
        if (a == recentPlaceholder_)
            continue;
        a->setEnabled(commandEnabled(command));
    }
    for (QAction* a : keyActions_)
        a->setEnabled(commandEnabled(a->data().toInt()));
    // Undo and Redo name the step they would take.
    const rq::UndoHistory& history = project_->doc.history();
    if (QAction* a = action(rq::cmd::kUndo))
        a->setText(qs(history.undoText()));
    if (QAction* a = action(rq::cmd::kRedo))
        a->setText(qs(history.redoText()));
    if (toolBar_) {
        actions_[rq::cmd::kViewToolbar]->setChecked(!toolBar_->isHidden());
        actions_[rq::cmd::kViewStatusBar]->setChecked(!statusBar()->isHidden());
        actions_[rq::cmd::kViewProjectManager]->setChecked(!treeBar_->isHidden());
    }
}

QStringList CMainFrame::recentFiles() const {
    QStringList list;
    for (int i = 1; i <= kRecentCount; ++i) {
        QString f = settings_.value(QStringLiteral("Recent File List/File%1").arg(i)).toString();
        if (!f.isEmpty())
            list << f;
    }
    return list;
}

static void writeRecent(QSettings& settings, const QStringList& list) {
    for (int i = 0; i < kRecentCount; ++i)
        settings.setValue(QStringLiteral("Recent File List/File%1").arg(i + 1),
                          i < list.size() ? list[i] : QString());
}

void CMainFrame::addRecent(const std::string& dir) {
    QStringList list = recentFiles();
    QString d = QDir::toNativeSeparators(qs(dir));
    list.removeAll(d);
    list.prepend(d);
    while (list.size() > kRecentCount)
        list.removeLast();
    writeRecent(settings_, list);
}

void CMainFrame::removeRecent(const std::string& dir) {
    QStringList list = recentFiles();
    if (list.removeAll(QDir::toNativeSeparators(qs(dir))) > 0)
        writeRecent(settings_, list);
}

void CMainFrame::updateRecentMenu() {
    for (QAction* a : recentActions_)
        delete a;
    recentActions_.clear();
    const QStringList list = recentFiles();
    recentPlaceholder_->setVisible(list.isEmpty());
    recentPlaceholder_->setEnabled(false);
    for (int i = 0; i < list.size(); ++i) {
        auto* a = new QAction(QStringLiteral("&%1 %2").arg(i + 1).arg(list[i]), projectMenu_);
        const int command = kFirstRecent + i;
        a->setData(command);
        connect(a, &QAction::triggered, this, [this, command] { runCommand(command); });
        projectMenu_->insertAction(recentPlaceholder_, a);
        recentActions_.push_back(a);
    }
}

QMenu* CMainFrame::buildContextMenu(int menuId, QWidget* parent) {
    auto* menu = new QMenu(parent);
    fillMenu(menu, contextMenu(menuId), false);
    return menu;
}

void CMainFrame::showContextMenu(int menuId, const QPoint& globalPos) {
    std::unique_ptr<QMenu> menu(buildContextMenu(menuId, this));
    if (menu->isEmpty())
        return;
    menu->exec(globalPos);
}

void CMainFrame::onListRightClick(const QPoint& globalPos) {
    TreeNodeHandler* h = tree_->selectedHandler();
    int id = h ? h->GetListMenuId() : 0;
    std::unique_ptr<QMenu> menu(buildContextMenu(id ? id : menuid::kView, this));
    addTableActions(menu.get(), h);
    if (menu->isEmpty())
        return;
    menu->exec(globalPos);
}

void CMainFrame::addTableActions(QMenu* menu, const TreeNodeHandler* handler) {
    EditorTreeSection* section = nullptr;
    for (const auto& s : sections_)
        if (auto* e = dynamic_cast<EditorTreeSection*>(s.get()); e && e->ownsHandler(handler))
            section = e;
    const std::string table = section ? tableSectionOf(section->object()) : std::string();
    if (table.empty())
        return;
    menu->addSeparator();
    connect(menu->addAction(QStringLiteral("Export...")), &QAction::triggered, this,
            [this, table] { exportSectionTable(this, *project_, table, *sink_); });
    connect(menu->addAction(QStringLiteral("Import...")), &QAction::triggered, this,
            [this, table, section] {
                if (!importSectionTable(this, *project_, table, *sink_))
                    return;
                section->historyChanged();
                markModified();
            });
}

void CMainFrame::runCommand(int command) {
    if (!commandEnabled(command))
        return;
    switch (command) {
    case rq::cmd::kNew:
        flows_->newProject();
        break;
    case rq::cmd::kOpen:
        flows_->openProject();
        break;
    case rq::cmd::kSave:
        flows_->save();
        break;
    case rq::cmd::kProperty:
        flows_->property();
        break;
    case rq::cmd::kQuit:
        close();
        return;
    case rq::cmd::kUndo:
    case rq::cmd::kRedo:
        undoRedo(command);
        break;
    case rq::cmd::kViewToolbar:
        toolBar_->setVisible(toolBar_->isHidden());
        break;
    case rq::cmd::kViewStatusBar:
        statusBar()->setVisible(statusBar()->isHidden());
        break;
    case rq::cmd::kViewProjectManager:
        treeBar_->setVisible(treeBar_->isHidden());
        break;
    case rq::cmd::kViewMenuBar:
        menuBar()->setVisible(menuBar()->isHidden());
        break;
    case rq::cmd::kOfflineSimulation:
        flows_->offlineSimulation();
        break;
    case rq::cmd::kOnlineSimulation:
        flows_->onlineSimulation();
        break;
    case rq::cmd::kCompile:
    case rq::cmd::kDownloadProject:
    case rq::cmd::kUploadProject:
    case rq::cmd::kDownloadPackage:
    case rq::cmd::kDownloadStartupImage:
    case rq::cmd::kMonitor:
        runDeployDialog(command);
        break;
    case rq::cmd::kAbout: {
        CAboutDlg about(this);
        about.exec();
        break;
    }
    case rq::cmd::kUserGuide:
        openUserGuide();
        break;
    case rq::cmd::kFindReferences:
        findReferences();
        break;
    default:
        if (command >= kFirstRecent && command < kFirstRecent + kRecentCount) {
            flows_->openRecent(
                QDir::fromNativeSeparators(recentFiles().value(command - kFirstRecent))
                    .toUtf8()
                    .toStdString());
        } else if (ShellSection* s = sectionFor(rq::sectionOfCommand(command))) {
            s->runCommand(command);
        }
        break;
    }
    refreshReferences();
    updateTitle();
    updateCommandStates();
}

std::unique_ptr<QDialog> CMainFrame::makeDeployDialog(int command) {
    rq::ProjectModel& m = project_->model();
    switch (command) {
    case rq::cmd::kCompile:
        return std::make_unique<CCompileDialog>(project_->doc, *sink_, this);
    case rq::cmd::kDownloadProject: {
        auto d = std::make_unique<CDownloadDialog>(project_->doc, programDir_, *sink_, this);
        d->passwordChanged = [this] { markModified(); };
        return d;
    }
    case rq::cmd::kUploadProject: {
        auto d = std::make_unique<CUploadDialog>(m.projectDirectory, m.slaveIp, programDir_, *sink_,
                                                 this);
        d->browseFolder = [this](const std::string& title) { return browseFolder(title); };
        d->uploaded = [this](const std::string& target) { openUploadedProject(target); };
        return d;
    }
    case rq::cmd::kDownloadPackage:
        return std::make_unique<CUpgradeDialog>(m.slaveIp, *sink_, this);
    case rq::cmd::kDownloadStartupImage:
        return std::make_unique<CLogoDialog>(m, programDir_, *sink_, this);
    case rq::cmd::kMonitor:
        return std::make_unique<CMonitorDialog>(m.slaveIp, programDir_, *sink_, this);
    default:
        return nullptr;
    }
}

void CMainFrame::runDeployDialog(int command) {
    if (std::unique_ptr<QDialog> d = makeDeployDialog(command))
        d->exec();
}

void CMainFrame::openUploadedProject(const std::string& target) {
    // Uploading over the open project's own directory was agreed to: its unsaved
    // edits go, and saving them now would overwrite what was just uploaded.
    if (target == project_->model().projectDirectory)
        project_->model().modified = false;
    flows_->openDirectory(target);
    updateTitle();
    updateCommandStates();
}

bool CMainFrame::openProjectDirectory(const QString& dir) {
    bool ok = flows_->openDirectory(QDir::fromNativeSeparators(dir).toUtf8().toStdString());
    updateTitle();
    updateCommandStates();
    return ok;
}

bool CMainFrame::finishOpen(const rq::OpenAhead& read) {
    bool ok = flows_->finishOpen(read);
    updateTitle();
    updateCommandStates();
    return ok;
}

void CMainFrame::openWhenIdle(const QString& dir) {
    if (QApplication::activeModalWidget() || QApplication::activePopupWidget()) {
        QTimer::singleShot(250, this, [this, dir] { openWhenIdle(dir); });
        return;
    }
    openProjectDirectory(dir);
}

void CMainFrame::openUserGuide() {
    const std::string page = rq::userGuidePath(programDir_);
    if (page.empty()) {
        sink_->showMessage("The user guide is not installed (looked for guide/index.html beside "
                           "the program and in share/doc/rqpdev/guide).",
                           rq::MessageIcon::Information);
        return;
    }
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(qs(page))))
        sink_->showMessage("Cannot open the user guide " + page +
                               ": no program for web pages "
                               "is configured.",
                           rq::MessageIcon::Stop);
}

void CMainFrame::undoRedo(int command) {
    rq::ProjectDocument& doc = project_->doc;
    if (!(command == rq::cmd::kUndo ? doc.undo() : doc.redo()))
        return;
    for (const auto& section : sections_)
        section->historyChanged();
    updateTitle();
}

std::optional<std::pair<std::string, std::string>> CMainFrame::selectedDataItem() const {
    EditorTreeSection* rtdb = editorSection(rq::SectionObject::Rtdb);
    bool in = false;
    auto* node = rtdb ? static_cast<const rq::DataNode*>(rtdb->selectedKey(&in)) : nullptr;
    if (!in || !node || !node->database())
        return std::nullopt;
    std::optional<std::size_t> row = rq::firstSelectedRow(view_->selectedRows(), node->itemCount());
    if (!row)
        return std::nullopt;
    return std::make_pair(node->database()->name(), node->item(*row).name.str());
}

void CMainFrame::findReferences() {
    if (auto item = selectedDataItem()) {
        showReferences(item->first, item->second);
        refsBar_->show();
        refsBar_->raise();
    }
}

void CMainFrame::showReferences(const std::string& db, const std::string& data) {
    rq::ProjectReferences& refs = project_->references;
    std::vector<CReferencesBar::Use> uses;
    for (const rq::RefUse* u : refs.index().usesOf(db, data))
        uses.push_back({u->file, u->where, u->attribute, u->node, u->row});
    refsBar_->showUses(db + "." + data, std::move(uses), refs.revision());
}

void CMainFrame::refreshReferences() {
    const std::string& item = refsBar_->item();
    if (item.empty() || refsBar_->revision() == project_->references.revision())
        return;
    const std::size_t dot = item.find('.');
    showReferences(item.substr(0, dot), item.substr(dot + 1));
}

void CMainFrame::goToUse(int index) {
    // What the dock shows is looked up again after any change, so its records are
    // those of the model; a dock left behind by a change outside the commands is
    // refreshed instead.
    if (refsBar_->revision() != project_->references.revision()) {
        refreshReferences();
        return;
    }
    if (index < 0 || std::size_t(index) >= refsBar_->uses().size())
        return;
    const CReferencesBar::Use& use = refsBar_->uses()[std::size_t(index)];
    static const std::pair<const char*, rq::SectionObject> sections[] = {
        {"hmidb.xml", rq::SectionObject::HmiDb},     {"device.xml", rq::SectionObject::Device},
        {"param.xml", rq::SectionObject::Param},     {"datalog.xml", rq::SectionObject::DataLog},
        {"history.xml", rq::SectionObject::History}, {"alarm.xml", rq::SectionObject::Alarm},
        {"fbd.xml", rq::SectionObject::Fbd},
    };
    EditorTreeSection* section = nullptr;
    for (auto [file, object] : sections)
        if (use.file == file)
            section = editorSection(object);
    QTreeWidgetItem* item = section ? section->itemOf(use.node) : nullptr;
    if (!item)
        return;
    treeBar_->show();
    tree_->setCurrentItem(item);
    tree_->scrollToItem(item);
    if (use.row >= 0 && use.row < view_->listModel().rowCount()) {
        view_->selectRow(int(use.row));
        view_->scrollTo(view_->listModel().index(int(use.row), 0));
        view_->setFocus();
    }
    updateCommandStates();
}

void CMainFrame::markModified() {
    refreshReferences();
    project_->model().modified = true;
    updateTitle();
    updateCommandStates();
}

void CMainFrame::updateTitle() {
    const rq::ProjectModel& m = project_->model();
    setWindowTitle(QStringLiteral("%1[*] - RQPDev").arg(qs(flows_->documentTitle())));
    setWindowModified(m.modified);
    if (hmiIndicator_)
        hmiIndicator_->setText(m.hmiType ? qs(m.hmiType->display) : QString());
}

bool CMainFrame::runProjectDialog(rq::ProjectForm& form, rq::ProjectDialogMode mode,
                                  const std::function<bool(const rq::ProjectForm&)>& accept) {
    CProjectDialog d(catalogs_.hmi, mode, this);
    d.setForm(form);
    d.setAcceptCheck(accept);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

std::optional<std::string> CMainFrame::browseFolder(const std::string& title) {
    QString dir = QFileDialog::getExistingDirectory(this, qs(title));
    if (dir.isEmpty())
        return std::nullopt;
    return dir.toUtf8().toStdString();
}

void CMainFrame::runOnlineSimulationDialog(
    rq::OnlineSimulationForm& form,
    const std::function<bool(const rq::OnlineSimulationForm&)>& run) {
    COnlineSimulationDialog d(this);
    d.setForm(form);
    d.setRun(run);
    d.exec();
}

rq::SaveAnswer CMainFrame::askSaveChanges(const std::string& text) {
    auto answer = QMessageBox::question(this, QApplication::applicationName(), qs(text),
                                        QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
                                        QMessageBox::Yes);
    if (answer == QMessageBox::Yes)
        return rq::SaveAnswer::Yes;
    if (answer == QMessageBox::No)
        return rq::SaveAnswer::No;
    return rq::SaveAnswer::Cancel;
}

void CMainFrame::projectCleared() {
    {
        QSignalBlocker block(tree_);
        tree_->setCurrentItem(nullptr);
        tree_->clearSelection();
    }
    for (const auto& s : sections_)
        s->clearNodes();
    view_->showEmpty();
    refsBar_->clearUses();
}

void CMainFrame::projectLoaded() {
    QSignalBlocker block(tree_);
    for (const auto& s : sections_)
        s->rebuildNodes();
    tree_->setCurrentItem(nullptr);
    tree_->clearSelection();
    tree_->expandEverything();
    view_->showEmpty();
    refsBar_->clearUses();
}

void CMainFrame::restoreLayout() {
    // First run: menu and tool bar at the top, the project tree on the left (as
    // created); otherwise the stored layout and placement.
    const QByteArray geometry = settings_.value("MainFrame/geometry").toByteArray();
    const QByteArray state = settings_.value("MainFrame/state").toByteArray();
    if (!geometry.isEmpty())
        restoreGeometry(geometry);
    else if (QScreen* s = screen())
        // The size the window returns to from maximised, and its size where no
        // window manager maximises it.
        setGeometry(s->availableGeometry());
    if (!state.isEmpty())
        restoreState(state);
    menuBar()->setVisible(settings_.value("MainFrame/menuBar", true).toBool());
    // The window state does not hold the status bar: its visibility is kept beside.
    statusBar()->setVisible(settings_.value("MainFrame/statusBar", true).toBool());
}

void CMainFrame::saveLayout() {
    settings_.setValue("MainFrame/geometry", saveGeometry());
    settings_.setValue("MainFrame/state", saveState());
    settings_.setValue("MainFrame/menuBar", !menuBar()->isHidden());
    settings_.setValue("MainFrame/statusBar", !statusBar()->isHidden());
    settings_.sync();
}

void CMainFrame::closeEvent(QCloseEvent* event) {
    if (!flows_->saveModified()) {
        event->ignore();
        updateTitle();
        return;
    }
    saveLayout();
    event->accept();
}

} // namespace rqshell

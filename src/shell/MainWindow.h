#pragma once
// The main window (CMainFrame): menu bar, tool bar, status bar, the docked project
// tree "project manager" and the main list view; the routing of every command by its
// number; the project flows' dialogs.

#include "core/Catalogs.h"
#include "core/CommandLine.h"
#include "core/SectionEditor.h"
#include "project/Project.h"
#include "project/ProjectFlows.h"
#include "shell/EditorTreeSection.h"
#include "shell/MenuResources.h"
#include "shell/ProjectTree.h"
#include "shell/QtMessageSink.h"
#include "shell/ShellSection.h"
#include "shell/TreeNodeHandler.h"

#include <QMainWindow>
#include <QSettings>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class QDialog;
class QDockWidget;
class QLabel;
class QMenu;
class QToolBar;

namespace rqshell {

class CPrjTree;
class CReferencesBar;
class CRQPDevView;
class EditorTreeSection;

class CMainFrame : public QMainWindow, public rq::ProjectDialogHost {
    Q_OBJECT
public:
    // `sink` and `launcher` default to message boxes and detached processes;
    // tests pass recorders. `project` is one read before the window existed (see
    // finishOpen); by default the window starts with a new one.
    CMainFrame(const rq::Catalogs& catalogs, std::string programDir,
               rq::MessageSink* sink = nullptr, rq::ProgramLauncher* launcher = nullptr,
               std::unique_ptr<rq::Project> project = nullptr);
    ~CMainFrame() override;

    rq::Project& project() { return *project_; }
    rq::ProjectFlows& flows() { return *flows_; }
    CPrjTree& tree() const { return *tree_; }
    CRQPDevView& view() const { return *view_; }
    QDockWidget* treeBar() const { return treeBar_; }
    // The "References" dock (Find References).
    CReferencesBar& referencesBar() const { return *refsBar_; }
    // Goes to the record of use `index` of the dock: selects its section's node in
    // the tree and its row in the list.
    void goToUse(int index);
    QToolBar* toolBar() const { return toolBar_; }
    // The shell part of a section editor; null when the section has none.
    EditorTreeSection* editorSection(rq::SectionObject object) const;
    // The section editor of a section (tests replace its dialogs).
    template <class Editor> Editor& editor(rq::SectionObject object) const;

    // Routes a command number as the menus, the tool bar and the keys do.
    void runCommand(int command);
    // Whether a command may run now: commands of sections whose editor is not part of
    // this program are disabled, and the HMI type gates function blocks and
    // redundancy.
    bool commandEnabled(int command) const;
    // The main menu's action of a command number, null when none.
    QAction* action(int command) const;
    // A context menu by resource number, with the enabled state of this moment.
    QMenu* buildContextMenu(int menuId, QWidget* parent);
    // Enabled state of the main menu's and tool bar's actions.
    void updateCommandStates();

    // The dialog of a Tool menu command (compile, download, upload, upgrade, startup
    // image, monitor), not yet shown; null for other commands.
    std::unique_ptr<QDialog> makeDeployDialog(int command);
    // After an upload: the current project is closed and the uploaded one opened.
    void openUploadedProject(const std::string& target);

    // Adds a section object; its commands become available.
    void registerSection(std::unique_ptr<ShellSection> section);
    // Adds a section editor of the shared base on its fixed node.
    void registerEditor(FixedNode node, rq::SectionObject object,
                        std::unique_ptr<rq::SectionEditor> editor);

    // Opens a project directory (command line, recent list).
    bool openProjectDirectory(const QString& dir);
    // Ends the open that rq::readAhead() ran into the project this window was
    // made with: what openProjectDirectory() of that directory shows and does.
    bool finishOpen(const rq::OpenAhead& read);
    // The same for a directory handed over by another start: it waits until no
    // dialog or menu of this window is open, then opens after the save question.
    void openWhenIdle(const QString& dir);
    QStringList recentFiles() const;

    // The bar layout and placement of the last run, or the first-run layout.
    void restoreLayout();

    // rq::ProjectDialogHost
    bool runProjectDialog(rq::ProjectForm& form, rq::ProjectDialogMode mode,
                          const std::function<bool(const rq::ProjectForm&)>& accept) override;
    std::optional<std::string> browseFolder(const std::string& title) override;
    void runOnlineSimulationDialog(
        rq::OnlineSimulationForm& form,
        const std::function<bool(const rq::OnlineSimulationForm&)>& run) override;
    rq::SaveAnswer askSaveChanges(const std::string& text) override;
    void projectCleared() override;
    void projectLoaded() override;
    void addRecent(const std::string& dir) override;
    void removeRecent(const std::string& dir) override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void createMenus();
    void createToolBar();
    void createStatusBar();
    void createTree();
    QAction* makeAction(const MenuEntry& entry, QObject* owner);
    void fillMenu(QMenu* menu, const std::vector<MenuEntry>& entries, bool mainMenu);
    void updateRecentMenu();
    void showContextMenu(int menuId, const QPoint& globalPos);
    void onListRightClick(const QPoint& globalPos);
    // "Export..." and "Import..." for the list of a section that has a table.
    void addTableActions(QMenu* menu, const TreeNodeHandler* handler);
    void markModified();
    // The item of the selected data row of the real-time database, as DB.DATA parts.
    std::optional<std::pair<std::string, std::string>> selectedDataItem() const;
    void findReferences();
    void showReferences(const std::string& db, const std::string& data);
    // The dock follows the project: its uses are looked up again after a change.
    void refreshReferences();
    // Help > User Guide: the rendered guide in the desktop's web browser.
    void openUserGuide();
    void runDeployDialog(int command);
    void undoRedo(int command);
    ShellContext shellContext();
    void updateTitle();
    void saveLayout();
    ShellSection* sectionFor(rq::SectionObject object) const;

    const rq::Catalogs& catalogs_;
    std::string programDir_;
    QtMessageSink qtSink_;
    rq::MessageSink* sink_;
    rq::DetachedLauncher detached_;
    rq::ProgramLauncher* launcher_;
    std::unique_ptr<rq::Project> project_;
    std::unique_ptr<rq::ProjectFlows> flows_;
    QSettings settings_;

    CPrjTree* tree_ = nullptr;
    CRQPDevView* view_ = nullptr;
    QDockWidget* treeBar_ = nullptr;
    CReferencesBar* refsBar_ = nullptr;
    QToolBar* toolBar_ = nullptr;
    QMenu* projectMenu_ = nullptr;
    QAction* recentPlaceholder_ = nullptr;
    std::vector<QAction*> recentActions_;
    QLabel* hmiIndicator_ = nullptr;
    std::map<int, QAction*> actions_;

    std::vector<QAction*> keyActions_; // F5, F9, F10 and tool-bar-only actions
    std::vector<std::unique_ptr<ShellSection>> sections_;
};

template <class Editor> Editor& CMainFrame::editor(rq::SectionObject object) const {
    return dynamic_cast<Editor&>(editorSection(object)->editor());
}

} // namespace rqshell

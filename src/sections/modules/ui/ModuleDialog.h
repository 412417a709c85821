#pragma once
// "Module Setting": a module's name, defines, sources (with a browser for C
// files), initialisation parameters and "Disable Module"; below them the status
// line and the output box of "Compile", which compiles what the fields hold
// without OK. The dialog shows a form and never changes the model; OK runs the
// form's check, shows the failing message through the sink and keeps the dialog
// open.
//
// The compile runs through the process runner; its reports arrive on the
// runner's threads and reach the dialog as queued calls, so the window stays
// responsive. While it runs, OK, Cancel and Compile are disabled; closing the
// window (Escape) then stops the compile and keeps the dialog with what was typed.

#include "core/MessageSink.h"
#include "core/ProjectModel.h"
#include "deploy/compile/CompileSession.h"
#include "sections/modules/ModulesSectionEditor.h"
#include "shell/EditorEnv.h"

#include <QDialog>

#include <memory>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace rqshell {

class JobBridge;

class CModuleDialog : public QDialog {
    Q_OBJECT
public:
    // `project` gives the project directory at each compile.
    CModuleDialog(const rq::ProjectModel& project, rq::MessageSink& sink,
                  QWidget* parent = nullptr);
    ~CModuleDialog() override;
    void setForm(const rq::ModuleForm& form);
    rq::ModuleForm form() const;
    void accept() override;
    void reject() override;

    // What the browse button does with the chosen files.
    void addSourceFiles(const QStringList& paths);
    // "Compile".
    void compile();
    bool compiling() const { return compiling_; }

    QLineEdit* nameEdit() const { return name_; }
    QLineEdit* sourcesEdit() const { return sources_; }
    QCheckBox* disableBox() const { return disable_; }
    QPushButton* okButton() const { return ok_; }
    QPushButton* cancelButton() const { return cancel_; }
    QPushButton* compileButton() const { return compile_; }
    QPushButton* browseButton() const { return browse_; }
    QPlainTextEdit* outputBox() const { return output_; }
    QLabel* statusLine() const { return status_; }

private:
    void browse();
    void onCompileEvent(int code);

    const rq::ProjectModel& project_;
    rq::MessageSink& sink_;
    JobBridge* bridge_;
    std::unique_ptr<rq::CompileSession> session_;
    QLineEdit *name_, *defines_, *sources_, *params_;
    QCheckBox* disable_;
    QPushButton *browse_, *ok_, *cancel_, *compile_;
    QPlainTextEdit* output_;
    QLabel* status_;
    bool compiling_ = false;
};

class ModuleQtDialogHost : public rq::ModuleDialogHost {
public:
    ModuleQtDialogHost(QWidget* parent, rq::MessageSink& sink, const rq::ProjectModel& project)
        : parent_(parent), sink_(sink), project_(project) {}
    bool moduleDialog(rq::ModuleForm& form) override;

private:
    QWidget* parent_;
    rq::MessageSink& sink_;
    const rq::ProjectModel& project_;
};

namespace detail {
struct ModuleQtDialogs {
    ModuleQtDialogHost qtDialogs;
};
} // namespace detail

// The module editor with its Qt dialog, as the main window registers it.
class ModulesQtEditor : private detail::ModuleQtDialogs, public rq::ModulesSectionEditor {
public:
    explicit ModulesQtEditor(const EditorEnv& env);
};

std::unique_ptr<rq::SectionEditor> makeModulesEditor(const EditorEnv& env);

} // namespace rqshell

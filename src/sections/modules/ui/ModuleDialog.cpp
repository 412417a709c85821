#include "sections/modules/ui/ModuleDialog.h"

#include "shell/Accessible.h"
#include "shell/DeployDialogs.h"
#include "shell/QtText.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace rqshell {

using namespace rq::moduletext;

namespace {

QPushButton* button(const QString& text, QWidget* parent) {
    auto* b = new QPushButton(text, parent);
    b->setAccessibleName(text);
    b->setAutoDefault(false);
    return b;
}

} // namespace

CModuleDialog::CModuleDialog(const rq::ProjectModel& project, rq::MessageSink& sink,
                             QWidget* parent)
    : QDialog(parent), project_(project), sink_(sink), bridge_(new JobBridge(this)) {
    setWindowTitle(qs(kCaption));
    setAccessibleName(qs(kCaption));
    session_ = std::make_unique<rq::CompileSession>(bridge_);
    bridge_->compileHandler = [this](int code, const std::string&) { onCompileEvent(code); };

    auto* outer = new QVBoxLayout(this);
    auto* grid = new QGridLayout;
    auto row = [&](int r, const char* text, QLineEdit* edit) {
        auto* label = new QLabel(qs(text), this);
        label->setBuddy(edit);
        grid->addWidget(label, r, 0);
        grid->addWidget(edit, r, 1);
    };
    name_ = new QLineEdit(this);
    defines_ = new QLineEdit(this);
    sources_ = new QLineEdit(this);
    params_ = new QLineEdit(this);
    row(0, kNameLabel, name_);
    row(1, kDefinesLabel, defines_);
    row(2, kSourcesLabel, sources_);
    browse_ = button(QStringLiteral("..."), this);
    browse_->setAccessibleName(QStringLiteral("Browse Source Files"));
    browse_->setFixedWidth(browse_->fontMetrics().horizontalAdvance(QStringLiteral("....")) + 16);
    grid->addWidget(browse_, 2, 2);
    row(3, kParamsLabel, params_);
    disable_ = new QCheckBox(qs(kDisable), this);
    grid->addWidget(disable_, 4, 1);
    grid->setColumnStretch(1, 1);
    outer->addLayout(grid);

    status_ = new QLabel(this);
    status_->setAccessibleName(QStringLiteral("status"));
    outer->addWidget(status_);
    output_ = new QPlainTextEdit(this);
    output_->setReadOnly(true);
    output_->setAccessibleName(QStringLiteral("output"));
    output_->setMinimumHeight(160);
    outer->addWidget(output_, 1);

    ok_ = button(QStringLiteral("OK"), this);
    ok_->setDefault(true);
    cancel_ = button(QStringLiteral("Cancel"), this);
    compile_ = button(qs(kCompile), this);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(compile_);
    buttons->addStretch(1);
    buttons->addWidget(ok_);
    buttons->addWidget(cancel_);
    outer->addLayout(buttons);

    connect(browse_, &QPushButton::clicked, this, &CModuleDialog::browse);
    connect(ok_, &QPushButton::clicked, this, &CModuleDialog::accept);
    connect(cancel_, &QPushButton::clicked, this, &CModuleDialog::reject);
    connect(compile_, &QPushButton::clicked, this, &CModuleDialog::compile);
    nameFieldsByLabels(this);
    setMinimumWidth(520);
}

CModuleDialog::~CModuleDialog() {
    // The runner's last reports are posted to the bridge, which goes with this dialog.
    session_.reset();
}

void CModuleDialog::setForm(const rq::ModuleForm& f) {
    name_->setText(qs(f.name));
    defines_->setText(qs(f.defines));
    sources_->setText(qs(f.srcfiles));
    params_->setText(qs(f.params));
    disable_->setChecked(f.disable);
}

rq::ModuleForm CModuleDialog::form() const {
    return rq::ModuleForm{str(name_->text()), str(defines_->text()), str(sources_->text()),
                          str(params_->text()), disable_->isChecked()};
}

void CModuleDialog::accept() {
    if (compiling_)
        return;
    if (auto message = rq::validateModuleForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

void CModuleDialog::reject() {
    // Escape or the window's close while the toolchain runs: stop it and keep
    // what was typed; the finish brings the buttons back.
    if (compiling_) {
        session_->stop();
        return;
    }
    QDialog::reject();
}

void CModuleDialog::addSourceFiles(const QStringList& paths) {
    std::vector<std::string> chosen;
    for (const QString& p : paths)
        chosen.push_back(str(p));
    sources_->setText(qs(rq::appendSourceFiles(str(sources_->text()), chosen)));
}

void CModuleDialog::browse() {
    addSourceFiles(
        QFileDialog::getOpenFileNames(this, QString(), QString(), QStringLiteral("(*.c) (*.c)")));
}

void CModuleDialog::compile() {
    const rq::ModuleForm f = form();
    // The checks come first: a refused compile leaves the last output as it was.
    if (auto problem =
            session_->compileModule(project_.projectDirectory, {f.name, f.defines, f.srcfiles})) {
        sink_.showMessage(*problem, rq::MessageIcon::Stop);
        return;
    }
    output_->clear();
    status_->setText(qs(session_->status()));
    // The started report is on its way; the buttons go off now, so that no second
    // click comes in between.
    if (session_->started())
        onCompileEvent(0);
}

void CModuleDialog::onCompileEvent(int code) {
    switch (code) {
    case 0: // started
    case 1: // finished: standard output, then standard error
        compiling_ = code == 0;
        for (QPushButton* b : {ok_, cancel_, compile_, browse_})
            b->setEnabled(!compiling_);
        if (!compiling_) {
            output_->setPlainText(qs(session_->output()));
            status_->setText(qs(session_->status()));
        }
        break;
    default: // the session keeps the output until the finish
        break;
    }
}

bool ModuleQtDialogHost::moduleDialog(rq::ModuleForm& form) {
    CModuleDialog d(project_, sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

ModulesQtEditor::ModulesQtEditor(const EditorEnv& env)
    : detail::ModuleQtDialogs{ModuleQtDialogHost(env.dialogParent, env.sink, env.project.model())},
      rq::ModulesSectionEditor(env.project.modules, qtDialogs, env.sink,
                               env.project.doc.history()) {}

std::unique_ptr<rq::SectionEditor> makeModulesEditor(const EditorEnv& env) {
    return std::make_unique<ModulesQtEditor>(env);
}

} // namespace rqshell

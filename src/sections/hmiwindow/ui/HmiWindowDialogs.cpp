#include "sections/hmiwindow/ui/HmiWindowDialogs.h"

#include "shell/Accessible.h"
#include "shell/QtText.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace rqshell {

using namespace rq::windowtext;

CWindowSettingDialog::CWindowSettingDialog(rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), sink_(sink) {
    setWindowTitle(qs(kCaption));
    auto* outer = new QVBoxLayout(this);
    auto* box = new QGroupBox(qs(kBox), this);
    auto* grid = new QGridLayout(box);
    auto row = [&](int r, const char* text, QLineEdit* edit) {
        auto* label = new QLabel(qs(text), box);
        label->setBuddy(edit);
        grid->addWidget(label, r, 0);
        grid->addWidget(edit, r, 1);
    };
    name_ = new QLineEdit(box);
    caption_ = new QLineEdit(box);
    file_ = new QLineEdit(box);
    row(0, kNameLabel, name_);
    row(1, kTitleLabel, caption_);
    row(2, kFileLabel, file_);
    createFile_ = new QCheckBox(qs(kCreateFile), box);
    startup_ = new QCheckBox(qs(kStartupShowing), box);
    disable_ = new QCheckBox(qs(kDisableShowing), box);
    auto* checks = new QVBoxLayout;
    checks->addWidget(createFile_);
    checks->addWidget(startup_);
    checks->addWidget(disable_);
    grid->addLayout(checks, 3, 1);
    grid->setColumnStretch(1, 1);
    outer->addWidget(box);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    outer->addWidget(buttons);
    nameFieldsByLabels(this);
    setMinimumWidth(360);
}

void CWindowSettingDialog::setForm(const rq::WindowForm& f) {
    name_->setText(qs(f.name));
    caption_->setText(qs(f.caption));
    file_->setText(qs(f.filename));
    createFile_->setChecked(f.createFile);
    startup_->setChecked(f.startupShowing);
    disable_->setChecked(f.disableShowing);
}

rq::WindowForm CWindowSettingDialog::form() const {
    rq::WindowForm f;
    f.name = str(name_->text());
    f.caption = str(caption_->text());
    f.filename = str(file_->text());
    f.createFile = createFile_->isChecked();
    f.startupShowing = startup_->isChecked();
    f.disableShowing = disable_->isChecked();
    return f;
}

void CWindowSettingDialog::accept() {
    if (auto message = rq::validateWindowForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

bool WindowQtDialogHost::windowDialog(rq::WindowForm& form) {
    CWindowSettingDialog d(sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

} // namespace rqshell

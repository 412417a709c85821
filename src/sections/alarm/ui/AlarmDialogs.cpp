#include "sections/alarm/ui/AlarmDialogs.h"

#include "shell/Accessible.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace rqshell {

namespace {

using namespace rq::alarmtext;

// The editor with the Qt dialogs it opens.
class AlarmQtEditor : public rq::AlarmSectionEditor {
public:
    explicit AlarmQtEditor(const EditorEnv& env)
        : rq::AlarmSectionEditor(env.project.alarm, host_, env.project.doc.history()),
          host_(env.dialogParent, env.sink) {}

private:
    AlarmQtDialogHost host_;
};

} // namespace

CAlarmConfigDialog::CAlarmConfigDialog(rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), sink_(sink) {
    setWindowTitle(QString::fromUtf8(kConfigCaption));
    auto* outer = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    size_ = new QLineEdit(this);
    size_->setMinimumWidth(120);
    form->addRow(QString::fromUtf8(kBufferSize), size_);
    outer->addLayout(form);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    outer->addWidget(buttons);
    nameFieldsByLabels(this);
}

void CAlarmConfigDialog::setForm(const rq::AlarmConfigForm& f) {
    size_->setText(QString::fromUtf8(f.bufferSize.data(), qsizetype(f.bufferSize.size())));
}

rq::AlarmConfigForm CAlarmConfigDialog::form() const {
    return rq::AlarmConfigForm{size_->text().toUtf8().toStdString()};
}

void CAlarmConfigDialog::accept() {
    if (auto message = rq::validateAlarmConfigForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

bool AlarmQtDialogHost::configDialog(rq::AlarmConfigForm& form) {
    CAlarmConfigDialog d(sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

std::unique_ptr<rq::SectionEditor> makeAlarmEditor(const EditorEnv& env) {
    return std::make_unique<AlarmQtEditor>(env);
}

} // namespace rqshell

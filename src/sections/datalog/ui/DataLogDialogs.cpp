#include "sections/datalog/ui/DataLogDialogs.h"

#include "sections/rtdb/ui/RtdbPickField.h"
#include "shell/Accessible.h"
#include "shell/QtText.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace rqshell {

namespace {

using namespace rq::datalogtext;

// The caption, a group box for the fields, OK and Cancel below it.
QGroupBox* frame(QDialog* dialog, const char* box) {
    dialog->setWindowTitle(qs(kCaption));
    auto* outer = new QVBoxLayout(dialog);
    auto* group = new QGroupBox(qs(box), dialog);
    outer->addWidget(group);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    outer->addWidget(buttons);
    return group;
}

} // namespace

CDataLogDialog::CDataLogDialog(rq::DataLogKind kind, const rq::RtdbSection& project,
                               const rq::RtdbSection* system, rq::MessageSink& sink,
                               QWidget* parent)
    : QDialog(parent), kind_(kind), sink_(sink) {
    QGroupBox* box = frame(this, kLogBox);
    auto* form = new QFormLayout(box);
    name_ = new QLineEdit(box);
    period_ = new QLineEdit(box);
    periodVar_ = new QLineEdit(box);
    size_ = new QLineEdit(box);
    control_ = new CRtdbPickField(project, system, qs(kControlVarLabel),
                                  CRtdbPickField::Form::OneText, box);
    form->addRow(qs(kNameLabel), name_);
    form->addRow(qs(kPeriodLabel), period_);
    form->addRow(qs(kPeriodVarLabel), periodVar_);
    form->addRow(qs(kSizeLabel), size_);
    if (kind == rq::DataLogKind::Database) {
        database_ = new CRtdbPickField(project, system, qs(kDatabaseLabel),
                                       CRtdbPickField::Form::Database, box);
        form->addRow(qs(kDatabaseLabel), database_);
    }
    form->addRow(qs(kControlVarLabel), control_);
    nameFieldsByLabels(this);
    setMinimumWidth(400);
    rq::DataLogForm initial; // the defaults of a new log
    initial.kind = kind;
    setForm(initial);
}

void CDataLogDialog::setForm(const rq::DataLogForm& f) {
    name_->setText(qs(f.name));
    period_->setText(qs(f.period));
    periodVar_->setText(qs(f.period_var));
    size_->setText(qs(f.size));
    if (database_)
        database_->setText(f.dbname);
    control_->setText(f.control_var);
}

rq::DataLogForm CDataLogDialog::form() const {
    rq::DataLogForm f;
    f.kind = kind_;
    f.name = str(name_->text());
    f.period = str(period_->text());
    f.period_var = str(periodVar_->text());
    f.size = str(size_->text());
    if (database_)
        f.dbname = database_->text();
    f.control_var = control_->text();
    return f;
}

void CDataLogDialog::accept() {
    if (auto message = rq::validateDataLogForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

CLogDataDialog::CLogDataDialog(const rq::RtdbSection& project, const rq::RtdbSection* system,
                               rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), sink_(sink) {
    QGroupBox* box = frame(this, kDataBox);
    auto* grid = new QGridLayout(box);
    data_ =
        new CRtdbPickField(project, system, qs(kDataLabel), CRtdbPickField::Form::PairRows, box);
    // One pick button fills both rows: the data name above, the database below.
    auto* dataLabel = new QLabel(qs(kDataLabel), box);
    auto* dbLabel = new QLabel(qs(kDbNameLabel), box);
    dataLabel->setBuddy(data_->dataEdit());
    dbLabel->setBuddy(data_->edit());
    data_->dataEdit()->setAccessibleName(accessibleText(qs(kDataLabel)));
    data_->edit()->setAccessibleName(accessibleText(qs(kDbNameLabel)));
    grid->addWidget(dataLabel, 0, 0);
    grid->addWidget(dbLabel, 1, 0);
    grid->addWidget(data_, 0, 1, 2, 1);
    grid->setColumnStretch(1, 1);
    nameFieldsByLabels(this);
    setMinimumWidth(380);
}

void CLogDataDialog::setForm(const rq::LogDataForm& f) {
    data_->setReference(rq::logDataFromForm(f));
}

rq::LogDataForm CLogDataDialog::form() const {
    return rq::logDataFormFromRef(data_->reference());
}

void CLogDataDialog::accept() {
    if (auto message = rq::validateLogDataForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

bool DataLogQtDialogHost::logDialog(rq::DataLogForm& form) {
    CDataLogDialog d(form.kind, project_, system_, sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

bool DataLogQtDialogHost::logDataDialog(rq::LogDataForm& form) {
    CLogDataDialog d(project_, system_, sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

} // namespace rqshell

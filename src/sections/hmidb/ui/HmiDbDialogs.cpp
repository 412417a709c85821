#include "sections/hmidb/ui/HmiDbDialogs.h"

#include "core/DataTypes.h"
#include "sections/rtdb/ui/RtdbDialogs.h"
#include "sections/rtdb/ui/RtdbPickField.h"
#include "shell/Accessible.h"
#include "shell/QtText.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace rqshell {

namespace {

using namespace rq::hmidbtext;

// The message of the field exchange for a number field that holds no integer.
constexpr const char* kNotInteger = "Please enter an integer.";

// A form layout with OK and Cancel below it.
QFormLayout* frame(QDialog* dialog, const char* caption) {
    dialog->setWindowTitle(qs(caption));
    auto* outer = new QVBoxLayout(dialog);
    auto* form = new QFormLayout;
    outer->addLayout(form);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    outer->addWidget(buttons);
    return form;
}

std::optional<int> integerOf(const QLineEdit* edit) {
    bool ok = false;
    int v = edit->text().trimmed().toInt(&ok);
    return ok ? std::optional<int>(v) : std::nullopt;
}

// The field exchange: a number field that holds no integer is refused first.
bool integerField(QLineEdit* edit, rq::MessageSink& sink) {
    if (!edit->isEnabled() || integerOf(edit))
        return true;
    sink.showMessage(kNotInteger, rq::MessageIcon::Stop);
    edit->setFocus();
    return false;
}

} // namespace

CIoDataDialog::CIoDataDialog(const rq::RtdbSection& project, const rq::RtdbSection* system,
                             rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), sink_(sink) {
    QFormLayout* form = frame(this, kIoCaption);
    name_ = new QLineEdit(this);
    pick_ = new CRtdbPickField(project, system, QStringLiteral("Realtime Data"),
                               CRtdbPickField::Form::Pair, this);
    // The pair's two names stand on rows of their own; the button stays beside the
    // variable name.
    QLineEdit* db = pick_->edit();
    QLineEdit* var = pick_->dataEdit();
    pick_->layout()->removeWidget(db);
    pick_->layout()->removeWidget(var);
    db->setAccessibleName(accessibleText(qs(kDatabaseLabel)));
    var->setAccessibleName(accessibleText(qs(kVariableLabel)));
    auto* variableRow = new QWidget(this);
    auto* h = new QHBoxLayout(variableRow);
    h->setContentsMargins(0, 0, 0, 0);
    h->addWidget(var, 1);
    h->addWidget(pick_);
    pick_->setFocusProxy(nullptr);
    period_ = new QLineEdit(this);
    form->addRow(qs(kNameLabel), name_);
    form->addRow(qs(kDatabaseLabel), db);
    form->addRow(qs(kVariableLabel), variableRow);
    form->addRow(qs(kPeriodLabel), period_);
    setForm(rq::IoDataForm{});
    nameFieldsByLabels(this);
    setMinimumWidth(360);
}

QLineEdit* CIoDataDialog::databaseEdit() const {
    return pick_->edit();
}

QLineEdit* CIoDataDialog::variableEdit() const {
    return pick_->dataEdit();
}

void CIoDataDialog::setForm(const rq::IoDataForm& f) {
    name_->setText(qs(f.name));
    pick_->setReference(rq::DataRef{f.dbname, f.dataname});
    period_->setText(QString::number(f.period));
}

rq::IoDataForm CIoDataDialog::form() const {
    rq::DataRef ref = pick_->reference();
    return rq::IoDataForm{str(name_->text()), std::move(ref.dbname), std::move(ref.dataname),
                          integerOf(period_).value_or(0)};
}

void CIoDataDialog::accept() {
    if (!integerField(period_, sink_))
        return;
    if (auto message = rq::validateIoDataForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

CMemoryDataDialog::CMemoryDataDialog(rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), sink_(sink) {
    QFormLayout* form = frame(this, kMemoryCaption);
    name_ = new QLineEdit(this);
    type_ = new QComboBox(this);
    for (int i = 0; i < rq::DataTypeTable::kCount; ++i)
        type_->addItem(qs(rq::DataTypeTable::shownAt(i)));
    length_ = new QLineEdit(this);
    init_ = new QLineEdit(this);
    form->addRow(qs(kNameLabel), name_);
    form->addRow(qs(kTypeLabel), type_);
    form->addRow(qs(kLengthLabel), length_);
    form->addRow(qs(kInitLabel), init_);
    connect(type_, &QComboBox::currentIndexChanged, this, &CMemoryDataDialog::onTypeChanged);
    setForm(rq::MemoryDataForm{});
    nameFieldsByLabels(this);
    setMinimumWidth(320);
}

void CMemoryDataDialog::setForm(const rq::MemoryDataForm& f) {
    QSignalBlocker block(type_);
    name_->setText(qs(f.name));
    type_->setCurrentIndex(f.typeIndex);
    length_->setText(QString::number(f.length));
    length_->setEnabled(rq::lengthEditable(f));
    init_->setText(qs(f.init));
}

rq::MemoryDataForm CMemoryDataDialog::form() const {
    return rq::MemoryDataForm{str(name_->text()), type_->currentIndex(),
                              integerOf(length_).value_or(0), str(init_->text())};
}

void CMemoryDataDialog::onTypeChanged(int) {
    rq::MemoryDataForm f = form();
    rq::applyTypeSelection(f);
    length_->setText(QString::number(f.length));
    length_->setEnabled(rq::lengthEditable(f));
}

void CMemoryDataDialog::accept() {
    if (!integerField(length_, sink_))
        return;
    if (auto message = rq::validateMemoryDataForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

bool HmiDbQtDialogHost::groupDialog(rq::HmiGroupForm& form) {
    CDataGroupDialog d(parent_);
    d.setForm(rq::DataGroupForm{form.name});
    if (d.exec() != QDialog::Accepted)
        return false;
    form.name = d.form().name;
    return true;
}

bool HmiDbQtDialogHost::ioDataDialog(rq::IoDataForm& form) {
    CIoDataDialog d(project_, system_, sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

bool HmiDbQtDialogHost::memoryDataDialog(rq::MemoryDataForm& form) {
    CMemoryDataDialog d(sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

} // namespace rqshell

#include "sections/rtdb/ui/RtdbDialogs.h"
#include "shell/QtText.h"

#include "core/DataTypes.h"
#include "shell/Accessible.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace rqshell {

namespace {

using namespace rq::rtdbtext;

// A group box holding a form layout, with OK and Cancel below it.
QFormLayout* frame(QDialog* dialog, const char* caption, const char* box) {
    dialog->setWindowTitle(qs(caption));
    auto* outer = new QVBoxLayout(dialog);
    auto* group = new QGroupBox(qs(box), dialog);
    auto* form = new QFormLayout(group);
    outer->addWidget(group);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    outer->addWidget(buttons);
    return form;
}

// The field exchange of an integer field: nothing when the text is no integer.
std::optional<int> integerOf(const QLineEdit* edit) {
    bool ok = false;
    int v = edit->text().trimmed().toInt(&ok);
    return ok ? std::optional<int>(v) : std::nullopt;
}

} // namespace

CDatabaseDialog::CDatabaseDialog(QWidget* parent) : QDialog(parent) {
    QFormLayout* form = frame(this, kDatabaseCaption, kDatabaseBox);
    name_ = new QLineEdit(this);
    sync_ = new QCheckBox(qs(kSyncCheck), this);
    sync_->setChecked(true);
    form->addRow(qs(kDatabaseLabel), name_);
    form->addRow(QString(), sync_);
    nameFieldsByLabels(this);
    setMinimumWidth(320);
}

void CDatabaseDialog::setForm(const rq::DatabaseForm& f) {
    name_->setText(qs(f.name));
    sync_->setChecked(f.sync);
}

rq::DatabaseForm CDatabaseDialog::form() const {
    return rq::DatabaseForm{str(name_->text()), sync_->isChecked()};
}

CDataGroupDialog::CDataGroupDialog(QWidget* parent) : QDialog(parent) {
    QFormLayout* form = frame(this, kGroupCaption, kGroupBox);
    name_ = new QLineEdit(this);
    form->addRow(qs(kGroupLabel), name_);
    nameFieldsByLabels(this);
    setMinimumWidth(320);
}

void CDataGroupDialog::setForm(const rq::DataGroupForm& f) {
    name_->setText(qs(f.name));
}

rq::DataGroupForm CDataGroupDialog::form() const {
    return rq::DataGroupForm{str(name_->text())};
}

CDataDialog::CDataDialog(rq::MessageSink& sink, bool batch, QWidget* parent)
    : QDialog(parent), sink_(sink), batch_(batch) {
    QFormLayout* form = frame(this, batch ? kBatchCaption : kDataCaption, kDataBox);
    name_ = new QLineEdit(this);
    type_ = new QComboBox(this);
    for (int i = 0; i < rq::DataTypeTable::kCount; ++i)
        type_->addItem(qs(rq::DataTypeTable::shownAt(i)));
    length_ = new QLineEdit(this);
    init_ = new QLineEdit(this);
    aliasCheck_ = new QCheckBox(qs(kAliasCheck), this);
    alias_ = new QLineEdit(this);
    description_ = new QLineEdit(this);
    form->addRow(qs(kDataLabel), name_);
    form->addRow(qs(kTypeLabel), type_);
    form->addRow(qs(kLengthLabel), length_);
    form->addRow(qs(kInitLabel), init_);
    form->addRow(QString(), aliasCheck_);
    form->addRow(qs(kAliasLabel), alias_);
    form->addRow(qs(kDescriptionLabel), description_);
    if (batch) {
        from_ = new QLineEdit(this);
        to_ = new QLineEdit(this);
        auto* range = new QWidget(this);
        auto* h = new QHBoxLayout(range);
        h->setContentsMargins(0, 0, 0, 0);
        auto* fromLabel = new QLabel(qs(kFromLabel), range);
        auto* toLabel = new QLabel(qs(kToLabel), range);
        fromLabel->setBuddy(from_);
        toLabel->setBuddy(to_);
        h->addWidget(fromLabel);
        h->addWidget(from_);
        h->addWidget(toLabel);
        h->addWidget(to_);
        form->addRow(QString(), range);
    }
    connect(type_, &QComboBox::currentIndexChanged, this, &CDataDialog::onTypeChanged);
    connect(aliasCheck_, &QCheckBox::toggled, this, &CDataDialog::onAliasToggled);
    setForm(rq::newDataForm());
    nameFieldsByLabels(this);
    setMinimumWidth(360);
}

void CDataDialog::setForm(const rq::DataForm& f) {
    QSignalBlocker block(type_);
    name_->setText(qs(f.name));
    type_->setCurrentIndex(f.typeIndex);
    length_->setText(QString::number(f.length));
    length_->setEnabled(rq::lengthEditable(f));
    init_->setText(qs(f.init));
    aliasCheck_->setChecked(f.alias);
    alias_->setText(qs(f.aliasText));
    alias_->setEnabled(f.alias);
    description_->setText(qs(f.description));
}

void CDataDialog::setBatchForm(const rq::BatchDataForm& f) {
    setForm(f.data);
    if (from_) {
        from_->setText(QString::number(f.from));
        to_->setText(QString::number(f.to));
    }
}

rq::DataForm CDataDialog::form() const {
    rq::DataForm f;
    f.name = str(name_->text());
    f.typeIndex = type_->currentIndex();
    f.length = integerOf(length_).value_or(0);
    f.init = str(init_->text());
    f.alias = aliasCheck_->isChecked();
    f.aliasText = str(alias_->text());
    f.description = str(description_->text());
    return f;
}

rq::BatchDataForm CDataDialog::batchForm() const {
    rq::BatchDataForm f;
    f.data = form();
    if (from_) {
        f.from = integerOf(from_).value_or(0);
        f.to = integerOf(to_).value_or(0);
    }
    return f;
}

void CDataDialog::onTypeChanged(int) {
    rq::DataForm f = form();
    rq::applyTypeSelection(f);
    length_->setText(QString::number(f.length));
    length_->setEnabled(rq::lengthEditable(f));
}

void CDataDialog::onAliasToggled(bool on) {
    alias_->setEnabled(on);
}

void CDataDialog::accept() {
    // The field exchange refuses number fields that hold no integer.
    std::vector<QLineEdit*> numbers{length_};
    if (batch_) {
        numbers.push_back(from_);
        numbers.push_back(to_);
    }
    for (QLineEdit* e : numbers) {
        if (e->isEnabled() && !integerOf(e)) {
            sink_.showMessage("Please enter an integer.", rq::MessageIcon::Stop);
            e->setFocus();
            return;
        }
    }
    std::optional<std::string> message =
        batch_ ? rq::validateBatchDataForm(batchForm()) : rq::validateDataForm(form());
    if (message) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

bool RtdbQtDialogHost::databaseDialog(rq::DatabaseForm& form) {
    CDatabaseDialog d(parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

bool RtdbQtDialogHost::dataGroupDialog(rq::DataGroupForm& form) {
    CDataGroupDialog d(parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

bool RtdbQtDialogHost::dataDialog(rq::DataForm& form) {
    CDataDialog d(sink_, false, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

bool RtdbQtDialogHost::batchDataDialog(rq::BatchDataForm& form) {
    CDataDialog d(sink_, true, parent_);
    d.setBatchForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.batchForm();
    return true;
}

} // namespace rqshell

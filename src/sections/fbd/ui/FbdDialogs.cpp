#include "sections/fbd/ui/FbdDialogs.h"

#include "sections/rtdb/ui/RtdbPickField.h"
#include "shell/Accessible.h"
#include "shell/QtText.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace rqshell {

namespace {

using namespace rq::fbdtext;

QDialogButtonBox* okCancel(QDialog* d) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, d);
    QObject::connect(buttons, &QDialogButtonBox::accepted, d, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, d, &QDialog::reject);
    return buttons;
}

} // namespace

CFbdConfigDialog::CFbdConfigDialog(rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), sink_(sink) {
    setWindowTitle(qs(kBlockCaption));
    auto* outer = new QVBoxLayout(this);
    auto* rows = new QFormLayout;
    name_ = new QLineEdit(this);
    type_ = new QComboBox(this);
    for (const rq::FbdBlockClass& c : rq::FbdClassCatalog::classes())
        type_->addItem(qs(c.display));
    type_->setCurrentIndex(-1);
    subType_ = new QComboBox(this);
    rows->addRow(qs(kNameLabel), name_);
    rows->addRow(qs(kTypeLabel), type_);
    rows->addRow(qs(kSubTypeLabel), subType_);
    outer->addLayout(rows);
    outer->addWidget(okCancel(this));
    connect(type_, &QComboBox::currentIndexChanged, this, [this] { fillSubTypes(); });
    fillSubTypes();
    nameFieldsByLabels(this);
    setMinimumWidth(320);
}

void CFbdConfigDialog::fillSubTypes() {
    subType_->clear();
    if (const rq::FbdBlockClass* c = rq::FbdClassCatalog::findByDisplay(str(type_->currentText())))
        for (const char* shown : c->memberDisplays)
            subType_->addItem(qs(shown));
    subType_->setCurrentIndex(-1);
    subType_->setEnabled(subType_->count() > 0);
}

void CFbdConfigDialog::setForm(const rq::FbdBlockForm& f) {
    adding_ = f.adding;
    name_->setText(qs(f.name));
    type_->setCurrentIndex(
        type_->findText(qs(f.typeText), Qt::MatchExactly | Qt::MatchCaseSensitive));
    fillSubTypes();
    subType_->setCurrentIndex(
        subType_->findText(qs(f.subTypeText), Qt::MatchExactly | Qt::MatchCaseSensitive));
    type_->setEnabled(adding_);
}

rq::FbdBlockForm CFbdConfigDialog::form() const {
    return rq::FbdBlockForm{str(name_->text()), str(type_->currentText()),
                            str(subType_->currentText()), adding_};
}

void CFbdConfigDialog::accept() {
    if (auto message = rq::validateFbdBlockForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

CFbdParamDialog::CFbdParamDialog(const rq::RtdbSection& project, const rq::RtdbSection* system,
                                 rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), sink_(sink) {
    setWindowTitle(qs(kParamCaption));
    auto* outer = new QVBoxLayout(this);
    auto* rows = new QFormLayout;
    name_ = new QLineEdit(this);
    name_->setReadOnly(true);
    data_ = new CRtdbPickField(project, system, qs(kDataLabel), CRtdbPickField::Form::Pair, this);
    // The names come from the pick button only.
    data_->edit()->setReadOnly(true);
    data_->dataEdit()->setReadOnly(true);
    data_->edit()->setMinimumWidth(120);
    data_->dataEdit()->setMinimumWidth(120);
    data_->setExclusions([this]() -> std::optional<CRtdbPickField::Exclusions> {
        if (!booleanOnly_)
            return CRtdbPickField::Exclusions{};
        return onlyType(rq::DataTypeTable::indexOfKeyword("bit"));
    });
    rows->addRow(qs(kParamNameLabel), name_);
    rows->addRow(qs(kDataLabel), data_);
    outer->addLayout(rows);
    outer->addWidget(okCancel(this));
    nameFieldsByLabels(this);
    setMinimumWidth(420);
}

void CFbdParamDialog::setForm(const rq::FbdParamForm& f) {
    booleanOnly_ = f.booleanOnly;
    name_->setText(qs(f.name));
    data_->setReference(rq::DataRef{f.dbname, f.varname});
}

rq::FbdParamForm CFbdParamDialog::form() const {
    const rq::DataRef ref = data_->reference();
    return rq::FbdParamForm{str(name_->text()), ref.dbname, ref.dataname, booleanOnly_};
}

void CFbdParamDialog::accept() {
    if (auto message = rq::validateFbdParamForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

bool FbdQtDialogHost::blockDialog(rq::FbdBlockForm& form) {
    CFbdConfigDialog d(sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

bool FbdQtDialogHost::paramDialog(rq::FbdParamForm& form) {
    CFbdParamDialog d(project_, system_, sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

} // namespace rqshell

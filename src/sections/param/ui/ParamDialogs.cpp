#include "sections/param/ui/ParamDialogs.h"
#include "shell/QtText.h"

#include "sections/rtdb/ui/RtdbBrowseDialog.h"
#include "shell/Accessible.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace rqshell {

namespace {

using namespace rq::paramtext;

} // namespace

CParamDialog::CParamDialog(const rq::RtdbSection& project, const rq::RtdbSection* system,
                           rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), project_(project), system_(system), sink_(sink) {
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
    dbname_ = new QLineEdit(box);
    dataname_ = new QLineEdit(box);
    value_ = new QLineEdit(box);
    // The names come from the pick button only.
    dbname_->setReadOnly(true);
    dataname_->setReadOnly(true);
    pick_ = new QPushButton(QStringLiteral("..."), box);
    pick_->setAccessibleName(QStringLiteral("Pick Realtime Data"));
    pick_->setFixedWidth(pick_->fontMetrics().horizontalAdvance(QStringLiteral("....")) + 16);
    row(0, kDatabaseLabel, dbname_);
    row(1, kDataLabel, dataname_);
    grid->addWidget(pick_, 1, 2);
    row(2, kValueLabel, value_);
    grid->setColumnStretch(1, 1);
    outer->addWidget(box);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    outer->addWidget(buttons);
    connect(pick_, &QPushButton::clicked, this, &CParamDialog::pick);
    nameFieldsByLabels(this);
    setMinimumWidth(380);
}

void CParamDialog::setForm(const rq::ParamForm& f) {
    dbname_->setText(qs(f.dbname));
    dataname_->setText(qs(f.dataname));
    value_->setText(qs(f.value));
}

rq::ParamForm CParamDialog::form() const {
    return rq::ParamForm{str(dbname_->text()), str(dataname_->text()), str(value_->text())};
}

void CParamDialog::pick() {
    std::optional<rq::DataRef> ref = browseRealtimeData(this, project_, system_);
    if (!ref)
        return;
    dbname_->setText(qs(ref->dbname));
    dataname_->setText(qs(ref->dataname));
}

void CParamDialog::accept() {
    const rq::ParamForm f = form();
    if (auto message = rq::validateParamForm(f)) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

bool ParamQtDialogHost::paramDialog(rq::ParamForm& form) {
    CParamDialog d(project_, system_, sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

} // namespace rqshell

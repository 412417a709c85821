#include "sections/history/ui/HistoryDialogs.h"

#include "shell/Accessible.h"
#include "shell/QtText.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace rqshell {

namespace {

using namespace rq::historytext;

QDialogButtonBox* okCancel(QDialog* d) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, d);
    QObject::connect(buttons, &QDialogButtonBox::accepted, d, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, d, &QDialog::reject);
    return buttons;
}

} // namespace

// ---- History Data Configuration ----

CHistoryConfigDialog::CHistoryConfigDialog(rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), sink_(sink) {
    setWindowTitle(qs(kRecordCaption));
    auto* outer = new QVBoxLayout(this);
    auto* box = new QGroupBox(qs(kRecordBox), this);
    auto* rows = new QFormLayout(box);
    name_ = new QLineEdit(box);
    period_ = new QLineEdit(box);
    location_ = new QComboBox(box);
    for (const rq::HistoryLocationRow& l : rq::kHistoryLocations)
        location_->addItem(qs(l.shown));
    remaindays_ = new QLineEdit(box);
    indexperiod_ = new QLineEdit(box);
    rows->addRow(qs(kNameLabel), name_);
    rows->addRow(qs(kPeriodLabel), period_);
    rows->addRow(qs(kLocationLabel), location_);
    rows->addRow(qs(kRemainDaysLabel), remaindays_);
    rows->addRow(qs(kIndexPeriodLabel), indexperiod_);
    outer->addWidget(box);
    outer->addWidget(okCancel(this));
    setForm(rq::historyRecordForm(rq::HistoryRecord{}));
    nameFieldsByLabels(this);
    setMinimumWidth(360);
}

void CHistoryConfigDialog::setForm(const rq::HistoryRecordForm& f) {
    name_->setText(qs(f.name));
    period_->setText(qs(f.period));
    location_->setCurrentIndex(f.location < location_->count() ? f.location : -1);
    remaindays_->setText(qs(f.remaindays));
    indexperiod_->setText(qs(f.indexperiod));
}

rq::HistoryRecordForm CHistoryConfigDialog::form() const {
    return rq::HistoryRecordForm{str(name_->text()), str(period_->text()),
                                 location_->currentIndex(), str(remaindays_->text()),
                                 str(indexperiod_->text())};
}

void CHistoryConfigDialog::accept() {
    if (auto message = rq::validateHistoryRecordForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

// ---- History Data Record ----

CHistoryDataDialog::CHistoryDataDialog(const rq::RtdbSection& project,
                                       const rq::RtdbSection* system, rq::MessageSink& sink,
                                       QWidget* parent)
    : QDialog(parent), sink_(sink) {
    setWindowTitle(qs(kDataCaption));
    auto* outer = new QVBoxLayout(this);
    auto* box = new QGroupBox(qs(kDataBox), this);
    auto* grid = new QGridLayout(box);
    auto label = [&](int row, const char* text, QWidget* buddy) {
        auto* l = new QLabel(qs(text), box);
        l->setBuddy(buddy);
        grid->addWidget(l, row, 0);
    };
    // One pick button fills both rows: the data name above, the database below.
    data_ = new CRtdbPickField(project, system, qs(kDataNameLabel), CRtdbPickField::Form::PairRows,
                               box);
    QLineEdit* dataname = data_->dataEdit();
    QLineEdit* dbname = data_->edit();
    dataname->setReadOnly(true);
    dbname->setReadOnly(true);
    dataname->setAccessibleName(accessibleText(qs(kDataNameLabel)));
    dbname->setAccessibleName(accessibleText(qs(kDatabaseLabel)));
    label(0, kDataNameLabel, dataname);
    label(1, kDatabaseLabel, dbname);
    grid->addWidget(data_, 0, 1, 2, 2);

    kind_ = new QComboBox(box);
    for (const rq::HistoryKindRow& k : rq::kHistoryKinds)
        kind_->addItem(qs(k.shown));
    label(2, kKindLabel, kind_);
    grid->addWidget(kind_, 2, 1);
    periodvalue_ = new QLineEdit(box);
    label(3, kPeriodValueLabel, periodvalue_);
    grid->addWidget(periodvalue_, 3, 1);
    changevalue_ = new QLineEdit(box);
    label(4, kChangeValueLabel, changevalue_);
    grid->addWidget(changevalue_, 4, 1);
    trigger_ =
        new CRtdbPickField(project, system, qs(kTriggerLabel), CRtdbPickField::Form::OneText, box);
    label(5, kTriggerLabel, trigger_);
    grid->addWidget(trigger_, 5, 1, 1, 2);
    query_ =
        new CRtdbPickField(project, system, qs(kQueryLabel), CRtdbPickField::Form::OneText, box);
    label(6, kQueryLabel, query_);
    grid->addWidget(query_, 6, 1, 1, 2);
    description_ = new QLineEdit(box);
    label(7, kDescriptionLabel, description_);
    grid->addWidget(description_, 7, 1, 1, 2);
    grid->setColumnStretch(1, 1);
    outer->addWidget(box);
    outer->addWidget(okCancel(this));
    connect(kind_, &QComboBox::currentIndexChanged, this, &CHistoryDataDialog::kindChosen);
    rq::HistoryDataForm empty;
    setForm(empty);
    nameFieldsByLabels(this);
    setMinimumWidth(420);
}

void CHistoryDataDialog::kindChosen(int kind) {
    periodvalue_->setEnabled(kind == 0);
    changevalue_->setEnabled(kind == 1);
    trigger_->setEnabled(kind == 2);
}

void CHistoryDataDialog::setForm(const rq::HistoryDataForm& f) {
    data_->setReference(rq::DataRef{f.dbname, f.dataname});
    kind_->setCurrentIndex(f.kind < kind_->count() ? f.kind : -1);
    kindChosen(kind_->currentIndex());
    periodvalue_->setText(qs(f.periodvalue));
    changevalue_->setText(qs(f.changevalue));
    trigger_->setText(f.trigvarname);
    query_->setText(f.queryvarname);
    description_->setText(qs(f.description));
}

rq::HistoryDataForm CHistoryDataDialog::form() const {
    rq::HistoryDataForm f;
    const rq::DataRef ref = data_->reference();
    f.dbname = ref.dbname;
    f.dataname = ref.dataname;
    f.kind = kind_->currentIndex();
    f.periodvalue = str(periodvalue_->text());
    f.changevalue = str(changevalue_->text());
    f.trigvarname = trigger_->text();
    f.queryvarname = query_->text();
    f.description = str(description_->text());
    return f;
}

void CHistoryDataDialog::accept() {
    if (auto message = rq::validateHistoryDataForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

// ---- host ----

bool HistoryQtDialogHost::recordDialog(rq::HistoryRecordForm& form) {
    CHistoryConfigDialog d(sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

bool HistoryQtDialogHost::dataDialog(rq::HistoryDataForm& form) {
    CHistoryDataDialog d(project_, system_, sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

} // namespace rqshell

#include "sections/alarm/ui/AlarmDialogs.h"

#include "sections/rtdb/ui/RtdbBrowseDialog.h"
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

using namespace rq::alarmtext;

// The editor with the Qt dialogs it opens.
class AlarmQtEditor : public rq::AlarmSectionEditor {
public:
    explicit AlarmQtEditor(const EditorEnv& env)
        : rq::AlarmSectionEditor(env.project.alarm, host_, env.sink, env.project.doc.history()),
          host_(env.dialogParent, env.sink, env.project.rtdb, systemDatabase(env.programDir)) {}

private:
    AlarmQtDialogHost host_;
};

QDialogButtonBox* okCancel(QDialog* d) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, d);
    QObject::connect(buttons, &QDialogButtonBox::accepted, d, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, d, &QDialog::reject);
    return buttons;
}

// Shows a dialog on a form; the form takes the result on OK.
template <class Dialog, class Form> bool runDialog(Dialog& d, Form& form) {
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

} // namespace

CAlarmConfigDialog::CAlarmConfigDialog(rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), sink_(sink) {
    setWindowTitle(qs(kConfigCaption));
    auto* outer = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    size_ = new QLineEdit(this);
    size_->setMinimumWidth(120);
    form->addRow(qs(kBufferSize), size_);
    outer->addLayout(form);
    outer->addWidget(okCancel(this));
    nameFieldsByLabels(this);
}

void CAlarmConfigDialog::setForm(const rq::AlarmConfigForm& f) {
    size_->setText(qs(f.bufferSize));
}

rq::AlarmConfigForm CAlarmConfigDialog::form() const {
    return rq::AlarmConfigForm{str(size_->text())};
}

void CAlarmConfigDialog::accept() {
    if (auto message = rq::validateAlarmConfigForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

CAlarmGroupDialog::CAlarmGroupDialog(rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), sink_(sink) {
    setWindowTitle(qs(kGroupCaption));
    auto* outer = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    name_ = new QLineEdit(this);
    name_->setMinimumWidth(200);
    form->addRow(qs(kGroupLabel), name_);
    outer->addLayout(form);
    outer->addWidget(okCancel(this));
    nameFieldsByLabels(this);
}

void CAlarmGroupDialog::setForm(const rq::AlarmGroupForm& f) {
    name_->setText(qs(f.name));
}

rq::AlarmGroupForm CAlarmGroupDialog::form() const {
    return rq::AlarmGroupForm{str(name_->text())};
}

void CAlarmGroupDialog::accept() {
    if (auto message = rq::validateAlarmGroupForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

CAlarmDataDialog::CAlarmDataDialog(const rq::RtdbSection& project, const rq::RtdbSection* system,
                                   rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), sink_(sink) {
    setWindowTitle(qs(kDataCaption));
    auto* outer = new QVBoxLayout(this);
    auto label = [](const char* text, QWidget* parent, QWidget* buddy = nullptr) {
        auto* l = new QLabel(qs(text), parent);
        if (buddy)
            l->setBuddy(buddy);
        return l;
    };
    auto pickField = [&](const QString& name, QWidget* parent) {
        return new CRtdbPickField(project, system, name, CRtdbPickField::Form::OneText, parent);
    };

    auto* basic = new QGroupBox(qs(kBasicBox), this);
    auto* grid = new QGridLayout(basic);
    data_ =
        new CRtdbPickField(project, system, qs(kRealtimeData), CRtdbPickField::Form::Pair, basic);
    // The database name has a row of its own above the data name and its button;
    // both come from the pick button only.
    data_->layout()->removeWidget(data_->edit());
    data_->edit()->setReadOnly(true);
    data_->dataEdit()->setReadOnly(true);
    data_->edit()->setAccessibleName(accessibleText(qs(kDatabase)));
    data_->dataEdit()->setAccessibleName(accessibleText(qs(kRealtimeData)));
    priority_ = new QLineEdit(basic);
    status_ = pickField(qs(kStatusVar), basic);
    grid->addWidget(label(kDatabase, basic, data_->edit()), 0, 0);
    grid->addWidget(data_->edit(), 0, 1);
    grid->addWidget(label(kRealtimeData, basic, data_->dataEdit()), 1, 0);
    grid->addWidget(data_, 1, 1);
    grid->addWidget(label(kPriority, basic, priority_), 2, 0);
    grid->addWidget(priority_, 2, 1);
    grid->addWidget(label(kStatusVar, basic, status_), 3, 0);
    grid->addWidget(status_, 3, 1);
    grid->setColumnStretch(1, 1);
    outer->addWidget(basic);

    // The condition grids: a header row, then one row per slot.
    auto conditions = [&](const char* title, int first, int last, bool analog) {
        auto* box = new QGroupBox(qs(title), this);
        auto* g = new QGridLayout(box);
        std::vector<const char*> heads{kVariable, kAlarmText};
        if (analog)
            heads.push_back(kLimitedValue);
        heads.push_back(kRestoreText);
        for (std::size_t c = 0; c < heads.size(); ++c) {
            g->addWidget(label(heads[c], box), 0, int(c) + 1, Qt::AlignHCenter);
            g->setColumnStretch(int(c) + 1, 1);
        }
        for (int slot = first; slot <= last; ++slot) {
            const QString rowName = accessibleText(qs(kSlotRows[slot]));
            auto cellName = [&](const char* column) { return rowName + " " + qs(column); };
            Row& r = rows_[static_cast<std::size_t>(slot)];
            r.variable = pickField(cellName(kVariable), box);
            r.text = new QLineEdit(box);
            r.text->setAccessibleName(cellName(kAlarmText));
            if (analog)
                r.limit = pickField(cellName(kLimitedValue), box);
            r.restoreText = new QLineEdit(box);
            r.restoreText->setAccessibleName(cellName(kRestoreText));
            const int gridRow = slot - first + 1;
            int column = 0;
            g->addWidget(label(kSlotRows[slot], box), gridRow, column++);
            g->addWidget(r.variable, gridRow, column++);
            g->addWidget(r.text, gridRow, column++);
            if (analog)
                g->addWidget(r.limit, gridRow, column++);
            g->addWidget(r.restoreText, gridRow, column++);
        }
        outer->addWidget(box);
    };
    conditions(kAnalogBox, rq::kAlarmHigh, rq::kAlarmLowLow, true);
    conditions(kDigitalBox, rq::kAlarmOpen, rq::kAlarmClose, false);
    outer->addWidget(okCancel(this));
    nameFieldsByLabels(this);
    setMinimumWidth(760);
}

void CAlarmDataDialog::setForm(const rq::AlarmDataForm& f) {
    data_->setReference(rq::DataRef{f.dbname, f.dataname});
    priority_->setText(qs(f.priority));
    status_->setText(f.statusVar);
    for (int i = 0; i < rq::kAlarmSlotCount; ++i) {
        const Row& r = rows_[static_cast<std::size_t>(i)];
        const rq::AlarmConditionForm& c = f.conditions[static_cast<std::size_t>(i)];
        r.variable->setText(c.variable);
        r.text->setText(qs(c.text));
        if (r.limit)
            r.limit->setText(c.limit);
        r.restoreText->setText(qs(c.restoreText));
    }
}

rq::AlarmDataForm CAlarmDataDialog::form() const {
    const rq::DataRef ref = data_->reference();
    rq::AlarmDataForm f{ref.dbname, ref.dataname, str(priority_->text()), status_->text(), {}};
    for (int i = 0; i < rq::kAlarmSlotCount; ++i) {
        const Row& r = rows_[static_cast<std::size_t>(i)];
        f.conditions[static_cast<std::size_t>(i)] = {r.variable->text(), str(r.text->text()),
                                                     r.limit ? r.limit->text() : std::string(),
                                                     str(r.restoreText->text())};
    }
    return f;
}

void CAlarmDataDialog::accept() {
    if (auto message = rq::validateAlarmDataForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

bool AlarmQtDialogHost::configDialog(rq::AlarmConfigForm& form) {
    CAlarmConfigDialog d(sink_, parent_);
    return runDialog(d, form);
}

bool AlarmQtDialogHost::groupDialog(rq::AlarmGroupForm& form) {
    CAlarmGroupDialog d(sink_, parent_);
    return runDialog(d, form);
}

bool AlarmQtDialogHost::dataDialog(rq::AlarmDataForm& form) {
    CAlarmDataDialog d(project_, system_, sink_, parent_);
    return runDialog(d, form);
}

std::unique_ptr<rq::SectionEditor> makeAlarmEditor(const EditorEnv& env) {
    return std::make_unique<AlarmQtEditor>(env);
}

} // namespace rqshell

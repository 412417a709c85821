#include "sections/redundancy/ui/RedundancyDialog.h"
#include "shell/QtText.h"

#include "shell/Accessible.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace rqshell {

namespace {

using namespace rq::redundancytext;

// The editor with the Qt dialog it opens.
class RedundancyQtEditor : public rq::RedundancySectionEditor {
public:
    explicit RedundancyQtEditor(const EditorEnv& env)
        : rq::RedundancySectionEditor(env.project.redundancy, host_, env.project.doc.history()),
          host_(env.dialogParent, env.sink) {}

private:
    RedundancyQtDialogHost host_;
};

} // namespace

CRedundancyDialog::CRedundancyDialog(rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), sink_(sink) {
    setWindowTitle(QString::fromUtf8(kCaption));
    auto* outer = new QVBoxLayout(this);
    auto* basic = new QGroupBox(QString::fromUtf8(kBasicBox), this);
    auto* form = new QFormLayout(basic);
    role_ = new QComboBox(basic);
    for (const char* shown : kRoleShown)
        role_->addItem(QString::fromUtf8(shown));
    period_ = new QLineEdit(basic);
    clockSync_ = new QLineEdit(basic);
    form->addRow(QString::fromUtf8(kHmiType), role_);
    form->addRow(QString::fromUtf8(kPeriod), period_);
    form->addRow(QString::fromUtf8(kClockSync), clockSync_);
    outer->addWidget(basic);

    auto* ports = new QFormLayout;
    timeout_ = new QLineEdit(this);
    masterPort_ = new QLineEdit(this);
    slavePort_ = new QLineEdit(this);
    ports->addRow(QString::fromUtf8(kTimeout), timeout_);
    ports->addRow(QString::fromUtf8(kMasterPort), masterPort_);
    ports->addRow(QString::fromUtf8(kSlavePort), slavePort_);
    outer->addLayout(ports);

    auto* links = new QGroupBox(QString::fromUtf8(kLinkBox), this);
    auto* grid = new QGridLayout(links);
    for (int i = 0; i < rq::kShownLinkPairs; ++i) {
        const QString row = QStringLiteral("%1:").arg(i + 1);
        grid->addWidget(new QLabel(row, links), i, 0);
        auto pair = [&](int column, const char* label, QLineEdit*& edit) {
            auto* l = new QLabel(QString::fromUtf8(label), links);
            edit = new QLineEdit(links);
            edit->setMinimumWidth(120);
            // Both rows show the same labels: the row number tells them apart.
            edit->setAccessibleName(row + QLatin1Char(' ') + QString::fromUtf8(label));
            l->setBuddy(edit);
            grid->addWidget(l, i, column);
            grid->addWidget(edit, i, column + 1);
        };
        pair(1, kMasterIp, masterIp_[i]);
        pair(3, kSlaveIp, slaveIp_[i]);
    }
    outer->addWidget(links);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    outer->addWidget(buttons);
    nameFieldsByLabels(this);
}

void CRedundancyDialog::setForm(const rq::RedundancyForm& f) {
    role_->setCurrentIndex(f.role < role_->count() ? f.role : -1);
    period_->setText(qs(f.period));
    clockSync_->setText(qs(f.clockSyncCount));
    timeout_->setText(qs(f.timeout));
    masterPort_->setText(qs(f.masterPort));
    slavePort_->setText(qs(f.slavePort));
    for (int i = 0; i < rq::kShownLinkPairs; ++i) {
        masterIp_[i]->setText(qs(f.masterIp[i]));
        slaveIp_[i]->setText(qs(f.slaveIp[i]));
    }
}

rq::RedundancyForm CRedundancyDialog::form() const {
    rq::RedundancyForm f;
    f.role = role_->currentIndex();
    f.period = str(period_->text());
    f.clockSyncCount = str(clockSync_->text());
    f.timeout = str(timeout_->text());
    f.masterPort = str(masterPort_->text());
    f.slavePort = str(slavePort_->text());
    for (int i = 0; i < rq::kShownLinkPairs; ++i) {
        f.masterIp[i] = str(masterIp_[i]->text());
        f.slaveIp[i] = str(slaveIp_[i]->text());
    }
    return f;
}

void CRedundancyDialog::accept() {
    if (auto message = rq::validateRedundancyForm(form())) {
        sink_.showMessage(*message, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

bool RedundancyQtDialogHost::configDialog(rq::RedundancyForm& form) {
    CRedundancyDialog d(sink_, parent_);
    d.setForm(form);
    if (d.exec() != QDialog::Accepted)
        return false;
    form = d.form();
    return true;
}

std::unique_ptr<rq::SectionEditor> makeRedundancyEditor(const EditorEnv& env) {
    return std::make_unique<RedundancyQtEditor>(env);
}

} // namespace rqshell

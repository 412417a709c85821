#include "shell/ProjectDialogs.h"
#include "shell/Accessible.h"
#include "shell/QtText.h"

#include "RqVersion.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace rqshell {

namespace {} // namespace

CProjectDialog::CProjectDialog(const rq::HmiDeviceCatalog& catalog, rq::ProjectDialogMode mode,
                               QWidget* parent)
    : QDialog(parent) {
    setWindowTitle("Project Property");
    auto* outer = new QVBoxLayout(this);
    heading_ = new QLabel(mode == rq::ProjectDialogMode::Property
                              ? QStringLiteral("Project property")
                              : QStringLiteral("Please Setting Project Property"),
                          this);
    QFont f = heading_->font();
    f.setBold(true);
    heading_->setFont(f);
    outer->addWidget(heading_);
    auto* form = new QFormLayout;
    name_ = new QLineEdit(this);
    description_ = new QLineEdit(this);
    path_ = new QLineEdit(this);
    browse_ = new QPushButton("...", this);
    browse_->setEnabled(mode == rq::ProjectDialogMode::Create);
    auto* pathRow = new QHBoxLayout;
    pathRow->addWidget(path_);
    pathRow->addWidget(browse_);
    hmi_ = new QComboBox(this);
    for (const rq::HmiDeviceType& t : catalog.entries())
        hmi_->addItem(qs(t.display));
    hmi_->setCurrentIndex(-1);
    ip_ = new QLineEdit(this);
    form->addRow("Project Name:", name_);
    form->addRow("Project Description:", description_);
    form->addRow("Project Path:", pathRow);
    form->addRow("HMI Type:", hmi_);
    form->addRow("Default Slave IP Address:", ip_);
    outer->addLayout(form);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    outer->addWidget(buttons);
    connect(browse_, &QPushButton::clicked, this, &CProjectDialog::browse);
    setMinimumWidth(460);
    nameFieldsByLabels(this);
}

void CProjectDialog::setForm(const rq::ProjectForm& f) {
    name_->setText(qs(f.name));
    description_->setText(qs(f.description));
    path_->setText(qs(f.path));
    hmi_->setCurrentIndex(f.hmiDisplay ? hmi_->findText(qs(*f.hmiDisplay)) : -1);
    ip_->setText(qs(f.slaveIp));
}

rq::ProjectForm CProjectDialog::form() const {
    rq::ProjectForm f;
    f.name = str(name_->text());
    f.description = str(description_->text());
    f.path = str(path_->text());
    if (hmi_->currentIndex() >= 0)
        f.hmiDisplay = str(hmi_->currentText());
    f.slaveIp = str(ip_->text());
    return f;
}

void CProjectDialog::browse() {
    QString dir = QFileDialog::getExistingDirectory(this, QString::fromUtf8(rq::kTitleParentFolder),
                                                    path_->text());
    if (dir.isEmpty())
        return;
    if (!dir.endsWith('/'))
        dir += '/';
    path_->setText(dir);
}

void CProjectDialog::accept() {
    if (check_ && !check_(form()))
        return;
    QDialog::accept();
}

COnlineSimulationDialog::COnlineSimulationDialog(QWidget* parent) : QDialog(parent) {
    setWindowTitle("Online Simulation");
    auto* outer = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    ip_ = new QLineEdit(this);
    auto spin = [this](int max) {
        auto* s = new QSpinBox(this);
        s->setRange(0, max);
        return s;
    };
    port_ = spin(65535);
    overtime_ = spin(1000000000);
    period_ = spin(1000000000);
    form->addRow("IP Address:", ip_);
    form->addRow("Communication Port:", port_);
    form->addRow("Overtime(ms):", overtime_);
    form->addRow("Communication Period(ms):", period_);
    outer->addLayout(form);
    auto* buttons = new QHBoxLayout;
    runButton_ = new QPushButton("Run", this);
    runButton_->setDefault(true);
    auto* quit = new QPushButton("Quit", this);
    buttons->addStretch();
    buttons->addWidget(runButton_);
    buttons->addWidget(quit);
    outer->addLayout(buttons);
    connect(quit, &QPushButton::clicked, this, &QDialog::reject);
    connect(runButton_, &QPushButton::clicked, this, [this] {
        if (!run_ || run_(this->form()))
            QDialog::accept();
    });
    setForm(rq::OnlineSimulationForm{});
    setMinimumWidth(340);
    nameFieldsByLabels(this);
}

void COnlineSimulationDialog::setForm(const rq::OnlineSimulationForm& f) {
    ip_->setText(qs(f.ip));
    port_->setValue(f.port);
    overtime_->setValue(f.overtime);
    period_->setValue(f.period);
}

rq::OnlineSimulationForm COnlineSimulationDialog::form() const {
    return rq::OnlineSimulationForm{str(ip_->text()), port_->value(), overtime_->value(),
                                    period_->value()};
}

CAboutDlg::CAboutDlg(QWidget* parent) : QDialog(parent) {
    setWindowTitle("About");
    auto* outer = new QVBoxLayout(this);
    auto* text = new QLabel(QStringLiteral("<b>RQPDev</b> %1<br>"
                                           "Engineering tool of the HMI and soft-controller "
                                           "platform.")
                                .arg(QStringLiteral(RQ_VERSION)),
                            this);
    outer->addWidget(text);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    outer->addWidget(buttons);
}

} // namespace rqshell

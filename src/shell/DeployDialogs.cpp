#include "shell/DeployDialogs.h"
#include "shell/Accessible.h"
#include "shell/QtText.h"

#include "core/FileUtil.h"
#include "core/HmiDeviceCatalog.h"
#include "core/ProjectDocument.h"
#include "deploy/logo/LogoDownloadJob.h"
#include "project/ProjectFlows.h"

#include <QCloseEvent>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace rqshell {

namespace {

QPushButton* button(const QString& text, QWidget* parent) {
    auto* b = new QPushButton(text, parent);
    b->setAccessibleName(text);
    b->setAutoDefault(false);
    return b;
}

QLineEdit* field(const QString& label, QWidget* parent) {
    auto* e = new QLineEdit(parent);
    QString name = label;
    name.remove(':');
    e->setAccessibleName(name.trimmed());
    return e;
}

// A field with a browse button beside it.
QHBoxLayout* withBrowse(QLineEdit* edit, QPushButton* browse) {
    auto* row = new QHBoxLayout;
    row->addWidget(edit, 1);
    row->addWidget(browse);
    browse->setFixedWidth(32);
    return row;
}

QHBoxLayout* buttonRow(std::initializer_list<QPushButton*> buttons) {
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    for (QPushButton* b : buttons)
        row->addWidget(b);
    return row;
}

} // namespace

// ---- JobBridge -------------------------------------------------------------------

template <class F> void JobBridge::post(F f) {
    QMetaObject::invokeMethod(this, std::move(f), Qt::QueuedConnection);
}

void JobBridge::onTransferEvent(const rq::TransferEvent& e) {
    post([this, e] {
        if (eventHandler)
            eventHandler(e);
    });
}

void JobBridge::onStatus(const std::string& text) {
    post([this, text] {
        if (statusHandler)
            statusHandler(text);
    });
}

void JobBridge::onProgress(const rq::TransferProgress& p) {
    post([this, p] {
        if (progressHandler)
            progressHandler(p);
    });
}

void JobBridge::onOutcome(const rq::TransferOutcome& o) {
    post([this, o] {
        if (outcomeHandler)
            outcomeHandler(o);
    });
}

void JobBridge::onCompileEvent(int code, const std::string& text) {
    post([this, code, text] {
        if (compileHandler)
            compileHandler(code, text);
    });
}

// ---- DeployDialog ----------------------------------------------------------------

DeployDialog::DeployDialog(const QString& caption, rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), sink_(sink), bridge_(new JobBridge(this)) {
    setWindowTitle(caption);
    setAccessibleName(caption);
    status_ = new QLabel(this);
    status_->setAccessibleName("status");
    status_->hide();
    progress_ = new QProgressBar(this);
    progress_->setAccessibleName("progress");
    progress_->setRange(0, 100);
    progress_->setValue(0);
    progressText_ = new QLabel(this);
    progressText_->setAccessibleName("transfer figures");
    cancel_ = button("Cancel", this);
    cancel_->setEnabled(false);
    connect(cancel_, &QPushButton::clicked, this, [this] {
        if (job_)
            job_->cancel();
        cancel_->setEnabled(false);
    });
    bridge_->statusHandler = [this](const std::string& t) { setStatus(t); };
    bridge_->progressHandler = [this](const rq::TransferProgress& p) { showProgress(p); };
    bridge_->outcomeHandler = [this](const rq::TransferOutcome& o) { jobFinished(o); };
    bridge_->eventHandler = [this](const rq::TransferEvent& e) {
        // The buttons are off from the start of the job to its outcome, through its
        // scripts (codes 0 and 1). Once the transfers are over, what follows (a
        // script, the flash writing) cannot be stopped half-way.
        if (e.code == 2 || e.code == 5)
            cancel_->setEnabled(false);
    };
    setMinimumWidth(480);
}

DeployDialog::~DeployDialog() {
    if (job_) {
        job_->cancel();
        job_->wait();
    }
}

void DeployDialog::addProgressArea(QBoxLayout* layout) {
    layout->addWidget(status_);
    auto* row = new QHBoxLayout;
    row->addWidget(progress_, 1);
    row->addWidget(cancel_);
    layout->addLayout(row);
    layout->addWidget(progressText_);
}

void DeployDialog::setStatus(const std::string& text) {
    status_->setText(qs(text));
    status_->setVisible(!text.empty());
}

void DeployDialog::setBusy(bool busy) {
    busy_ = busy;
    for (QPushButton* b : jobButtons_)
        b->setEnabled(!busy);
    cancel_->setEnabled(busy && cancellable_);
}

void DeployDialog::showProgress(const rq::TransferProgress& p) {
    progress_->setValue(rq::progressPercent(p));
    progressText_->setText(qs(rq::formatProgress(p)));
}

void DeployDialog::startJob(std::unique_ptr<rq::TransferJob> job, bool cancellable) {
    if (job_)
        job_->wait();
    job_ = std::move(job);
    cancellable_ = cancellable;
    progress_->setValue(0);
    progressText_->clear();
    setBusy(true);
    // A failed check ends here, on this thread; its outcome also reaches the bridge
    // and is ignored there.
    if (auto failed = job_->start()) {
        setBusy(false);
        showOutcome(*failed);
    }
}

void DeployDialog::jobFinished(const rq::TransferOutcome& o) {
    if (o.checkFailed)
        return;
    if (job_)
        job_->wait();
    setBusy(false);
    if (o.cancelled) {
        setStatus("");
        progressText_->setText("Cancelled");
        return;
    }
    showOutcome(o);
}

void DeployDialog::showOutcome(const rq::TransferOutcome& o) {
    if (!o.message.empty())
        sink_.showMessage(o.message, o.icon);
}

void DeployDialog::reject() {
    // While a job runs the dialog stays: its buttons are disabled, "Cancel" stops it.
    if (busy_)
        return;
    QDialog::reject();
}

void DeployDialog::closeEvent(QCloseEvent* event) {
    if (busy_) {
        event->ignore();
        return;
    }
    QDialog::closeEvent(event);
}

// ---- Compile ---------------------------------------------------------------------

CCompileDialog::CCompileDialog(rq::ProjectDocument& document, rq::MessageSink& sink,
                               QWidget* parent)
    : QDialog(parent), document_(document), sink_(sink), bridge_(new JobBridge(this)) {
    setWindowTitle("Compile");
    setAccessibleName("Compile");
    session_ = std::make_unique<rq::CompileSession>(bridge_);
    bridge_->compileHandler = [this](int code, const std::string&) { onCompileEvent(code); };

    auto* outer = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    defines_ = field("Additional Define:", this);
    pcSources_ = field("Additional Source File and Lib(Windows):", this);
    header_ = field("Additional H File:", this);
    hmiSources_ = field("Additional Source File and Lib(HMI):", this);
    auto browseFor = [this](QLineEdit* edit, const QString& name) {
        QPushButton* b = button("...", this);
        b->setAccessibleName(name);
        browse_.push_back(b);
        return withBrowse(edit, b);
    };
    form->addRow("Additional Define:", defines_);
    form->addRow("Additional Source File and Lib(Windows):",
                 browseFor(pcSources_, "Browse Windows sources"));
    form->addRow("Additional H File:", browseFor(header_, "Browse header"));
    form->addRow("Additional Source File and Lib(HMI):",
                 browseFor(hmiSources_, "Browse HMI sources"));
    outer->addLayout(form);
    status_ = new QLabel(this);
    status_->setAccessibleName("status");
    outer->addWidget(status_);
    output_ = new QPlainTextEdit(this);
    output_->setReadOnly(true);
    output_->setAccessibleName("output");
    output_->setMinimumHeight(180);
    outer->addWidget(output_, 1);
    compile_ = button("Compile", this);
    cancel_ = button("Cancel", this);
    outer->addLayout(buttonRow({compile_, cancel_}));

    connect(browse_[0], &QPushButton::clicked, this, [this] { browseSources(pcSources_); });
    connect(browse_[1], &QPushButton::clicked, this, &CCompileDialog::browseHeader);
    connect(browse_[2], &QPushButton::clicked, this, [this] { browseSources(hmiSources_); });
    connect(compile_, &QPushButton::clicked, this, &CCompileDialog::compile);
    connect(cancel_, &QPushButton::clicked, this, &CCompileDialog::reject);

    const rq::ProjectModel& m = document_.model();
    setFields({m.defines, m.libs, m.include, m.libs_linux});
    setMinimumWidth(620);
    nameFieldsByLabels(this);
}

CCompileDialog::~CCompileDialog() {
    // The runner's last reports are posted to the bridge, which goes with this dialog.
    session_.reset();
}

rq::ProjectCompileFields CCompileDialog::fields() const {
    return {str(defines_->text()), str(pcSources_->text()), str(header_->text()),
            str(hmiSources_->text())};
}

void CCompileDialog::setFields(const rq::ProjectCompileFields& f) {
    defines_->setText(qs(f.defines));
    pcSources_->setText(qs(f.pcSources));
    header_->setText(qs(f.header));
    hmiSources_->setText(qs(f.hmiSources));
}

void CCompileDialog::compile() {
    output_->clear();
    if (auto problem = session_->compileProject(document_, fields())) {
        sink_.showMessage(*problem, rq::MessageIcon::Stop);
        return;
    }
    status_->setText(qs(session_->status()));
}

void CCompileDialog::onCompileEvent(int code) {
    switch (code) {
    case 0: // started
        compiling_ = true;
        compile_->setEnabled(false);
        cancel_->setEnabled(false);
        for (QPushButton* b : browse_)
            b->setEnabled(false);
        break;
    case 1: // finished: standard output, then standard error
        compiling_ = false;
        compile_->setEnabled(true);
        cancel_->setEnabled(true);
        for (QPushButton* b : browse_)
            b->setEnabled(true);
        output_->setPlainText(qs(session_->output()));
        status_->setText(qs(session_->status()));
        break;
    default: // output is kept by the session until the finish
        break;
    }
}

void CCompileDialog::reject() {
    // While the toolchain runs the buttons are off; closing the window stops it.
    if (compiling_)
        session_->stop();
    QDialog::reject();
}

void CCompileDialog::browseSources(QLineEdit* edit) {
    const QStringList files =
        QFileDialog::getOpenFileNames(this, QString(), QString(), "(*.c;*.a) (*.c *.a)");
    QString text = edit->text();
    for (const QString& f : files)
        text += '"' + f + "\" ";
    edit->setText(text);
}

void CCompileDialog::browseHeader() {
    const QString file = QFileDialog::getOpenFileName(this, QString(), QString(), "(*.h) (*.h)");
    if (!file.isEmpty())
        header_->setText(file);
}

// ---- Download Project ------------------------------------------------------------

CDownloadDialog::CDownloadDialog(rq::ProjectDocument& document, std::string programDir,
                                 rq::MessageSink& sink, QWidget* parent)
    : DeployDialog("Download Project", sink, parent), document_(document),
      programDir_(std::move(programDir)) {
    auto* outer = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    ip_ = field("Slave IP Address:", this);
    ip_->setText(qs(document_.model().slaveIp));
    form->addRow("Slave IP Address:", ip_);
    outer->addLayout(form);
    create_ = button("create package", this);
    download_ = button("Download", this);
    clock_ = button("Adjust Time", this);
    password_ = button("Project Password...", this);
    quit_ = button("Quit", this);
    auto* row = new QHBoxLayout;
    row->addWidget(create_);
    row->addWidget(password_);
    row->addWidget(clock_);
    row->addStretch(1);
    row->addWidget(download_);
    row->addWidget(quit_);
    addProgressArea(outer);
    outer->addLayout(row);
    for (QPushButton* b : {create_, download_, clock_, password_, quit_})
        addJobButton(b);
    connect(create_, &QPushButton::clicked, this, &CDownloadDialog::createPackage);
    connect(download_, &QPushButton::clicked, this, &CDownloadDialog::startDownload);
    connect(clock_, &QPushButton::clicked, this, &CDownloadDialog::adjustClock);
    connect(password_, &QPushButton::clicked, this, &CDownloadDialog::editPassword);
    connect(quit_, &QPushButton::clicked, this, &CDownloadDialog::reject);
    nameFieldsByLabels(this);
}

void CDownloadDialog::createPackage() {
    // The toolchain script runs to its end: no cancel.
    startJob(std::make_unique<rq::BuildPackageJob>(rq::DeployProject::from(document_.model()),
                                                   programDir_, bridge_),
             false);
}

void CDownloadDialog::startDownload() {
    auto job = std::make_unique<rq::ProjectDownloadJob>(rq::DeployProject::from(document_.model()),
                                                        str(ip_->text()), programDir_, bridge_);
    job->readiness = readiness;
    startJob(std::move(job));
}

void CDownloadDialog::adjustClock() {
    startJob(std::make_unique<rq::ClockJob>(str(ip_->text()), bridge_), false);
}

void CDownloadDialog::editPassword() {
    CPasswordDialog d(document_.model(), sink_, this);
    if (d.exec() == QDialog::Accepted && passwordChanged)
        passwordChanged();
}

// ---- Upload Project --------------------------------------------------------------

CUploadDialog::CUploadDialog(std::string currentProjectDir, std::string defaultIp,
                             std::string programDir, rq::MessageSink& sink, QWidget* parent)
    : DeployDialog("Upload Project", sink, parent), current_(std::move(currentProjectDir)),
      programDir_(std::move(programDir)) {
    auto* outer = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    path_ = field("Project Path:", this);
    browse_ = button("...", this);
    browse_->setAccessibleName("Browse project path");
    ip_ = field("Slave IP Address:", this);
    ip_->setText(qs(defaultIp));
    password_ = field("Password:", this);
    password_->setEchoMode(QLineEdit::Password);
    form->addRow("Project Path:", withBrowse(path_, browse_));
    form->addRow("Slave IP Address:", ip_);
    form->addRow("Password:", password_);
    outer->addLayout(form);
    upload_ = button("Upload", this);
    quit_ = button("Quit", this);
    addProgressArea(outer);
    outer->addLayout(buttonRow({upload_, quit_}));
    for (QPushButton* b : {browse_, upload_, quit_})
        addJobButton(b);
    browseFolder = [this](const std::string& title) -> std::optional<std::string> {
        QString dir = QFileDialog::getExistingDirectory(this, qs(title), path_->text());
        if (dir.isEmpty())
            return std::nullopt;
        return str(dir);
    };
    connect(browse_, &QPushButton::clicked, this, [this] {
        if (auto dir = browseFolder(rq::kTitleParentFolder))
            path_->setText(qs(*dir));
    });
    connect(upload_, &QPushButton::clicked, this, &CUploadDialog::startUpload);
    connect(quit_, &QPushButton::clicked, this, &CUploadDialog::reject);
    nameFieldsByLabels(this);
}

void CUploadDialog::startUpload() {
    target_ = str(path_->text());
    startJob(std::make_unique<rq::UploadJob>(target_, str(ip_->text()), str(password_->text()),
                                             current_, &sink_, programDir_, bridge_));
}

void CUploadDialog::jobFinished(const rq::TransferOutcome& o) {
    if (o.checkFailed)
        return;
    if (job_)
        job_->wait();
    setBusy(false);
    if (o.cancelled) {
        setStatus("");
        return;
    }
    if (o.succeeded && uploaded)
        uploaded(target_);
    showOutcome(o);
}

// ---- Download Package ------------------------------------------------------------

CUpgradeDialog::CUpgradeDialog(std::string defaultIp, rq::MessageSink& sink, QWidget* parent)
    : DeployDialog("Download Package", sink, parent) {
    auto* outer = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    file_ = field("Download File:", this);
    browse_ = button("...", this);
    browse_->setAccessibleName("Browse download file");
    ip_ = field("Slave IP Address:", this);
    ip_->setText(qs(defaultIp));
    form->addRow("Download File:", withBrowse(file_, browse_));
    form->addRow("Slave IP Address:", ip_);
    outer->addLayout(form);
    download_ = button("Download", this);
    quit_ = button("Quit", this);
    addProgressArea(outer);
    outer->addLayout(buttonRow({download_, quit_}));
    for (QPushButton* b : {browse_, download_, quit_})
        addJobButton(b);
    connect(browse_, &QPushButton::clicked, this, [this] {
        QString f = QFileDialog::getOpenFileName(this, QString(), file_->text());
        if (!f.isEmpty())
            file_->setText(f);
    });
    connect(download_, &QPushButton::clicked, this, [this] {
        startJob(std::make_unique<rq::UpgradeDownloadJob>(str(file_->text()), str(ip_->text()),
                                                          bridge_));
    });
    connect(quit_, &QPushButton::clicked, this, &CUpgradeDialog::reject);
    nameFieldsByLabels(this);
}

// ---- Download Startup Image ------------------------------------------------------

CLogoDialog::CLogoDialog(const rq::ProjectModel& model, std::string programDir,
                         rq::MessageSink& sink, QWidget* parent)
    : DeployDialog("Download Startup Image", sink, parent), model_(model),
      programDir_(std::move(programDir)) {
    auto* outer = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    image_ = field("Image File:", this);
    browse_ = button("...", this);
    browse_->setAccessibleName("Browse image file");
    ip_ = field("Slave IP Address:", this);
    ip_->setText(qs(model.slaveIp));
    form->addRow("Image File:", withBrowse(image_, browse_));
    form->addRow("Slave IP Address:", ip_);
    if (model.hmiType) {
        auto* size = new QLabel(QStringLiteral("%1 x %2 pixels, 24-bit bitmap")
                                    .arg(model.hmiType->screenWidth)
                                    .arg(model.hmiType->screenHeight),
                                this);
        size->setAccessibleName("Image size");
        form->addRow("Image Size:", size);
    }
    outer->addLayout(form);
    download_ = button("Download", this);
    quit_ = button("Quit", this);
    addProgressArea(outer);
    outer->addLayout(buttonRow({download_, quit_}));
    for (QPushButton* b : {browse_, download_, quit_})
        addJobButton(b);
    connect(browse_, &QPushButton::clicked, this, [this] {
        QString f =
            QFileDialog::getOpenFileName(this, QString(), image_->text(), "(*.bmp) (*.bmp)");
        if (!f.isEmpty())
            image_->setText(f);
    });
    connect(download_, &QPushButton::clicked, this, [this] {
        const int w = model_.hmiType ? model_.hmiType->screenWidth : 0;
        const int h = model_.hmiType ? model_.hmiType->screenHeight : 0;
        auto job = std::make_unique<rq::LogoDownloadJob>(rq::DeployProject::from(model_), w, h,
                                                         str(ip_->text()), str(image_->text()),
                                                         programDir_, bridge_);
        job->readiness = readiness;
        startJob(std::move(job));
    });
    connect(quit_, &QPushButton::clicked, this, &CLogoDialog::reject);
    nameFieldsByLabels(this);
}

// ---- Running Monitoring ----------------------------------------------------------

CMonitorDialog::CMonitorDialog(std::string defaultIp, std::string programDir, rq::MessageSink& sink,
                               QWidget* parent)
    : QDialog(parent), sink_(sink), monitor_(std::move(programDir)) {
    setWindowTitle("Running Monitoring");
    setAccessibleName("Running Monitoring");
    auto* outer = new QVBoxLayout(this);
    auto figure = [this](QFormLayout* form, const QString& label) {
        QLineEdit* e = field(label, this);
        e->setReadOnly(true);
        form->addRow(label, e);
        return e;
    };
    auto* system = new QGroupBox("System", this);
    auto* systemForm = new QFormLayout(system);
    auto* app = new QGroupBox("Application", this);
    auto* appForm = new QFormLayout(app);
    QLineEdit* total = figure(systemForm, "Total Memory:");
    QLineEdit* used = figure(systemForm, "Memory Usage:");
    QLineEdit* free = figure(systemForm, "Free Memory:");
    QLineEdit* cpu = figure(systemForm, "CPU Utilization :");
    QLineEdit* appMemory = figure(appForm, "Memory Usage:");
    QLineEdit* appRate = figure(appForm, "Memory Usage Rate:");
    appMemory->setAccessibleName("Application Memory Usage");
    figures_ = {total, used, free, appMemory, cpu, appRate};
    auto* groups = new QHBoxLayout;
    groups->addWidget(system);
    groups->addWidget(app);
    outer->addLayout(groups);
    auto* form = new QFormLayout;
    ip_ = field("Slave IP Address:", this);
    ip_->setText(qs(defaultIp));
    form->addRow("Slave IP Address:", ip_);
    outer->addLayout(form);
    monitoring_ = button("Monitoring", this);
    quit_ = button("Quit", this);
    outer->addLayout(buttonRow({monitoring_, quit_}));
    timer_ = new QTimer(this);
    timer_->setInterval(rq::RunningMonitor::kPollIntervalMs);
    connect(timer_, &QTimer::timeout, this, &CMonitorDialog::tick);
    connect(monitoring_, &QPushButton::clicked, this, &CMonitorDialog::startMonitoring);
    connect(quit_, &QPushButton::clicked, this, &CMonitorDialog::quit);
    setMinimumWidth(480);
    nameFieldsByLabels(this);
}

CMonitorDialog::~CMonitorDialog() {
    timer_->stop();
    if (worker_.joinable())
        worker_.join();
    monitor_.quit();
}

void CMonitorDialog::inBackground(std::function<void()> work, std::function<void()> done) {
    if (worker_.joinable())
        worker_.join();
    working_ = true;
    worker_ = std::thread([this, work = std::move(work), done = std::move(done)] {
        work();
        QMetaObject::invokeMethod(
            this,
            [this, done] {
                if (worker_.joinable())
                    worker_.join();
                working_ = false;
                done();
            },
            Qt::QueuedConnection);
    });
}

void CMonitorDialog::startMonitoring() {
    if (working_)
        return;
    monitoring_->setEnabled(false);
    auto outcome = std::make_shared<rq::TransferOutcome>();
    const std::string ip = str(ip_->text());
    inBackground([this, outcome, ip] { *outcome = monitor_.start(ip); },
                 [this, outcome] {
                     if (quitting_)
                         return quit();
                     if (!outcome->succeeded) {
                         monitoring_->setEnabled(true);
                         if (!outcome->message.empty())
                             sink_.showMessage(outcome->message, outcome->icon);
                         return;
                     }
                     timer_->start();
                 });
}

void CMonitorDialog::tick() {
    // A poll that waits on a silent device lets the ticks in between pass.
    if (working_ || !monitor_.monitoring())
        return;
    auto fields = std::make_shared<rq::RunningMonitor::Fields>();
    inBackground([this, fields] { monitor_.poll(*fields); },
                 [this, fields] {
                     if (quitting_)
                         return quit();
                     const std::string* values[] = {&fields->totalMemory, &fields->usedMemory,
                                                    &fields->freeMemory,  &fields->appMemory,
                                                    &fields->cpuUsage,    &fields->appMemoryRate};
                     for (std::size_t i = 0; i < figures_.size(); ++i)
                         figures_[i]->setText(qs(*values[i]));
                 });
}

void CMonitorDialog::quit() {
    timer_->stop();
    if (working_) {
        // The device is being asked: quit when it has answered.
        quitting_ = true;
        monitoring_->setEnabled(false);
        quit_->setEnabled(false);
        return;
    }
    monitor_.quit();
    QDialog::reject();
}

void CMonitorDialog::reject() {
    quit();
}

// ---- Setting Project Password ----------------------------------------------------

CPasswordDialog::CPasswordDialog(rq::ProjectModel& model, rq::MessageSink& sink, QWidget* parent)
    : QDialog(parent), model_(model), sink_(sink) {
    setWindowTitle("Setting Project Password");
    setAccessibleName("Setting Project Password");
    auto* outer = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    first_ = field("Download Password:", this);
    second_ = field("Input Password Again:", this);
    first_->setEchoMode(QLineEdit::Password);
    second_->setEchoMode(QLineEdit::Password);
    first_->setText(qs(model.downloadPassword));
    second_->setText(qs(model.downloadPassword));
    form->addRow("Download Password:", first_);
    form->addRow("Input Password Again:", second_);
    outer->addLayout(form);
    QPushButton* ok = button("OK", this);
    QPushButton* cancel = button("Cancel", this);
    ok->setDefault(true);
    outer->addLayout(buttonRow({ok, cancel}));
    connect(ok, &QPushButton::clicked, this, &CPasswordDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &CPasswordDialog::reject);
    setMinimumWidth(360);
    nameFieldsByLabels(this);
}

void CPasswordDialog::accept() {
    if (auto problem =
            rq::applyDownloadPassword(model_, str(first_->text()), str(second_->text()))) {
        sink_.showMessage(*problem, rq::MessageIcon::Stop);
        return;
    }
    QDialog::accept();
}

} // namespace rqshell

#pragma once
// The build and deployment dialogs of the Tool menu: "Compile", "Download Project",
// "Upload Project", "Download Package", "Download Startup Image", "Running
// Monitoring", and "Setting Project Password". They collect fields and show what
// the toolkit-free jobs report; every transfer runs on the job's worker thread,
// whose reports reach the dialog as queued calls, so the dialog stays responsive.
// Messages go through the message sink (tests pass a recorder).

#include "core/MessageSink.h"
#include "deploy/compile/CompileSession.h"
#include "deploy/transfer/DeployJobs.h"

#include <QDialog>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

class QBoxLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QTimer;

namespace rq {
class ProjectDocument;
}

namespace rqshell {

// Carries a job's reports from its worker thread to the thread of this object.
class JobBridge : public QObject, public rq::TransferListener, public rq::CompileSession::Listener {
    Q_OBJECT
public:
    explicit JobBridge(QObject* parent) : QObject(parent) {}

    std::function<void(const rq::TransferEvent&)> eventHandler;
    std::function<void(const std::string&)> statusHandler;
    std::function<void(const rq::TransferProgress&)> progressHandler;
    std::function<void(const rq::TransferOutcome&)> outcomeHandler;
    std::function<void(int, const std::string&)> compileHandler;

    void onTransferEvent(const rq::TransferEvent& e) override;
    void onStatus(const std::string& text) override;
    void onProgress(const rq::TransferProgress& p) override;
    void onOutcome(const rq::TransferOutcome& o) override;
    void onCompileEvent(int code, const std::string& text) override;

private:
    template <class F> void post(F f);
};

// What the deployment dialogs share: the status line, the progress bar with its
// figures, the "Cancel" button that stops a transfer, and the one job at a time.
class DeployDialog : public QDialog {
    Q_OBJECT
public:
    DeployDialog(const QString& caption, rq::MessageSink& sink, QWidget* parent);
    ~DeployDialog() override;

    bool busy() const { return busy_; }
    QLabel* statusLine() const { return status_; }
    QProgressBar* progressBar() const { return progress_; }
    QLabel* progressText() const { return progressText_; }
    QPushButton* cancelButton() const { return cancel_; }

protected:
    // Starts `job` with the buttons disabled; a failed check shows its message.
    // "Cancel" is offered while a cancellable job's transfers run.
    void startJob(std::unique_ptr<rq::TransferJob> job, bool cancellable = true);
    // The job has ended: the buttons come back and its message is shown.
    virtual void jobFinished(const rq::TransferOutcome& outcome);
    // The buttons disabled while a job runs.
    void addJobButton(QPushButton* b) { jobButtons_.push_back(b); }
    void setBusy(bool busy);
    void setStatus(const std::string& text);
    // Lays the status line, progress and cancel below the fields.
    void addProgressArea(QBoxLayout* layout);
    void showOutcome(const rq::TransferOutcome& o);
    void reject() override;
    void closeEvent(QCloseEvent* event) override;

    rq::MessageSink& sink_;
    JobBridge* bridge_;
    std::unique_ptr<rq::TransferJob> job_;

private:
    void showProgress(const rq::TransferProgress& p);

    QLabel* status_;
    QProgressBar* progress_;
    QLabel* progressText_;
    QPushButton* cancel_;
    std::vector<QPushButton*> jobButtons_; // children of the dialog
    bool busy_ = false;
    bool cancellable_ = true;
};

// "Compile" (F9): the project's compile fields, the toolchain's output and result.
class CCompileDialog : public QDialog {
    Q_OBJECT
public:
    CCompileDialog(rq::ProjectDocument& document, rq::MessageSink& sink, QWidget* parent = nullptr);
    ~CCompileDialog() override;

    rq::ProjectCompileFields fields() const;
    void setFields(const rq::ProjectCompileFields& f);
    QPushButton* compileButton() const { return compile_; }
    QPushButton* cancelButton() const { return cancel_; }
    QPlainTextEdit* outputBox() const { return output_; }
    QLabel* statusLine() const { return status_; }
    bool compiling() const { return compiling_; }

protected:
    void reject() override;

private:
    void compile();
    void onCompileEvent(int code);
    void browseSources(QLineEdit* field);
    void browseHeader();

    rq::ProjectDocument& document_;
    rq::MessageSink& sink_;
    JobBridge* bridge_;
    std::unique_ptr<rq::CompileSession> session_;
    QLineEdit *defines_, *pcSources_, *header_, *hmiSources_;
    QPushButton *compile_, *cancel_;
    std::vector<QPushButton*> browse_;
    QPlainTextEdit* output_;
    QLabel* status_;
    bool compiling_ = false;
};

// "Download Project" (F10): "create package", the download, and the device clock
// and the project password, which belong to the same device and package.
class CDownloadDialog : public DeployDialog {
    Q_OBJECT
public:
    CDownloadDialog(rq::ProjectDocument& document, std::string programDir, rq::MessageSink& sink,
                    QWidget* parent = nullptr);

    QLineEdit* ipField() const { return ip_; }
    QPushButton* createPackageButton() const { return create_; }
    QPushButton* downloadButton() const { return download_; }
    QPushButton* clockButton() const { return clock_; }
    QPushButton* passwordButton() const { return password_; }
    QPushButton* quitButton() const { return quit_; }
    // The download's readiness waits (tests shorten them).
    rq::ReadinessWait readiness;
    // Called after the password was changed (the window marks the project modified).
    std::function<void()> passwordChanged;

private:
    void createPackage();
    void startDownload();
    void adjustClock();
    void editPassword();

    rq::ProjectDocument& document_;
    std::string programDir_;
    QLineEdit* ip_;
    QPushButton *create_, *download_, *clock_, *password_, *quit_;
};

// "Upload Project": target folder, address and package password; on success the
// window closes its project and opens the uploaded one.
class CUploadDialog : public DeployDialog {
    Q_OBJECT
public:
    CUploadDialog(std::string currentProjectDir, std::string defaultIp, std::string programDir,
                  rq::MessageSink& sink, QWidget* parent = nullptr);

    QLineEdit* pathField() const { return path_; }
    QLineEdit* ipField() const { return ip_; }
    QLineEdit* passwordField() const { return password_; }
    QPushButton* uploadButton() const { return upload_; }
    QPushButton* quitButton() const { return quit_; }
    // Runs after a successful upload, before "Upload successfully!" is shown.
    std::function<void(const std::string& target)> uploaded;
    // The folder browser (tests replace it).
    std::function<std::optional<std::string>(const std::string& title)> browseFolder;

protected:
    void jobFinished(const rq::TransferOutcome& outcome) override;

private:
    void startUpload();

    std::string current_, programDir_, target_;
    QLineEdit *path_, *ip_, *password_;
    QPushButton *browse_, *upload_, *quit_;
};

// "Download Package": an upgrade package to the device.
class CUpgradeDialog : public DeployDialog {
    Q_OBJECT
public:
    CUpgradeDialog(std::string defaultIp, rq::MessageSink& sink, QWidget* parent = nullptr);
    QLineEdit* fileField() const { return file_; }
    QLineEdit* ipField() const { return ip_; }
    QPushButton* downloadButton() const { return download_; }
    QPushButton* quitButton() const { return quit_; }

private:
    QLineEdit *file_, *ip_;
    QPushButton *browse_, *download_, *quit_;
};

// "Download Startup Image": a 24-bit bitmap of the HMI type's screen size.
class CLogoDialog : public DeployDialog {
    Q_OBJECT
public:
    CLogoDialog(const rq::ProjectModel& model, std::string programDir, rq::MessageSink& sink,
                QWidget* parent = nullptr);
    QLineEdit* imageField() const { return image_; }
    QLineEdit* ipField() const { return ip_; }
    QPushButton* downloadButton() const { return download_; }
    QPushButton* quitButton() const { return quit_; }
    rq::ReadinessWait readiness{31, 1000, 1000};

private:
    const rq::ProjectModel& model_;
    std::string programDir_;
    QLineEdit *image_, *ip_;
    QPushButton *browse_, *download_, *quit_;
};

// "Running Monitoring": starts the device's monitor service, then shows its figures
// every 2000 ms. The device is asked on a worker thread.
class CMonitorDialog : public QDialog {
    Q_OBJECT
public:
    CMonitorDialog(std::string defaultIp, std::string programDir, rq::MessageSink& sink,
                   QWidget* parent = nullptr);
    ~CMonitorDialog() override;

    QLineEdit* ipField() const { return ip_; }
    QPushButton* monitoringButton() const { return monitoring_; }
    QPushButton* quitButton() const { return quit_; }
    QTimer* timer() const { return timer_; }
    // The six figures in the order of RunningMonitor::Fields.
    std::vector<QLineEdit*> figureFields() const { return figures_; }
    bool pollUnderWay() const { return working_; }

protected:
    void reject() override;

private:
    void startMonitoring();
    void tick();
    void quit();
    // Runs `work` on the worker, then `done` here.
    void inBackground(std::function<void()> work, std::function<void()> done);

    rq::MessageSink& sink_;
    rq::RunningMonitor monitor_;
    std::thread worker_;
    bool working_ = false;
    bool quitting_ = false;
    QLineEdit* ip_;
    std::vector<QLineEdit*> figures_;
    QPushButton *monitoring_, *quit_;
    QTimer* timer_;
};

// "Setting Project Password": two entries that must be equal.
class CPasswordDialog : public QDialog {
    Q_OBJECT
public:
    CPasswordDialog(rq::ProjectModel& model, rq::MessageSink& sink, QWidget* parent = nullptr);
    QLineEdit* firstField() const { return first_; }
    QLineEdit* secondField() const { return second_; }
    void accept() override;

private:
    rq::ProjectModel& model_;
    rq::MessageSink& sink_;
    QLineEdit *first_, *second_;
};

} // namespace rqshell

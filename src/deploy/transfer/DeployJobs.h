#pragma once
// The deployment operations of the download, upgrade and upload dialogs as
// headless jobs (see TransferJob.h), and the short operations of the clock,
// monitor and password dialogs.
//
// Remote files all go to the device's /tmp; the device acts on what arrives there:
// killprog.rqp stops its runtime, rqupdate.rqp installs a project or an upgrade,
// rqmon.rqp starts its monitor service.

#include "deploy/protocol/DeviceProtocol.h"
#include "deploy/transfer/TransferJob.h"

#include <string>

namespace rq {

struct ProjectModel;

// What the operations take from the open project.
struct DeployProject {
    std::string directory;   // empty: the project has no directory yet
    std::string hmiTypeName; // empty: no HMI type chosen
    std::string password;    // the download password (UTF-8); empty: none
    std::string slaveIp;
    static DeployProject from(const ProjectModel& model);
};

// Download dialog, "create package": download.sh, then wrapping
// download/rqupdate.tar.gz into download/rqupdate.rqp (mode 2 with the password,
// else mode 1).
class BuildPackageJob : public TransferJob {
public:
    BuildPackageJob(DeployProject project, std::string programDir, TransferListener* listener);

protected:
    std::optional<TransferOutcome> check() override;
    TransferOutcome work() override;

private:
    DeployProject project_;
    std::string programDir_;
};

// Download dialog, "download": type check, killprog.rqp, readiness wait, the
// automatic upgrade, then the project package with the password as extra text.
class ProjectDownloadJob : public TransferJob {
public:
    ProjectDownloadJob(DeployProject project, std::string ip, std::string programDir,
                       TransferListener* listener);
    ReadinessWait readiness; // 21 polls, 1000 ms apart

protected:
    std::optional<TransferOutcome> check() override;
    TransferOutcome work() override;

private:
    int transfer();
    DeployProject project_;
    std::string ip_, programDir_;
};

// The upgrade dialog: one package to /tmp/rqupdate.rqp.
class UpgradeDownloadJob : public TransferJob {
public:
    UpgradeDownloadJob(std::string file, std::string ip, TransferListener* listener);

protected:
    std::optional<TransferOutcome> check() override;
    TransferOutcome work() override;

private:
    std::string file_, ip_;
};

// The upload dialog: the device's package and parameter file into TARGET/upload,
// unwrapped with the typed password and unpacked into TARGET by upload.sh. On
// success the caller closes its project and opens the one in TARGET.
class UploadJob : public TransferJob {
public:
    // `currentProjectDir` and `sink` serve the overwrite question; without a sink
    // the question is answered No.
    UploadJob(std::string targetDir, std::string ip, std::string password,
              std::string currentProjectDir, MessageSink* sink, std::string programDir,
              TransferListener* listener);

protected:
    std::optional<TransferOutcome> check() override;
    TransferOutcome work() override;

private:
    std::string target_, ip_, password_, current_, programDir_;
    MessageSink* sink_;
};

// The clock button: runs on the calling thread. Result 3 shows nothing.
TransferOutcome adjustDeviceClock(const std::string& ip);

// The same on a worker thread, so that a silent device does not hold the dialog.
class ClockJob : public TransferJob {
public:
    ClockJob(std::string ip, TransferListener* listener);

protected:
    std::optional<TransferOutcome> check() override;
    TransferOutcome work() override;

private:
    std::string ip_;
};

// The running monitor dialog: rqmon.rqp, then a poll every 2000 ms.
class RunningMonitor {
public:
    static constexpr int kPollIntervalMs = 2000;
    struct Fields {
        std::string totalMemory, usedMemory, freeMemory, appMemory, cpuUsage, appMemoryRate;
        bool operator==(const Fields&) const = default;
    };

    explicit RunningMonitor(std::string programDir);
    ~RunningMonitor();
    // "Monitoring": puts rqmon.rqp; on success monitoring is on.
    TransferOutcome start(const std::string& ip);
    bool monitoring() const { return monitoring_; }
    // One tick: true with the six fields filled, or false with all six cleared.
    bool poll(Fields& fields);
    // The TransferResult of the last poll.
    int lastPollResult() const { return lastPoll_; }
    // "Quit".
    void quit();

private:
    std::string programDir_, ip_;
    MonitorSocket socket_ = 0;
    bool monitoring_ = false;
    int lastPoll_ = kTransferOk;
};

// The password dialog's OK: the message when the entries differ, else nothing
// after setting the password and marking the project modified.
std::optional<std::string> applyDownloadPassword(ProjectModel& model, const std::string& first,
                                                 const std::string& second);

} // namespace rq

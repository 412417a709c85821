#include "deploy/transfer/DeployJobs.h"

#include "core/FileUtil.h"
#include "core/HmiDeviceCatalog.h"
#include "core/ProjectModel.h"
#include "core/TextEncoding.h"
#include "deploy/cipher/PackageCipher.h"
#include "deploy/process/ProcessRunner.h"
#include "deploy/transfer/UpgradePackages.h"

#include <cstdio>
#include <filesystem>

namespace fs = std::filesystem;

namespace rq {

namespace {

constexpr uint8_t kPutFlag = 2;
constexpr const char* kRemoteDir = "/tmp";

TransferOutcome finished(int result, bool ok, const std::string& message, MessageIcon icon) {
    TransferOutcome o;
    o.result = result;
    o.succeeded = ok;
    o.message = message;
    o.icon = icon;
    return o;
}

// The message of a transfer result from a table of four or five texts; index 0 is
// the success text.
TransferOutcome resultOutcome(int result, const char* const* texts, int count,
                              MessageIcon successIcon = MessageIcon::Information) {
    if (result < 0 || result >= count)
        return finished(result, false, {}, MessageIcon::Stop);
    TransferOutcome o =
        finished(result, result == 0, texts[result], result == 0 ? successIcon : MessageIcon::Stop);
    // The transfer ran on this thread just before: what it knows beyond the code.
    if (result != kTransferOk)
        o.detail = transferFailureText(lastTransferFailure());
    return o;
}

std::optional<std::string> devicePassword(const std::string& password) {
    if (password.empty())
        return std::nullopt;
    return toDeviceBytes(password);
}

void removeQuietly(const std::string& path) {
    std::error_code ec;
    fs::remove(path, ec);
}

} // namespace

DeployProject DeployProject::from(const ProjectModel& model) {
    DeployProject p;
    p.directory = model.projectDirectory;
    p.hmiTypeName = model.hmiType ? model.hmiType->name : std::string();
    p.password = model.downloadPassword;
    p.slaveIp = model.slaveIp;
    return p;
}

// ---- build the download package ------------------------------------------------

BuildPackageJob::BuildPackageJob(DeployProject project, std::string programDir,
                                 TransferListener* listener)
    : TransferJob(listener), project_(std::move(project)), programDir_(std::move(programDir)) {}

std::optional<TransferOutcome> BuildPackageJob::check() {
    if (project_.directory.empty())
        return checkFailure(kMsgNoProjectDirectory, MessageIcon::Stop);
    if (!fileExists(joinPath(project_.directory, "libhmiuserfun.so")))
        return checkFailure("Please compiling project before creat download package!",
                            MessageIcon::Stop);
    return std::nullopt;
}

TransferOutcome BuildPackageJob::work() {
    const std::string download = joinPath(project_.directory, "download");
    const std::string archive = joinPath(download, "rqupdate.tar.gz");
    const std::string package = joinPath(download, "rqupdate.rqp");
    const TransferOutcome failed =
        finished(-1, false, "Fail to creat download package!", MessageIcon::Stop);
    // A leftover archive must not be wrapped in place of a new one.
    removeQuietly(archive);
    runScript("./download.sh " + shellQuote(project_.directory), programDir_);
    if (!fileExists(archive))
        return failed;
    const int mode = project_.password.empty() ? 1 : 2;
    const std::string part = package + ".part";
    if (EncryptPackage(archive, part, mode, devicePassword(project_.password)) != 1) {
        removeQuietly(part);
        return failed;
    }
    std::error_code ec;
    fs::rename(part, package, ec);
    if (ec) {
        removeQuietly(part);
        return failed;
    }
    removeQuietly(archive);
    return finished(-1, true, "Create download package successfully!", MessageIcon::Information);
}

// ---- project download ----------------------------------------------------------

ProjectDownloadJob::ProjectDownloadJob(DeployProject project, std::string ip,
                                       std::string programDir, TransferListener* listener)
    : TransferJob(listener), project_(std::move(project)), ip_(std::move(ip)),
      programDir_(std::move(programDir)) {}

std::optional<TransferOutcome> ProjectDownloadJob::check() {
    if (project_.directory.empty())
        return checkFailure(kMsgNoProjectDirectory, MessageIcon::Stop);
    if (ip_.empty())
        return checkFailure(kMsgNoIp, MessageIcon::Stop);
    if (!fileExists(joinPath(joinPath(project_.directory, "download"), "rqupdate.rqp")))
        return checkFailure("download package does not exist, please create download package!",
                            MessageIcon::Information);
    if (project_.hmiTypeName.empty())
        return checkFailure("Please HMI type!", MessageIcon::Stop);
    return checkDeviceAddress(ip_);
}

int ProjectDownloadJob::transfer() {
    char type[128] = {};
    if (int r = QueryDeviceType(ip_, type, sizeof type); r != kTransferOk)
        return r;
    type[sizeof type - 1] = '\0';
    if (std::string(type) != toDeviceBytes(project_.hmiTypeName))
        return kTypeMismatch;

    if (int r = PutFile(joinPath(programDir_, "killprog.rqp"), "killprog.rqp", kRemoteDir, ip_,
                        kPutFlag, "", track("killprog.rqp"));
        r != kTransferOk)
        return r;
    if (waitUntilReady(ip_, readiness) != kTransferOk)
        return kCommError;

    const std::string download = joinPath(project_.directory, "download");
    if (auto upgrade = newestUpgradePackage(programDir_)) {
        const std::string versionFile = joinPath(download, "version");
        int r = GetFile("/home/app/version", versionFile, ip_, track("version"));
        if (r == kCannotConnect || r == kLocalFileError)
            return r;
        if (r == kCommError || !deviceUpToDate(versionFile, upgrade->date)) {
            if (int p = PutFile(upgrade->path, "rqupdate.rqp", kRemoteDir, ip_, kPutFlag, "",
                                track(fs::path(upgrade->path).filename().string()));
                p != kTransferOk)
                return p;
            if (waitUntilReady(ip_, readiness) != kTransferOk)
                return kCommError;
        }
    }
    // PutFile puts the extra text on the wire in the device code page.
    return PutFile(joinPath(download, "rqupdate.rqp"), "rqupdate.rqp", kRemoteDir, ip_, kPutFlag,
                   project_.password, track("rqupdate.rqp"));
}

TransferOutcome ProjectDownloadJob::work() {
    static const char* const kTexts[] = {
        "Project download successfully!",
        "Project download fail,can not connect slave!",
        "Project download fail, communicating with slave error!",
        "Project download fail, can not open file or other error!",
        "HMI type is not match, please select other type!",
    };
    status("Downloading, please waiting...");
    const int r = transfer();
    event(2, r);
    status("");
    return resultOutcome(r, kTexts, 5);
}

// ---- upgrade package -----------------------------------------------------------

UpgradeDownloadJob::UpgradeDownloadJob(std::string file, std::string ip, TransferListener* listener)
    : TransferJob(listener), file_(std::move(file)), ip_(std::move(ip)) {}

std::optional<TransferOutcome> UpgradeDownloadJob::check() {
    if (ip_.empty())
        return checkFailure(kMsgNoIp, MessageIcon::Stop);
    if (file_.empty())
        return checkFailure("Please choose download file!", MessageIcon::Stop);
    if (!fileExists(file_))
        return checkFailure("Download file does not exist, please choose download file!",
                            MessageIcon::Stop);
    return checkDeviceAddress(ip_);
}

static const char* const kUpgradeTexts[] = {
    "Upgrade package download successfully! ",
    "Upgrade package download fail, can not connect slave!",
    "Upgrade package download fail, communicating with slave error!",
    "Upgrade package download fail, can not open file or other error!",
};

TransferOutcome UpgradeDownloadJob::work() {
    status("Downloading, please waiting...");
    const int r = PutFile(file_, "rqupdate.rqp", kRemoteDir, ip_, kPutFlag, "",
                          track(fs::path(file_).filename().string()));
    event(2, r);
    status("");
    return resultOutcome(r, kUpgradeTexts, 4);
}

// ---- upload --------------------------------------------------------------------

UploadJob::UploadJob(std::string targetDir, std::string ip, std::string password,
                     std::string currentProjectDir, MessageSink* sink, std::string programDir,
                     TransferListener* listener)
    : TransferJob(listener), target_(std::move(targetDir)), ip_(std::move(ip)),
      password_(std::move(password)), current_(std::move(currentProjectDir)),
      programDir_(std::move(programDir)), sink_(sink) {}

std::optional<TransferOutcome> UploadJob::check() {
    if (target_.empty())
        return checkFailure("Please choose the path of uploading project!", MessageIcon::Stop);
    if (!current_.empty() && target_ == current_) {
        bool yes = sink_ && sink_->askYesNo("Are you sure to overwrite with current project? ",
                                            MessageIcon::Stop, true);
        if (!yes)
            return checkFailure({}, MessageIcon::None);
    }
    if (ip_.empty())
        return checkFailure(kMsgNoIp, MessageIcon::Stop);
    return checkDeviceAddress(ip_);
}

TransferOutcome UploadJob::work() {
    static const char* const kTexts[] = {
        "Upload successfully!",
        "Upload fail, can not connect slave HMI!",
        "Upload fail, communication error!",
        "Upload fail, can not open file or other error!",
    };
    status("Upload project, please wait!");
    const std::string upload = joinPath(target_, "upload");
    const bool madeUpload = makeDirectory(upload);
    const std::string package = joinPath(upload, "rqupdate.rqp");
    int r = GetFile("/home/app/rqupdate.rqp", package, ip_, track("rqupdate.rqp"));
    if (r == kTransferOk)
        r = GetFile("/home/app/datafile/rtdbparams.bin", joinPath(upload, "rtdbparams.bin"), ip_,
                    track("rtdbparams.bin"));
    if (cancelRequested()) {
        // The target is left as it was: a folder made here goes with what it got.
        if (madeUpload) {
            std::error_code ec;
            fs::remove_all(upload, ec);
        }
        status("");
        return cancelledOutcome();
    }
    event(2, r);
    if (r != kTransferOk) {
        status("");
        return resultOutcome(r, kTexts, 4);
    }

    const std::string archive = joinPath(upload, "rqupdate.tar.gz");
    bool unwrapped = DecryptPackage(package, archive, devicePassword(password_)) == 1;
    if (unwrapped) {
        unsigned char signature[2] = {};
        std::FILE* f = std::fopen(archive.c_str(), "rb");
        unwrapped = f && std::fread(signature, 1, 2, f) == 2 && signature[0] == 0x1F &&
                    signature[1] == 0x8B;
        if (f)
            std::fclose(f);
    }
    if (!unwrapped) {
        removeQuietly(package);
        removeQuietly(archive);
        status("");
        return finished(kTransferOk, false, "Project file decompress fail!",
                        MessageIcon::Information);
    }
    // An archive that upload.sh refuses (or a script that cannot run) unpacks
    // nothing: the project in TARGET is not opened as if it had arrived.
    int scriptStatus = -1;
    const bool ran = runScript("./upload.sh " + shellQuote(target_), programDir_, &scriptStatus);
    status("");
    if (!ran || scriptStatus != 0) {
        TransferOutcome o =
            finished(kTransferOk, false, "Project file decompress fail!", MessageIcon::Information);
        o.detail =
            ran ? "upload.sh refused the archive (exit status " + std::to_string(scriptStatus) + ")"
                : "upload.sh could not be started";
        return o;
    }
    return finished(kTransferOk, true, kTexts[0], MessageIcon::Information);
}

// ---- clock, monitor, password --------------------------------------------------

TransferOutcome adjustDeviceClock(const std::string& ip) {
    if (ip.empty()) {
        TransferOutcome o;
        o.message = kMsgNoIp;
        o.icon = MessageIcon::Stop;
        o.checkFailed = true;
        return o;
    }
    if (auto failed = checkDeviceAddress(ip))
        return *failed;
    const int r = SetDeviceClock(ip);
    switch (r) {
    case kTransferOk:
        return finished(r, true, "Adjust time successfully!", MessageIcon::Information);
    case kCannotConnect:
        return finished(r, false, "Adjust time fail, can not connect slave!",
                        MessageIcon::Information);
    case kCommError:
        return finished(r, false, "Adjust time fail, communication error!",
                        MessageIcon::Information);
    default:
        return finished(r, false, {}, MessageIcon::None);
    }
}

ClockJob::ClockJob(std::string ip, TransferListener* listener)
    : TransferJob(listener), ip_(std::move(ip)) {}

std::optional<TransferOutcome> ClockJob::check() {
    if (ip_.empty())
        return checkFailure(kMsgNoIp, MessageIcon::Stop);
    return checkDeviceAddress(ip_);
}

TransferOutcome ClockJob::work() {
    return adjustDeviceClock(ip_);
}

RunningMonitor::RunningMonitor(std::string programDir) : programDir_(std::move(programDir)) {}

RunningMonitor::~RunningMonitor() {
    quit();
}

TransferOutcome RunningMonitor::start(const std::string& ip) {
    if (auto failed = checkDeviceAddress(ip))
        return *failed;
    ip_ = ip;
    const int r =
        PutFile(joinPath(programDir_, "rqmon.rqp"), "rqmon.rqp", kRemoteDir, ip, kPutFlag, "");
    if (r != kTransferOk)
        return resultOutcome(r, kUpgradeTexts, 4);
    monitoring_ = true;
    return finished(r, true, {}, MessageIcon::None);
}

bool RunningMonitor::poll(Fields& fields) {
    DeviceStatus s{};
    lastPoll_ = PollDeviceStatus(ip_, socket_, s);
    if (lastPoll_ != kTransferOk) {
        fields = Fields{};
        return false;
    }
    fields.totalMemory = FormatMemory(s.totalMemory);
    fields.usedMemory = FormatMemory(s.usedMemory);
    fields.freeMemory = FormatMemory(s.freeMemory);
    fields.appMemory = FormatMemory(s.appMemory);
    fields.cpuUsage = FormatRate(s.cpuUsage);
    fields.appMemoryRate = FormatRate(s.appMemoryRate);
    return true;
}

void RunningMonitor::quit() {
    EndDeviceMonitor(socket_);
    monitoring_ = false;
}

std::optional<std::string> applyDownloadPassword(ProjectModel& model, const std::string& first,
                                                 const std::string& second) {
    if (first != second)
        return std::string("input password error, please input again!");
    model.downloadPassword = first;
    model.modified = true;
    return std::nullopt;
}

} // namespace rq

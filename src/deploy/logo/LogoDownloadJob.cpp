#include "deploy/logo/LogoDownloadJob.h"

#include "core/FileUtil.h"
#include "deploy/logo/ConvertBitmap.h"
#include "deploy/process/ProcessRunner.h"

#include <filesystem>
#include <unistd.h>

namespace fs = std::filesystem;

namespace rq {

namespace {

void removeQuietly(const std::string& path) {
    std::error_code ec;
    fs::remove(path, ec);
}

TransferOutcome stopped(const std::string& message) {
    TransferOutcome o;
    o.message = message;
    o.icon = MessageIcon::Stop;
    return o;
}

} // namespace

std::optional<std::string> checkCompressedImage(const std::string& path) {
    std::error_code ec;
    if (!fs::is_regular_file(path, ec))
        return std::string("Compressed image fail!");
    const std::uintmax_t size = fs::file_size(path, ec);
    if (ec)
        return std::string("Compressed image fail!");
    if (size > kMaxCompressedImage) {
        removeQuietly(path);
        return std::string(
            "Compressed image file is too big(more than 1.5M),Please choose image file again!");
    }
    return std::nullopt;
}

std::string gzipCommandLine(const std::string& programDir, const std::string& file) {
    const bool own = ::access(joinPath(programDir, "gzip").c_str(), X_OK) == 0;
    return std::string(own ? "./gzip " : "gzip ") + shellQuote(file);
}

LogoDownloadJob::LogoDownloadJob(DeployProject project, int screenWidth, int screenHeight,
                                 std::string ip, std::string image, std::string programDir,
                                 TransferListener* listener)
    : TransferJob(listener), project_(std::move(project)), width_(screenWidth),
      height_(screenHeight), ip_(std::move(ip)), image_(std::move(image)),
      programDir_(std::move(programDir)) {}

std::optional<TransferOutcome> LogoDownloadJob::check() {
    if (project_.directory.empty())
        return checkFailure(kMsgNoProjectDirectory, MessageIcon::Stop);
    if (project_.hmiTypeName.empty())
        return checkFailure("Please choose the HMI type of project!", MessageIcon::Stop);
    if (ip_.empty())
        return checkFailure(kMsgNoIp, MessageIcon::Stop);
    if (image_.empty())
        return checkFailure("Please choose image file!", MessageIcon::Stop);
    if (auto failed = checkDeviceAddress(ip_))
        return failed;
    const std::string logo = joinPath(project_.directory, "logo");
    makeDirectory(logo);
    std::string message;
    if (ConvertBitmap(image_, joinPath(logo, "logo"), message, width_, height_) != 1)
        return checkFailure(message, MessageIcon::None);
    return std::nullopt;
}

TransferOutcome LogoDownloadJob::work() {
    const std::string logo = joinPath(project_.directory, "logo");
    const std::string compressed = joinPath(logo, "logo.gz");
    const std::string package = joinPath(logo, "rqupdate.rqp");

    // Stage 0: gzip. A logo.gz left from an earlier run would make gzip refuse.
    status("start window downloading, please waiting...");
    removeQuietly(compressed);
    runScript(gzipCommandLine(programDir_, joinPath(logo, "logo")), programDir_);
    if (auto problem = checkCompressedImage(compressed)) {
        status("");
        return stopped(*problem);
    }
    // Stage 1: downloadlogo.sh.
    removeQuietly(package);
    runScript("./downloadlogo.sh " + shellQuote(logo), programDir_);
    if (!fileExists(package)) {
        status("");
        return stopped("Downloading failed!");
    }

    status("Downloading, please waiting...");
    int r = PutFile(package, "rqupdate.rqp", "/tmp", ip_, 2, "", track("rqupdate.rqp"));
    event(4, r);
    if (r == kTransferOk) {
        status("Download success, writing Flash, please waiting...");
        r = waitUntilReady(ip_, readiness);
    }
    event(5, r);
    status("");
    static const char* const kTexts[] = {
        "Download startup image successfully!",
        "Download startup image fail, can not connect slave!",
        "Download startup image fail, communication error!",
        "Download startup image fail, can not open file or other errors!",
    };
    TransferOutcome o;
    o.result = r;
    o.succeeded = r == kTransferOk;
    if (r >= 0 && r < 4)
        o.message = kTexts[r];
    o.icon = r == kTransferOk ? MessageIcon::Information : MessageIcon::Stop;
    return o;
}

} // namespace rq

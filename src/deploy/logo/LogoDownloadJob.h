#pragma once
// The start-up image download of the logo dialog as a headless job: the bitmap is
// converted into PROJECT/logo/logo (checks, on the calling thread), compressed with
// gzip into logo.gz, wrapped by downloadlogo.sh into logo/rqupdate.rqp, put to the
// device's /tmp as rqupdate.rqp (event 4 with the result), and then, after 1000 ms,
// up to 31 readiness polls while the device writes its flash (event 5).

#include "deploy/transfer/DeployJobs.h"

#include <cstdint>
#include <optional>
#include <string>

namespace rq {

// The largest compressed image the device takes.
inline constexpr std::uintmax_t kMaxCompressedImage = 1572864;

// Opens the compressed image: "Compressed image fail!" when it cannot be opened;
// when it is larger than the limit it is deleted and the too-big message returned.
std::optional<std::string> checkCompressedImage(const std::string& path);

// The gzip line: the program directory's own gzip when it has one, else the
// system's.
std::string gzipCommandLine(const std::string& programDir, const std::string& file);

class LogoDownloadJob : public TransferJob {
public:
    // `screenWidth`/`screenHeight` come from the project's HMI type.
    LogoDownloadJob(DeployProject project, int screenWidth, int screenHeight, std::string ip,
                    std::string image, std::string programDir, TransferListener* listener);
    ReadinessWait readiness{31, 1000, 1000};

protected:
    std::optional<TransferOutcome> check() override;
    TransferOutcome work() override;

private:
    DeployProject project_;
    int width_, height_;
    std::string ip_, image_, programDir_;
};

} // namespace rq

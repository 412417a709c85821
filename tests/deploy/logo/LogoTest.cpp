#include "../transfer/TransferTestSupport.h"
#include "core/FileUtil.h"
#include "deploy/cipher/PackageCipher.h"
#include "deploy/emulator/DeviceEmulator.h"
#include "deploy/logo/ConvertBitmap.h"
#include "deploy/logo/LogoDownloadJob.h"
#include "deploy/process/ProcessRunner.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace {

// Bitmaps under tests/data/logo/bitmaps: stored rows bottom first, padding bytes 0xEE
// so that leaking them shows.
std::string bmp(const char* name) {
    return rqtest::dataPath("logo", "bitmaps", name).string();
}

TEST(ConvertBitmap, PixelsRowsAndPadding) {
    EXPECT_EQ(rq::rgb565(0xFF, 0xFF, 0xFF), 0xFFFF);
    EXPECT_EQ(rq::rgb565(0x08, 0x04, 0x08), 0x0821);
    EXPECT_EQ(rq::rgb565(0x07, 0x03, 0x07), 0x0000); // cut, not rounded
    // a.bmp: 3x2 with 3 padding bytes per row and 6 bytes between headers and pixels.
    rqtest::TempDir dir;
    std::string message;
    const std::string expected = rqtest::readFile(bmp("a.logo"));
    ASSERT_EQ(rq::ConvertBitmap(bmp("a.bmp"), dir.file("logo"), message, 3, 2), 1) << message;
    EXPECT_EQ(rqtest::readFile(dir.path() / "logo"), expected);
    ASSERT_EQ(rq::ConvertBitmap(bmp("a.bmp"), dir.file("logo2"), message, 0, 0),
              1); // no size check
    EXPECT_EQ(rqtest::readFile(dir.path() / "logo2"), expected);
}

TEST(ConvertBitmap, RefusalsCarryTheirMessages) {
    rqtest::TempDir dir;
    const std::string format = "File format is error, please select 24-bit bmp format!";
    const auto refused = [&](const std::string& src, int size, const std::string& expected) {
        std::string message;
        EXPECT_EQ(rq::ConvertBitmap(src, dir.file("out"), message, size, size), 0) << src;
        EXPECT_EQ(message, expected) << src;
        EXPECT_FALSE(fs::exists(dir.path() / "out")) << src;
    };
    for (const char* name : {"bits32.bmp", "bits8.bmp", "colours.bmp", "rle.bmp", "signature.bmp"})
        refused(bmp(name), 2, format);
    refused(bmp("short.bmp"), 4, format); // 4x4 headers, pixels cut short
    refused(bmp("width.bmp"), 2, "bmp width is error, need 2 pixel!");
    for (const char* name : {"height.bmp", "topdown.bmp"})
        refused(bmp(name), 2, "bmp height is error, need 2 pixel!");
    refused(dir.file("none.bmp"), 0, "Can't Opent file:" + dir.file("none.bmp") + "!");
    std::string message;
    const std::string target = dir.file("missing/dir/logo");
    EXPECT_EQ(rq::ConvertBitmap(bmp("ok.bmp"), target, message, 2, 2), 0);
    EXPECT_EQ(message, "write file :" + target + " failed!");
}

TEST(LogoDownload, CompressedImageLimit) {
    rqtest::TempDir dir;
    const std::string gz = dir.file("logo.gz");
    EXPECT_EQ(rq::checkCompressedImage(gz), "Compressed image fail!");
    rqtest::writeFile(gz, std::string(rq::kMaxCompressedImage, 'x'));
    EXPECT_EQ(rq::checkCompressedImage(gz), std::nullopt);
    rqtest::writeFile(gz, std::string(rq::kMaxCompressedImage + 1, 'x'));
    EXPECT_EQ(rq::checkCompressedImage(gz),
              "Compressed image file is too big(more than 1.5M),Please choose image file again!");
    EXPECT_FALSE(fs::exists(gz));
}

TEST(LogoDownload, ChecksInOrder) {
    rqtest::TempDir dir;
    auto run = [&](rq::DeployProject p, std::string ip, std::string image) {
        return rq::LogoDownloadJob(p, 2, 2, ip, image, rq::programDirectory(), nullptr).run();
    };
    EXPECT_EQ(run({}, "1.2.3.4", "a.bmp").message, rq::kMsgNoProjectDirectory);
    EXPECT_EQ(run({dir.str(), "", "", ""}, "1.2.3.4", "a.bmp").message,
              "Please choose the HMI type of project!");
    EXPECT_EQ(run({dir.str(), "T", "", ""}, "", "a.bmp").message, rq::kMsgNoIp);
    EXPECT_EQ(run({dir.str(), "T", "", ""}, "1.2.3.4", "").message, "Please choose image file!");
    auto o = run({dir.str(), "T", "", ""}, "1.2.3.4", dir.file("none.bmp"));
    EXPECT_TRUE(o.checkFailed);
    EXPECT_EQ(o.icon, rq::MessageIcon::None);
    EXPECT_EQ(o.message, "Can't Opent file:" + dir.file("none.bmp") + "!");
}

// A noisy 32x24 picture, so that the compressed image is not trivially small.
void writeNoisyBmp(const fs::path& path) {
    fs::copy_file(bmp("noisy.bmp"), path);
}

TEST(LogoDownload, ShippedToolchainDeliversTheCompressedImage) {
    xfer::Device device("127.31.1.1", "RQ-PLC320");
    rqtest::TempDir project;
    writeNoisyBmp(project.path() / "in.bmp");
    xfer::Recorder rec;
    rq::LogoDownloadJob job({project.str(), "RQ-PLC320", "", ""}, 32, 24, device.ip,
                            project.file("in.bmp"), rq::programDirectory(), &rec);
    auto o = job.run();
    EXPECT_EQ(rec.codes(), (std::vector<int>{0, 1, 0, 1, 4, 5}));
    ASSERT_EQ(rec.events.size(), 6u);
    EXPECT_EQ(rec.events[0].text.rfind("gzip ", 0) == 0 ||
                  rec.events[0].text.rfind("./gzip ", 0) == 0,
              true)
        << rec.events[0].text;
    EXPECT_EQ(rec.events[2].text, "./downloadlogo.sh \"" + project.str() + "/logo\"");
    EXPECT_EQ(o.result, rec.events[5].result);
    // What reached the device's /tmp is the wrapped logo.gz, whose content is the
    // converted image.
    const fs::path arrived = device.emulator->rootPath("/tmp/rqupdate.rqp");
    ASSERT_TRUE(fs::exists(arrived));
    ASSERT_EQ(rq::DecryptPackage(arrived.string(), project.file("back.gz"), std::nullopt), 1);
    EXPECT_EQ(rqtest::readFile(project.path() / "back.gz"),
              rqtest::readFile(project.path() / "logo" / "logo.gz"));
    ASSERT_EQ(std::system(("gzip -dc " + rq::shellQuote(project.file("back.gz")) + " > " +
                           rq::shellQuote(project.file("back")))
                              .c_str()),
              0);
    std::string message;
    ASSERT_EQ(rq::ConvertBitmap(project.file("in.bmp"), project.file("direct"), message, 32, 24),
              1);
    EXPECT_EQ(rqtest::readFile(project.path() / "back"),
              rqtest::readFile(project.path() / "direct"));
    EXPECT_EQ(rqtest::readFile(project.path() / "back").size(), 32u * 24u * 2u);
}

TEST(LogoDownload, SuccessWaitsForTheFlashWrite) {
    // A toolchain whose downloadlogo.sh packs the image as an archive, which the
    // emulator installs and then reports ready.
    rqtest::TempDir tools;
    rqtest::writeFile(tools.path() / "downloadlogo.sh",
                      "cd \"$1\" && tar -czf pack.tar.gz logo.gz && " +
                          rq::shellQuote(rq::joinPath(rq::programDirectory(), "rqpcli")) +
                          " package wrap pack.tar.gz rqupdate.rqp --mode 1 >/dev/null\n");
    fs::permissions(tools.path() / "downloadlogo.sh", fs::perms::owner_all);
    xfer::Device device("127.31.1.2", "RQ-PLC320");
    rqtest::TempDir project;
    writeNoisyBmp(project.path() / "in.bmp");
    xfer::Recorder rec;
    rq::LogoDownloadJob job({project.str(), "RQ-PLC320", "", ""}, 32, 24, device.ip,
                            project.file("in.bmp"), tools.str(), &rec);
    auto o = job.run();
    EXPECT_EQ(o.message, "Download startup image successfully!") << job.scriptErrors();
    EXPECT_EQ(o.icon, rq::MessageIcon::Information);
    EXPECT_EQ(rec.codes(), (std::vector<int>{0, 1, 0, 1, 4, 5}));
    EXPECT_EQ(rec.events[4].result, 0);
    EXPECT_EQ(rec.events[5].result, 0);
    EXPECT_EQ(rec.statuses,
              (std::vector<std::string>{"start window downloading, please waiting...",
                                        "Downloading, please waiting...",
                                        "Download success, writing Flash, please waiting...", ""}));
}

TEST(LogoDownload, ToolchainFailuresStopTheChain) {
    rqtest::TempDir tools; // no downloadlogo.sh at all
    rqtest::TempDir project;
    writeNoisyBmp(project.path() / "in.bmp");
    rq::LogoDownloadJob job({project.str(), "RQ-PLC320", "", ""}, 32, 24, "127.31.1.3",
                            project.file("in.bmp"), tools.str(), nullptr);
    auto o = job.run();
    EXPECT_EQ(o.message, "Downloading failed!");
    EXPECT_EQ(o.result, -1);
}

} // namespace

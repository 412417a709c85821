#include "core/FileUtil.h"
#include "deploy/cipher/PackageCipher.h"
#include "deploy/emulator/DeviceEmulator.h"
#include "deploy/logo/ConvertBitmap.h"
#include "deploy/logo/LogoDownloadJob.h"
#include "deploy/process/ProcessRunner.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <functional>
#include <mutex>

namespace fs = std::filesystem;

namespace {

struct BmpShape {
    int32_t width = 2, height = 2;
    uint16_t bits = 24;
    uint32_t compression = 0, coloursUsed = 0;
    const char* signature = "BM";
    uint32_t extraGap = 0; // bytes between the headers and the pixels
};

void put16(std::string& s, uint16_t v) {
    s += static_cast<char>(v & 0xFF);
    s += static_cast<char>(v >> 8);
}
void put32(std::string& s, uint32_t v) {
    for (int i = 0; i < 4; ++i)
        s += static_cast<char>((v >> (8 * i)) & 0xFF);
}

// A bitmap whose stored rows (bottom row first) come from `pixel(x, storedRow)`
// as blue, green, red; the padding bytes are 0xEE so that leaking them shows.
std::string makeBmp(const BmpShape& b,
                    const std::function<std::array<uint8_t, 3>(int, int)>& pixel) {
    const int32_t rows = b.height < 0 ? -b.height : b.height;
    const uint32_t stride = (b.width * 3 + 3) / 4 * 4;
    std::string s = b.signature;
    put32(s, 0);
    put32(s, 0);
    put32(s, 54 + b.extraGap);
    put32(s, 40);
    put32(s, static_cast<uint32_t>(b.width));
    put32(s, static_cast<uint32_t>(b.height));
    put16(s, 1);
    put16(s, b.bits);
    put32(s, b.compression);
    put32(s, stride * rows);
    put32(s, 2835);
    put32(s, 2835);
    put32(s, b.coloursUsed);
    put32(s, 0);
    s.append(b.extraGap, '\x55');
    for (int32_t r = 0; r < rows; ++r) {
        std::string row;
        for (int32_t x = 0; x < b.width; ++x)
            for (uint8_t v : pixel(x, r))
                row += static_cast<char>(v);
        row.resize(stride, '\xEE');
        s += row;
    }
    return s;
}

TEST(ConvertBitmap, PixelsRowsAndPadding) {
    EXPECT_EQ(rq::rgb565(0xFF, 0xFF, 0xFF), 0xFFFF);
    EXPECT_EQ(rq::rgb565(0x08, 0x04, 0x08), 0x0821);
    EXPECT_EQ(rq::rgb565(0x07, 0x03, 0x07), 0x0000); // cut, not rounded

    rqtest::TempDir dir;
    // Width 3: each stored row carries 3 padding bytes. Stored row 0 is the bottom.
    BmpShape shape;
    shape.width = 3;
    shape.height = 2;
    shape.extraGap = 6;
    rqtest::writeFile(dir.path() / "a.bmp", makeBmp(shape, [](int x, int r) {
                          if (r == 1) // the top row of the picture
                              return std::array<uint8_t, 3>{0xFF, 0xFF, 0xFF};
                          return std::array<uint8_t, 3>{0x08, 0x04, static_cast<uint8_t>(x << 3)};
                      }));
    std::string message;
    ASSERT_EQ(rq::ConvertBitmap(dir.file("a.bmp"), dir.file("logo"), message, 3, 2), 1) << message;
    const std::string expected =
        std::string("\xFF\xFF\xFF\xFF\xFF\xFF", 6) + std::string("\x21\x00\x21\x08\x21\x10", 6);
    EXPECT_EQ(rqtest::readFile(dir.path() / "logo"), expected);
    // Size check off.
    ASSERT_EQ(rq::ConvertBitmap(dir.file("a.bmp"), dir.file("logo2"), message, 0, 0), 1);
    EXPECT_EQ(rqtest::readFile(dir.path() / "logo2"), expected);
}

TEST(ConvertBitmap, RefusalsCarryTheirMessages) {
    rqtest::TempDir dir;
    auto black = [](int, int) { return std::array<uint8_t, 3>{0, 0, 0}; };
    const std::string format = "File format is error, please select 24-bit bmp format!";
    struct Case {
        const char* name;
        BmpShape shape;
        int w, h;
        std::string message;
    } cases[] = {
        {"bits32", {2, 2, 32}, 2, 2, format},
        {"bits8", {2, 2, 8}, 2, 2, format},
        {"colours", {2, 2, 24, 0, 16}, 2, 2, format},
        {"rle", {2, 2, 24, 1}, 2, 2, format},
        {"signature", {2, 2, 24, 0, 0, "MB"}, 2, 2, format},
        {"width", {3, 2}, 2, 2, "bmp width is error, need 2 pixel!"},
        {"height", {2, 3}, 2, 2, "bmp height is error, need 2 pixel!"},
        {"topdown", {2, -2}, 2, 2, "bmp height is error, need 2 pixel!"},
    };
    for (const auto& c : cases) {
        const std::string src = dir.file(std::string(c.name) + ".bmp");
        rqtest::writeFile(src, makeBmp(c.shape, black));
        std::string message;
        EXPECT_EQ(rq::ConvertBitmap(src, dir.file("out"), message, c.w, c.h), 0) << c.name;
        EXPECT_EQ(message, c.message) << c.name;
        EXPECT_FALSE(fs::exists(dir.path() / "out")) << c.name;
    }
    std::string message;
    EXPECT_EQ(rq::ConvertBitmap(dir.file("none.bmp"), dir.file("out"), message, 0, 0), 0);
    EXPECT_EQ(message, "Can't Opent file:" + dir.file("none.bmp") + "!");
    rqtest::writeFile(dir.path() / "short.bmp", makeBmp({4, 4}, black).substr(0, 70));
    EXPECT_EQ(rq::ConvertBitmap(dir.file("short.bmp"), dir.file("out"), message, 4, 4), 0);
    EXPECT_EQ(message, format);
    EXPECT_FALSE(fs::exists(dir.path() / "out"));
    rqtest::writeFile(dir.path() / "ok.bmp", makeBmp({2, 2}, black));
    const std::string target = dir.file("missing/dir/logo");
    EXPECT_EQ(rq::ConvertBitmap(dir.file("ok.bmp"), target, message, 2, 2), 0);
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

struct Recorder : rq::TransferListener {
    std::mutex m;
    std::vector<rq::TransferEvent> events;
    std::vector<std::string> statuses;
    void onTransferEvent(const rq::TransferEvent& e) override {
        std::lock_guard lock(m);
        events.push_back(e);
    }
    void onStatus(const std::string& text) override {
        std::lock_guard lock(m);
        statuses.push_back(text);
    }
};

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

// A device emulator on its own loopback address.
struct Device {
    rqtest::TempDir root;
    rq::EmulatorOptions options;
    std::unique_ptr<rq::DeviceEmulator> emulator;
    explicit Device(const std::string& address) {
        options.address = address;
        options.root = root.str();
        options.type = "RQ-PLC320";
        emulator = std::make_unique<rq::DeviceEmulator>(options);
        std::string error;
        EXPECT_TRUE(emulator->start(&error)) << error;
    }
};

// A noisy picture, so that the compressed image is not trivially small.
void writeNoisyBmp(const fs::path& path) {
    uint32_t seed = 1;
    rqtest::writeFile(path, makeBmp({32, 24}, [&](int, int) {
                          seed = seed * 1103515245 + 12345;
                          return std::array<uint8_t, 3>{static_cast<uint8_t>(seed >> 16),
                                                        static_cast<uint8_t>(seed >> 8),
                                                        static_cast<uint8_t>(seed >> 24)};
                      }));
}

std::vector<int> codesOf(Recorder& rec) {
    std::vector<int> codes;
    for (const auto& e : rec.events)
        codes.push_back(e.code);
    return codes;
}

TEST(LogoDownload, ShippedToolchainDeliversTheCompressedImage) {
    Device device("127.31.1.1");
    rqtest::TempDir project;
    writeNoisyBmp(project.path() / "in.bmp");
    Recorder rec;
    rq::LogoDownloadJob job({project.str(), "RQ-PLC320", "", ""}, 32, 24, device.options.address,
                            project.file("in.bmp"), rq::programDirectory(), &rec);
    auto o = job.run();
    EXPECT_EQ(codesOf(rec), (std::vector<int>{0, 1, 0, 1, 4, 5}));
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
    Device device("127.31.1.2");
    rqtest::TempDir project;
    writeNoisyBmp(project.path() / "in.bmp");
    Recorder rec;
    rq::LogoDownloadJob job({project.str(), "RQ-PLC320", "", ""}, 32, 24, device.options.address,
                            project.file("in.bmp"), tools.str(), &rec);
    auto o = job.run();
    EXPECT_EQ(o.message, "Download startup image successfully!") << job.scriptErrors();
    EXPECT_EQ(o.icon, rq::MessageIcon::Information);
    EXPECT_EQ(codesOf(rec), (std::vector<int>{0, 1, 0, 1, 4, 5}));
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

// The protocol client against the emulated device: every command, what the device
// does with the files that reach /tmp, and every fault.

#include "deploy/emulator/DeviceEmulator.h"
#include "core/TextEncoding.h"
#include "deploy/cipher/PackageFile.h"
#include "deploy/protocol/DeviceProtocol.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <sys/stat.h>
#include <thread>

using namespace rqtest;
namespace fs = std::filesystem;

namespace {

std::string nextAddress() {
    static int n = 0;
    ++n;
    return "127.62." + std::to_string(n / 250) + "." + std::to_string(n % 250 + 1);
}

std::string pattern(std::size_t size) {
    std::string s(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        s[i] = static_cast<char>((i * 37 + i / 509) & 0xFF);
    return s;
}

// A gzip'd tar of the files given (name -> content), made with the system's tar.
std::string makeArchive(const TempDir& work, const std::map<std::string, std::string>& files,
                        const std::string& extraTarOptions = "") {
    const fs::path src = work.path() / "src";
    fs::remove_all(src);
    fs::create_directories(src);
    for (const auto& [name, content] : files) {
        fs::create_directories((src / name).parent_path());
        writeFile(src / name, content);
    }
    const std::string archive = work.file("archive.tar.gz");
    const std::string command = "tar -czf '" + archive + "' " + extraTarOptions + " -C '" +
                                src.string() + "' " + "$(cd '" + src.string() + "' && ls -A)";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return archive;
}

std::string wrap(const TempDir& work, const std::string& source, int mode,
                 const std::optional<std::string>& password) {
    const std::string package = work.file("rqupdate.rqp");
    std::string error;
    EXPECT_TRUE(rq::wrapPackage(source, package, mode, password, &error)) << error;
    return package;
}

class EmulatorTest : public ::testing::Test {
protected:
    void startDevice(rq::EmulatorFault fault = rq::EmulatorFault::None, int readyAfter = 0,
                     const std::string& versionDate = "20240101") {
        rq::EmulatorOptions options;
        options.address = ip;
        options.root = root.str();
        options.type = "HMI 7寸";
        options.versionDate = versionDate;
        options.readyAfterSeconds = readyAfter;
        options.fault = fault;
        options.log = &log;
        device = std::make_unique<rq::DeviceEmulator>(options);
        std::string error;
        ASSERT_TRUE(device->start(&error)) << error;
    }
    std::string deviceFile(const std::string& path) { return device->rootPath(path); }

    std::string ip = nextAddress();
    TempDir root, work;
    std::ostringstream log;
    std::unique_ptr<rq::DeviceEmulator> device;
};

} // namespace

TEST_F(EmulatorTest, AnswersEveryCommand) {
    rq::setDeviceCodePage("GB2312");
    startDevice();
    char type[128];
    ASSERT_EQ(rq::QueryDeviceType(ip, type, sizeof type), rq::kTransferOk);
    EXPECT_EQ(std::string(type), rq::toDeviceBytes("HMI 7寸"));
    int requests = 1;

    for (std::size_t size :
         {std::size_t(1), std::size_t(1024), std::size_t(1025), std::size_t(300001)}) {
        SCOPED_TRACE(size);
        const std::string content = pattern(size);
        writeFile(work.file("up"), content);
        EXPECT_EQ(rq::PutFile(work.file("up"), "file.bin", "/tmp", ip, 2, ""), rq::kTransferOk);
        EXPECT_EQ(readFile(deviceFile("/tmp/file.bin")), content);
        EXPECT_EQ(rq::GetFile("/tmp/file.bin", work.file("down"), ip), rq::kTransferOk);
        EXPECT_EQ(readFile(work.file("down")), content);
        requests += 2;
    }
    // A missing file, a missing directory and a way out of the root are refused.
    EXPECT_EQ(rq::GetFile("/home/app/nothing", work.file("none"), ip), rq::kCommError);
    EXPECT_FALSE(fs::exists(work.file("none")));
    EXPECT_EQ(rq::GetFile("/../outside", work.file("none"), ip), rq::kCommError);
    EXPECT_EQ(rq::PutFile(work.file("up"), "f", "/nowhere", ip, 2, ""), rq::kCommError);
    EXPECT_EQ(rq::PutFile(work.file("up"), "f", "/tmp/../..", ip, 2, ""), rq::kCommError);
    EXPECT_EQ(rq::PutFile(work.file("up"), "..", "/tmp", ip, 2, ""), rq::kCommError);
    requests += 5;

    EXPECT_EQ(rq::GetFile("/home/app/version", work.file("version"), ip), rq::kTransferOk);
    EXPECT_EQ(readFile(work.file("version")), "Movaro V1.0 rqdevsim\n20240101\n");
    EXPECT_EQ(rq::SetDeviceClockAt(ip, 1234567890), rq::kTransferOk);
    EXPECT_EQ(device->lastClock().value_or(0), 1234567890u);
    EXPECT_EQ(rq::QueryUpdateDone(ip), rq::kTransferOk);
    requests += 3;

    device->stop();
    // One line per request.
    const std::string lines = log.str();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), requests) << lines;
    EXPECT_NE(lines.find("clock 2009-02-13 23:31:30 UTC -> status 1"), std::string::npos);
}

TEST_F(EmulatorTest, KillprogStopsTheRuntimeUntilTheDelayHasPassed) {
    startDevice(rq::EmulatorFault::None, 1);
    writeFile(work.file("killprog.rqp"), "stop");
    ASSERT_TRUE(device->runtimeRunning());
    ASSERT_EQ(rq::PutFile(work.file("killprog.rqp"), "killprog.rqp", "/tmp", ip, 2, ""),
              rq::kTransferOk);
    EXPECT_FALSE(device->runtimeRunning());
    EXPECT_EQ(rq::QueryUpdateDone(ip), rq::kCommError);
    // The caller's readiness wait: a poll, then 1000 ms after each unsuccessful one.
    int polls = 1;
    while (rq::QueryUpdateDone(ip) != rq::kTransferOk && polls < 4) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1000));
        ++polls;
    }
    EXPECT_LE(polls, 3);
    EXPECT_EQ(rq::QueryUpdateDone(ip), rq::kTransferOk);
}

TEST_F(EmulatorTest, ProjectPackageIsKeptAndUnpacked) {
    startDevice();
    const std::string archive =
        makeArchive(work, {{"rqrun.xml", "<project/>"}, {"hmi/w1.xml", "window"}});
    const std::string package = wrap(work, archive, 2, std::string("pw"));
    ASSERT_EQ(rq::PutFile(package, "rqupdate.rqp", "/tmp", ip, 2, "pw"), rq::kTransferOk);
    EXPECT_TRUE(device->runtimeRunning());
    EXPECT_EQ(readFile(deviceFile("/home/app/project/rqrun.xml")), "<project/>");
    EXPECT_EQ(readFile(deviceFile("/home/app/project/hmi/w1.xml")), "window");
    // The upload fetches what was installed, byte for byte, and the runtime's file.
    EXPECT_EQ(rq::GetFile("/home/app/rqupdate.rqp", work.file("back.rqp"), ip), rq::kTransferOk);
    EXPECT_EQ(readFile(work.file("back.rqp")), readFile(package));
    EXPECT_EQ(rq::GetFile("/home/app/datafile/rtdbparams.bin", work.file("p.bin"), ip),
              rq::kTransferOk);
    EXPECT_EQ(readFile(deviceFile("/home/app/version")), "Movaro V1.0 rqdevsim\n20240101\n");
    EXPECT_FALSE(fs::exists(deviceFile("/tmp/rqupdate.tar.gz")));
}

TEST_F(EmulatorTest, UpgradePackageReplacesTheVersionFile) {
    startDevice();
    const std::string version = "Movaro V1.0 build 7\n20250315\n";
    const std::string archive = makeArchive(work, {{"version", version}, {"bin/rqrun", "elf"}});
    const std::string package = wrap(work, archive, 1, std::nullopt);
    ASSERT_EQ(rq::PutFile(package, "rqupdate.rqp", "/tmp", ip, 2, ""), rq::kTransferOk);
    EXPECT_EQ(readFile(deviceFile("/home/app/version")), version);
    EXPECT_FALSE(fs::exists(deviceFile("/home/app/project")));
    EXPECT_FALSE(fs::exists(deviceFile("/home/app/rqupdate.rqp")));
}

TEST_F(EmulatorTest, StartupImageIsOneGzipStreamWrittenToFlash) {
    startDevice();
    writeFile(work.file("logo"), pattern(4000));
    ASSERT_EQ(std::system(("gzip -nf '" + work.file("logo") + "'").c_str()), 0);
    const std::string package = wrap(work, work.file("logo.gz"), 1, std::nullopt);
    ASSERT_EQ(rq::PutFile(package, "rqupdate.rqp", "/tmp", ip, 2, ""), rq::kTransferOk);
    EXPECT_EQ(readFile(deviceFile("/home/app/logo.gz")), readFile(work.file("logo.gz")));
    EXPECT_FALSE(fs::exists(deviceFile("/home/app/project")));
    // A gzip stream cut short is no image.
    std::string cut = readFile(work.file("logo.gz"));
    writeFile(work.file("cut.gz"), cut.substr(0, cut.size() / 2));
    EXPECT_EQ(rq::PutFile(wrap(work, work.file("cut.gz"), 1, std::nullopt), "rqupdate.rqp", "/tmp",
                          ip, 2, ""),
              rq::kCommError);
}

TEST_F(EmulatorTest, PackagesThatMustNotBeInstalledAreRefused) {
    startDevice();
    struct Case {
        const char* what;
        std::function<std::string()> make;
        std::string extra;
    };
    const Case cases[] = {
        {"wrong password",
         [&] {
             return wrap(work, makeArchive(work, {{"a", "1"}}), 2, std::string("right"));
         },
         "wrong"},
        {"not a package",
         [&] {
             writeFile(work.file("junk"), pattern(100));
             return work.file("junk");
         },
         ""},
        {"not gzip inside",
         [&] {
             writeFile(work.file("plain"), "plain text");
             return wrap(work, work.file("plain"), 1, std::nullopt);
         },
         ""},
        {"member outside the directory",
         [&] {
             return wrap(work, makeArchive(work, {{"a", "1"}}, "-P --transform=s,^,../,"), 1,
                         std::nullopt);
         },
         ""},
        {"symbolic link",
         [&] {
             fs::create_directories(work.path() / "links");
             fs::create_symlink("/etc/passwd", work.path() / "links" / "l");
             const std::string archive = work.file("links.tar.gz");
             EXPECT_EQ(
                 std::system(
                     ("tar -czf '" + archive + "' -C '" + work.file("links") + "' l").c_str()),
                 0);
             return wrap(work, archive, 1, std::nullopt);
         },
         ""},
        {"named pipe and hard link",
         [&] {
             fs::create_directories(work.path() / "special");
             writeFile(work.path() / "special" / "f", "x");
             fs::create_hard_link(work.path() / "special" / "f", work.path() / "special" / "h");
             EXPECT_EQ(::mkfifo((work.path() / "special" / "p").c_str(), 0600), 0);
             const std::string archive = work.file("special.tar.gz");
             EXPECT_EQ(
                 std::system(("tar -czf '" + archive + "' -C '" + work.file("special") + "' f h p")
                                 .c_str()),
                 0);
             return wrap(work, archive, 1, std::nullopt);
         },
         ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const std::string package = c.make();
        EXPECT_EQ(rq::PutFile(package, "rqupdate.rqp", "/tmp", ip, 2, c.extra), rq::kCommError);
        EXPECT_FALSE(fs::exists(deviceFile("/home/app/project")));
        EXPECT_FALSE(fs::exists(deviceFile("/home/app/rqupdate.rqp")));
    }
    EXPECT_FALSE(fs::exists(root.path().parent_path() / "a"));
}

TEST_F(EmulatorTest, MonitorReportsThisMachinesFigures) {
    startDevice();
    rq::MonitorSocket sock = 0;
    rq::DeviceStatus s{};
    // Before rqmon.rqp the monitor refuses.
    EXPECT_EQ(rq::PollDeviceStatus(ip, sock, s), rq::kCommError);
    EXPECT_EQ(sock, 0);
    writeFile(work.file("rqmon.rqp"), "monitor");
    ASSERT_EQ(rq::PutFile(work.file("rqmon.rqp"), "rqmon.rqp", "/tmp", ip, 2, ""), rq::kTransferOk);
    ASSERT_EQ(rq::PollDeviceStatus(ip, sock, s), rq::kTransferOk);
    const rq::MonitorSocket first = sock;
    EXPECT_GT(s.totalMemory, 0u);
    EXPECT_EQ(s.usedMemory + s.freeMemory, s.totalMemory);
    EXPECT_GT(s.appMemory, 0u);
    EXPECT_LT(s.appMemory, s.totalMemory);
    EXPECT_LE(s.cpuUsage, 1000u);
    EXPECT_EQ(s.appMemoryRate, uint32_t(uint64_t(s.appMemory) * 1000 / s.totalMemory));
    ASSERT_EQ(rq::PollDeviceStatus(ip, sock, s), rq::kTransferOk);
    EXPECT_EQ(sock, first);
    rq::EndDeviceMonitor(sock);
    EXPECT_EQ(sock, 0);
}

TEST_F(EmulatorTest, Faults) {
    writeFile(work.file("f"), pattern(200000));
    char type[128];
    rq::MonitorSocket sock = 0;
    rq::DeviceStatus s{};
    using R = rq::TransferResult;
    const std::vector<std::pair<const char*, std::function<R()>>> commands = {
        {"type", [&] { return rq::QueryDeviceType(ip, type, sizeof type); }},
        {"put", [&] { return rq::PutFile(work.file("f"), "f", "/tmp", ip, 2, ""); }},
        {"get", [&] { return rq::GetFile("/home/app/version", work.file("v"), ip); }},
        {"update", [&] { return rq::QueryUpdateDone(ip); }},
        {"clock", [&] { return rq::SetDeviceClockAt(ip, 1); }},
        {"poll", [&] { return rq::PollDeviceStatus(ip, sock, s); }},
    };
    struct Case {
        rq::EmulatorFault fault;
        std::vector<R> results; // in the order of the commands
    };
    const R ok = rq::kTransferOk, noConnect = rq::kCannotConnect, comm = rq::kCommError;
    const Case cases[] = {
        {rq::EmulatorFault::Refuse,
         {noConnect, noConnect, noConnect, noConnect, noConnect, noConnect}},
        {rq::EmulatorFault::Cut, {comm, comm, comm, comm, comm, comm}},
        // The update reply's length is not looked at.
        {rq::EmulatorFault::BadLength, {comm, comm, comm, ok, comm, comm}},
        // The monitor was never started, so its poll is refused in any case.
        {rq::EmulatorFault::Busy, {ok, ok, ok, comm, ok, comm}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(rq::emulatorFaultName(c.fault));
        ip = nextAddress();
        startDevice(c.fault);
        for (std::size_t i = 0; i < commands.size(); ++i) {
            SCOPED_TRACE(commands[i].first);
            EXPECT_EQ(commands[i].second(), c.results[i]);
        }
        EXPECT_EQ(sock, 0);
        // Nothing half-received is left behind; a whole file stays even when the
        // reply lies about its length.
        EXPECT_EQ(fs::exists(deviceFile("/tmp/f")),
                  c.fault == rq::EmulatorFault::Busy || c.fault == rq::EmulatorFault::BadLength);
        EXPECT_FALSE(fs::exists(deviceFile("/tmp/f.part")));
        device->stop();
        fs::remove(work.file("v"));
        fs::remove(deviceFile("/tmp/f"));
    }
}

TEST_F(EmulatorTest, SilentDeviceTimesOutAfterFiveSeconds) {
    startDevice(rq::EmulatorFault::Silent);
    writeFile(work.file("f"), pattern(100000));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(rq::PutFile(work.file("f"), "f", "/tmp", ip, 2, ""), rq::kCommError);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, std::chrono::seconds(rq::kReceiveWaitSeconds));
    EXPECT_FALSE(fs::exists(deviceFile("/tmp/f")));
}

TEST(DeviceEmulator, RefusesBadOptions) {
    TempDir root;
    struct Case {
        const char* address;
        const char* date;
        const char* reason;
    };
    const Case cases[] = {
        {"127.62.250.300", "", "not an IPv4 address"},
        {"localhost", "", "not an IPv4 address"},
        {"127.62.250.1", "20251301", "not a valid date"},
        {"127.62.250.1", "20240230", "not a valid date"},
        {"127.62.250.1", "2024010", "not a valid date"},
    };
    for (const Case& c : cases) {
        rq::EmulatorOptions options;
        options.address = c.address;
        options.root = root.str();
        options.type = "T";
        options.versionDate = c.date;
        rq::DeviceEmulator device(options);
        std::string error;
        EXPECT_FALSE(device.start(&error));
        EXPECT_NE(error.find(c.reason), std::string::npos) << error;
    }
}

#include "deploy/transfer/DeployJobs.h"
#include "TransferTestSupport.h"
#include "core/FileUtil.h"
#include "core/ProjectModel.h"
#include "deploy/transfer/UpgradePackages.h"

#include "deploy/cipher/PackageFile.h"

#include <cstdlib>
#include <ctime>
#include <sys/stat.h>

using namespace xfer;

namespace {

constexpr const char* kType = "RQ-HMI800";

rq::DeployProject deployProject(const fs::path& dir, const std::string& password = {}) {
    rq::DeployProject p;
    p.directory = dir.string();
    p.hmiTypeName = kType;
    p.password = password;
    return p;
}

std::string programDir() {
    return rq::programDirectory();
}

// Builds download/rqupdate.rqp in a fresh project.
void buildPackage(const fs::path& dir, const std::string& password) {
    makeProject(dir);
    Recorder rec;
    rq::BuildPackageJob job(deployProject(dir, password), programDir(), &rec);
    auto o = job.run();
    ASSERT_TRUE(o.succeeded) << o.message << job.scriptErrors();
    EXPECT_EQ(o.message, "Create download package successfully!");
    EXPECT_TRUE(fs::exists(dir / "download" / "rqupdate.rqp"));
    EXPECT_FALSE(fs::exists(dir / "download" / "rqupdate.tar.gz"));
    EXPECT_EQ(rec.codes(), (std::vector<int>{0, 1}));
}

TEST(BuildPackage, ChecksAndMissingArchive) {
    rqtest::TempDir dir;
    rq::BuildPackageJob noDir(rq::DeployProject{}, programDir(), nullptr);
    EXPECT_EQ(noDir.run().message, rq::kMsgNoProjectDirectory);
    rq::BuildPackageJob notCompiled(deployProject(dir.path()), programDir(), nullptr);
    auto o = notCompiled.run();
    EXPECT_TRUE(o.checkFailed);
    EXPECT_EQ(o.message, "Please compiling project before creat download package!");
    // A toolchain that makes no archive.
    rqtest::TempDir emptyProgramDir;
    makeProject(dir.path());
    rq::BuildPackageJob noScript(deployProject(dir.path()), emptyProgramDir.str(), nullptr);
    o = noScript.run();
    EXPECT_FALSE(o.checkFailed);
    EXPECT_EQ(o.message, "Fail to creat download package!");
    EXPECT_FALSE(fs::exists(dir.path() / "download" / "rqupdate.rqp"));
}

TEST(ProjectDownload, ChecksInOrder) {
    rqtest::TempDir dir;
    struct Case {
        std::string directory, ip, type;
        bool package;
        const char* message;
        rq::MessageIcon icon;
    } cases[] = {
        {"", "", "", false, rq::kMsgNoProjectDirectory, rq::MessageIcon::Stop},
        {dir.str(), "", "", false, rq::kMsgNoIp, rq::MessageIcon::Stop},
        {dir.str(), "127.0.0.1", "", false,
         "download package does not exist, please create download package!",
         rq::MessageIcon::Information},
        {dir.str(), "127.0.0.1", "", true, "Please HMI type!", rq::MessageIcon::Stop},
        // A typed address that is none comes last, with its own message.
        {dir.str(), "127.0.1", "P7", true,
         "The field \"Slave IP Address\" must hold an IPv4 address: four numbers from 0 to 255 "
         "separated by dots, without leading zeros (for example 192.168.1.20).",
         rq::MessageIcon::Stop},
    };
    for (const auto& c : cases) {
        if (c.package) {
            fs::create_directories(dir.path() / "download");
            rqtest::writeFile(dir.path() / "download" / "rqupdate.rqp", "x");
        }
        rq::DeployProject p{c.directory, c.type, "", ""};
        rq::ProjectDownloadJob job(p, c.ip, programDir(), nullptr);
        auto o = job.run();
        EXPECT_TRUE(o.checkFailed);
        EXPECT_EQ(o.message, c.message);
        EXPECT_EQ(o.icon, c.icon);
    }
}

TEST(ProjectDownload, WholeDownloadWithTheAutomaticUpgrade) {
    auto upgrade = rq::newestUpgradePackage(programDir());
    ASSERT_TRUE(upgrade) << "the build makes one upgrade package";
    // Device dates: older, newer, and a device without a version file (refused get).
    struct Case {
        const char* address;
        const char* deviceDate;
        bool upgraded;
    } cases[] = {
        {"127.31.0.1", "20200101", true},
        {"127.31.0.2", "20991231", false},
        {"127.31.0.3", "", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.address);
        rqtest::TempDir dir;
        buildPackage(dir.path(), "secret");
        Device device(c.address, kType, c.deviceDate, 1);
        Recorder rec;
        rq::ProjectDownloadJob job(deployProject(dir.path(), "secret"), device.ip, programDir(),
                                   &rec);
        auto o = job.run();
        EXPECT_EQ(o.result, 0);
        EXPECT_EQ(o.message, "Project download successfully!");
        EXPECT_EQ(o.icon, rq::MessageIcon::Information);
        EXPECT_EQ(rec.codes(), (std::vector<int>{2}));
        ASSERT_FALSE(rec.statuses.empty());
        EXPECT_EQ(rec.statuses.front(), "Downloading, please waiting...");
        EXPECT_EQ(rec.statuses.back(), "");
        // The project arrived whole and the runtime runs again.
        EXPECT_EQ(rqtest::readFile(device.file("/home/app/project/rqrun.xml")),
                  rqtest::readFile(dir.path() / "rqrun.xml"));
        EXPECT_TRUE(device.emulator->runtimeRunning());
        const std::string version = rqtest::readFile(device.file("/home/app/version"));
        EXPECT_EQ(version.find(std::to_string(upgrade->date)) != std::string::npos, c.upgraded)
            << version;
    }
}

TEST(ProjectDownload, DeviceTypeMustMatchExactly) {
    rqtest::TempDir dir;
    buildPackage(dir.path(), "");
    Device device("127.31.0.4", "rq-hmi800");
    auto o =
        rq::ProjectDownloadJob(deployProject(dir.path()), device.ip, programDir(), nullptr).run();
    EXPECT_EQ(o.result, rq::kTypeMismatch);
    EXPECT_EQ(o.message, "HMI type is not match, please select other type!");
    EXPECT_TRUE(device.emulator->runtimeRunning()); // killprog.rqp was not sent
}

TEST(ProjectDownload, FailuresCarryTheirMessages) {
    rqtest::TempDir dir;
    buildPackage(dir.path(), "");
    {
        Device refusing("127.31.0.5", kType, "", 0, rq::EmulatorFault::Refuse);
        rq::ProjectDownloadJob job(deployProject(dir.path()), refusing.ip, programDir(), nullptr);
        auto o = job.run();
        EXPECT_EQ(o.result, 1);
        EXPECT_EQ(o.message, "Project download fail,can not connect slave!");
    }
    {
        // The update port never reports ready: the readiness wait gives up.
        Device busy("127.31.0.6", kType, "20991231", 0, rq::EmulatorFault::Busy);
        rq::ProjectDownloadJob job(deployProject(dir.path()), busy.ip, programDir(), nullptr);
        job.readiness = {3, 100, 0};
        auto o = job.run();
        EXPECT_EQ(o.result, 2);
        EXPECT_EQ(o.message, "Project download fail, communicating with slave error!");
        EXPECT_FALSE(fs::exists(busy.file("/home/app/project/rqrun.xml")));
    }
}

TEST(Upload, WrongPasswordThenTheRightOne) {
    rqtest::TempDir dir;
    buildPackage(dir.path(), "secret");
    Device device("127.31.0.7", kType, "20991231", 0);
    ASSERT_EQ(rq::ProjectDownloadJob(deployProject(dir.path(), "secret"), device.ip, programDir(),
                                     nullptr)
                  .run()
                  .result,
              0);

    rqtest::TempDir target;
    rq::UploadJob wrong(target.str(), device.ip, "wrong", "", nullptr, programDir(), nullptr);
    auto o = wrong.run();
    EXPECT_EQ(o.message, "Project file decompress fail!");
    EXPECT_EQ(o.icon, rq::MessageIcon::Information);
    EXPECT_FALSE(o.succeeded);
    EXPECT_FALSE(fs::exists(target.path() / "upload" / "rqupdate.rqp"));
    EXPECT_FALSE(fs::exists(target.path() / "upload" / "rqupdate.tar.gz"));
    EXPECT_FALSE(fs::exists(target.path() / "rqrun.xml"));

    Recorder rec;
    rq::UploadJob right(target.str(), device.ip, "secret", "", nullptr, programDir(), &rec);
    o = right.run();
    EXPECT_TRUE(o.succeeded) << right.scriptErrors();
    EXPECT_EQ(o.message, "Upload successfully!");
    EXPECT_EQ(rqtest::readFile(target.path() / "rqrun.xml"),
              rqtest::readFile(dir.path() / "rqrun.xml"));
    EXPECT_EQ(rqtest::readFile(target.path() / "data" / "values.bin"),
              std::string("\x01\x02\x00\x03", 4));
    EXPECT_TRUE(fs::exists(target.path() / "upload" / "rtdbparams.bin"));
    EXPECT_EQ(rec.codes(), (std::vector<int>{2, 0, 1}));
}

TEST(Upload, ChecksAndOverwriteQuestion) {
    rqtest::RecordingSink sink;
    sink.answers = {false};
    rq::UploadJob same("/p", "127.0.0.1", "", "/p", &sink, programDir(), nullptr);
    auto o = same.run();
    EXPECT_TRUE(o.checkFailed);
    EXPECT_EQ(o.message, "");
    ASSERT_EQ(sink.texts(),
              (std::vector<std::string>{"Are you sure to overwrite with current project? "}));
    EXPECT_EQ(rq::UploadJob("", "1.2.3.4", "", "", nullptr, programDir(), nullptr).run().message,
              "Please choose the path of uploading project!");
    EXPECT_EQ(rq::UploadJob("/t", "", "", "", nullptr, programDir(), nullptr).run().message,
              rq::kMsgNoIp);
    // Nothing on the device: the first get is refused.
    Device device("127.31.0.8", kType);
    rqtest::TempDir target;
    o = rq::UploadJob(target.str(), device.ip, "", "", nullptr, programDir(), nullptr).run();
    EXPECT_EQ(o.result, 2);
    EXPECT_EQ(o.message, "Upload fail, communication error!");
    EXPECT_EQ(o.detail, "the device refused the request");
}

TEST(Upload, ArchiveThatUploadShRefusesIsNoSuccess) {
    // The device holds a package whose archive carries a FIFO.
    Device device("127.31.0.9", kType);
    rqtest::TempDir work, target;
    fs::create_directories(work.path() / "src");
    rqtest::writeFile(work.path() / "src" / "rqrun.xml", "<rqrun/>");
    ASSERT_EQ(::mkfifo((work.path() / "src" / "fifo").c_str(), 0600), 0);
    const std::string archive = work.file("a.tar.gz");
    ASSERT_EQ(
        std::system(
            ("tar -czf '" + archive + "' -C '" + work.file("src") + "' rqrun.xml fifo").c_str()),
        0);
    std::string error;
    ASSERT_TRUE(
        rq::wrapPackage(archive, device.file("/home/app/rqupdate.rqp"), 1, std::nullopt, &error))
        << error;
    rqtest::writeFile(device.file("/home/app/datafile/rtdbparams.bin"), "p");

    rq::UploadJob job(target.str(), device.ip, "", "", nullptr, programDir(), nullptr);
    const auto o = job.run();
    EXPECT_FALSE(o.succeeded);
    EXPECT_EQ(o.message, "Project file decompress fail!");
    EXPECT_EQ(o.detail, "upload.sh refused the archive (exit status 1)");
    EXPECT_FALSE(fs::exists(target.path() / "rqrun.xml"));
    EXPECT_FALSE(fs::exists(target.path() / "fifo"));
}

TEST(UpgradeDownload, PutsThePackageAndReportsEachResult) {
    auto upgrade = rq::newestUpgradePackage(programDir());
    ASSERT_TRUE(upgrade);
    Device device("127.31.0.9", kType, "20200101");
    Recorder rec;
    rq::UpgradeDownloadJob job(upgrade->path, device.ip, &rec);
    auto o = job.run();
    EXPECT_EQ(o.message, "Upgrade package download successfully! ");
    EXPECT_NE(
        rqtest::readFile(device.file("/home/app/version")).find(std::to_string(upgrade->date)),
        std::string::npos);
    EXPECT_EQ(rec.codes(), (std::vector<int>{2}));

    Device refusing("127.31.0.10", kType, "", 0, rq::EmulatorFault::Refuse);
    EXPECT_EQ(rq::UpgradeDownloadJob(upgrade->path, refusing.ip, nullptr).run().message,
              "Upgrade package download fail, can not connect slave!");
    EXPECT_EQ(rq::UpgradeDownloadJob("/nonexistent.rqp", device.ip, nullptr).run().message,
              "Download file does not exist, please choose download file!");
    EXPECT_EQ(rq::UpgradeDownloadJob("", device.ip, nullptr).run().message,
              "Please choose download file!");
}

TEST(Clock, SetsTheDeviceClock) {
    Device device("127.31.0.11", kType);
    const auto before = static_cast<uint32_t>(std::time(nullptr));
    auto o = rq::adjustDeviceClock(device.ip);
    EXPECT_EQ(o.message, "Adjust time successfully!");
    ASSERT_TRUE(device.emulator->lastClock());
    EXPECT_GE(*device.emulator->lastClock(), before);
    EXPECT_LE(*device.emulator->lastClock(), before + 5);
    Device refusing("127.31.0.12", kType, "", 0, rq::EmulatorFault::Refuse);
    EXPECT_EQ(rq::adjustDeviceClock(refusing.ip).message,
              "Adjust time fail, can not connect slave!");
    EXPECT_EQ(rq::adjustDeviceClock("").message, rq::kMsgNoIp);
    EXPECT_TRUE(rq::adjustDeviceClock("127.0.0.001").checkFailed);
}

TEST(Monitor, PollsFormattedFiguresUntilQuit) {
    Device device("127.31.0.13", kType);
    rq::RunningMonitor monitor(programDir());
    auto o = monitor.start(device.ip);
    EXPECT_TRUE(o.succeeded) << o.message;
    EXPECT_TRUE(monitor.monitoring());
    EXPECT_TRUE(device.emulator->monitorRunning());
    rq::RunningMonitor::Fields f;
    ASSERT_TRUE(monitor.poll(f));
    for (const auto* memory : {&f.totalMemory, &f.usedMemory, &f.freeMemory, &f.appMemory}) {
        ASSERT_FALSE(memory->empty());
        EXPECT_EQ(memory->back(), 'K');
    }
    EXPECT_NE(f.totalMemory, "0K");
    for (const auto* rate : {&f.cpuUsage, &f.appMemoryRate})
        EXPECT_NE(rate->find('.'), std::string::npos) << *rate;
    EXPECT_TRUE(monitor.poll(f)); // the same connection again
    monitor.quit();

    Device refusing("127.31.0.14", kType, "", 0, rq::EmulatorFault::Refuse);
    rq::RunningMonitor other(programDir());
    EXPECT_EQ(other.start(refusing.ip).message,
              "Upgrade package download fail, can not connect slave!");
    EXPECT_FALSE(other.monitoring());
    f.totalMemory = "x";
    EXPECT_FALSE(other.poll(f));
    EXPECT_EQ(f, rq::RunningMonitor::Fields{});
}

TEST(DownloadPassword, EntriesMustAgree) {
    rq::ProjectModel m;
    EXPECT_EQ(rq::applyDownloadPassword(m, "a", "b"), "input password error, please input again!");
    EXPECT_FALSE(m.modified);
    EXPECT_EQ(rq::applyDownloadPassword(m, "abc", "abc"), std::nullopt);
    EXPECT_EQ(m.downloadPassword, "abc");
    EXPECT_TRUE(m.modified);
}

} // namespace

namespace {

TEST(TransferJob, CancelEndsTheReadinessWaitAndProgressIsWorded) {
    // A device that never reports ready: the 21 polls of a second each end with the
    // cancel, and the outcome shows nothing.
    rqtest::TempDir dir;
    buildPackage(dir.path(), "");
    Device busy("127.31.0.40", kType, {}, 0, rq::EmulatorFault::Busy);
    rq::ProjectDownloadJob job(deployProject(dir.path()), busy.ip, programDir(), nullptr);
    ASSERT_FALSE(job.start());
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    const auto t0 = std::chrono::steady_clock::now();
    job.cancel();
    const rq::TransferOutcome o = job.wait();
    EXPECT_LT(std::chrono::steady_clock::now() - t0, std::chrono::seconds(2));
    EXPECT_TRUE(o.cancelled);
    EXPECT_TRUE(o.message.empty());
    EXPECT_FALSE(fs::exists(busy.file("/home/app/rqupdate.rqp")));

    const struct {
        rq::TransferProgress p;
        const char* text;
        int percent;
    } cases[] = {
        {{"a.rqp", 512, 2048, 0}, "a.rqp: 512 B of 2.0 KiB", 25},
        {{"b", 25u << 20, 64u << 20, 88.25 * 1048576}, "b: 25.0 MiB of 64.0 MiB, 88.2 MiB/s", 39},
        {{"", 0, 0, 0}, "0 B of 0 B", 100},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(rq::formatProgress(c.p), c.text);
        EXPECT_EQ(rq::progressPercent(c.p), c.percent);
    }
}

} // namespace

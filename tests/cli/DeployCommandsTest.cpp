// The deployment commands of rqpcli end to end, as a user without hardware runs
// them: compile the example project, build its package, download it to the device
// emulator (which gets the newer upgrade package first) and upload it back.

#include "core/FileUtil.h"
#include "deploy/emulator/DeviceEmulator.h"
#include "deploy/protocol/DeviceProtocol.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

using rqtest::BackgroundProgram;
using rqtest::ProgramRun;
using rqtest::readFile;
using rqtest::runProgram;
using rqtest::TempDir;
namespace fs = std::filesystem;

namespace {

void waitListening(const std::string& ip) {
    for (int i = 0; i < 200 && rq::QueryUpdateDone(ip) != rq::kTransferOk; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

#define EXPECT_RUN(run, expectedStatus, text)                                                      \
    do {                                                                                           \
        const ProgramRun r_ = (run);                                                               \
        EXPECT_EQ(r_.status, expectedStatus) << r_.out;                                            \
        EXPECT_NE(r_.out.find(text), std::string::npos) << r_.out;                                 \
    } while (0)

} // namespace

TEST(RqpcliDeploy, CompileBuildDownloadAndUploadTheExampleProject) {
    TempDir dir;
    fs::copy(fs::path(std::getenv("RQ_SOURCE_DIR")) / "data/examples/demo", dir.path() / "demo",
             fs::copy_options::recursive);
    const std::string demo = dir.file("demo");
    const std::string ip = "127.88.0.1", otherType = "127.88.0.2";

    // Nothing to download yet, and the checks come before any transfer.
    EXPECT_RUN(runProgram("rqpcli", {"download", demo, "--ip", ip}), 10,
               "download package does not exist, please create download package!");
    EXPECT_RUN(runProgram("rqpcli", {"build-package", demo}), 10,
               "Please compiling project before creat download package!");
    EXPECT_RUN(runProgram("rqpcli", {"download", demo, "--ip", ""}), 10,
               "Please input corresponding HMI IP address!");
    EXPECT_RUN(runProgram("rqpcli", {"upgrade", dir.file("none.rqp"), ip}), 10,
               "Download file does not exist, please choose download file!");

    ASSERT_EQ(runProgram("rqpcli", {"password", demo, "--password", "pw"}).status, 0);
    EXPECT_RUN(runProgram("rqpcli", {"compile", demo}), 0, "Compile complete, output information:");
    EXPECT_TRUE(rq::fileExists(demo + "/libhmiuserfun.so"));
    EXPECT_RUN(runProgram("rqpcli", {"build-package", demo}), 0,
               "Create download package successfully!");

    BackgroundProgram device("rqdevsim",
                             {"--address", ip, "--root", dir.file("device"), "--type", "RQ-HMI1024",
                              "--version-date", "20200101"},
                             dir.file("device.log"));
    BackgroundProgram other(
        "rqdevsim", {"--address", otherType, "--root", dir.file("other"), "--type", "RQ-HMI800"},
        dir.file("other.log"));
    waitListening(ip);
    waitListening(otherType);

    EXPECT_RUN(runProgram("rqpcli", {"download", demo, "--ip", otherType}), 4,
               "HMI type is not match, please select other type!");
    EXPECT_RUN(runProgram("rqpcli", {"download", demo, "--ip", ip}), 0,
               "Project download successfully!");
    // The device was older than the upgrade package beside the program.
    EXPECT_EQ(readFile(dir.file("device/home/app/version")).find("20200101"), std::string::npos);
    EXPECT_TRUE(rq::fileExists(dir.file("device/home/app/project/rqrun.xml")));

    EXPECT_RUN(runProgram("rqpcli", {"upload", ip, dir.file("wrong"), "--password", "nope"}), 3,
               "Project file decompress fail!");
    EXPECT_RUN(runProgram("rqpcli", {"upload", ip, dir.file("back"), "--password", "pw"}), 0,
               "Upload successfully!");
    EXPECT_EQ(readFile(dir.file("back/rtdb.xml")), readFile(demo + "/rtdb.xml"));
    EXPECT_RUN(runProgram("rqpcli", {"info", dir.file("back")}), 0, "name: demo");
}

TEST(RqpcliDeploy, TransfersDrawProgressOnlyOnATerminal) {
    TempDir dir;
    rq::EmulatorOptions o;
    o.address = "127.88.1.1";
    o.root = dir.file("root");
    o.type = "RQ-HMI1024";
    rq::DeviceEmulator device(o);
    std::string error;
    ASSERT_TRUE(device.start(&error)) << error;
    rqtest::writeFile(dir.file("f.bin"), std::string(3u << 20, 'f'));
    const std::string put =
        rqtest::programDir() + "/rqpcli device put " + dir.file("f.bin") + " " + o.address;
    // `script` gives the command a terminal.
    const ProgramRun onTerminal = rqtest::runShell("script -qc '" + put + "' /dev/null");
    EXPECT_EQ(onTerminal.status, 0) << onTerminal.out;
    EXPECT_NE(onTerminal.out.find("] 100% f.bin: 3.0 MiB of 3.0 MiB"), std::string::npos)
        << onTerminal.out;
    const ProgramRun quiet = rqtest::runShell("script -qc '" + put + " --quiet' /dev/null");
    EXPECT_EQ(quiet.out.find("100%"), std::string::npos) << quiet.out;
    const ProgramRun piped = rqtest::runShell(put + " 2>&1 | cat");
    EXPECT_EQ(piped.out.find("100%"), std::string::npos) << piped.out;
    EXPECT_NE(piped.out.find("done"), std::string::npos) << piped.out;
}

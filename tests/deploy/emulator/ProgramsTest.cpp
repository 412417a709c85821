// The programs around the device protocol: rqdevsim as a process and the
// `rqpcli device` commands against it, with their texts and exit statuses.

#include "deploy/protocol/DeviceProtocol.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace rqtest;

namespace {

// Standard output only: the device commands print their texts there.
ProgramRun run(const std::string& program, const std::vector<std::string>& args) {
    return runProgram(program, args, false);
}

} // namespace

TEST(Programs, RqdevsimAndTheDeviceCommands) {
    TempDir dir;
    const std::string ip = "127.62.252.1";
    BackgroundProgram sim("rqdevsim",
                          {"--address", ip, "--root", dir.file("root"), "--type", "HMI-9",
                           "--version-date", "20240101"},
                          dir.file("log"));
    // Wait until it listens (the listeners come up within a few milliseconds).
    for (int i = 0; i < 100 && rq::QueryUpdateDone(ip) != rq::kTransferOk; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));

    writeFile(dir.file("empty"), "");
    writeFile(dir.file("data"), "payload");
    struct Case {
        std::vector<std::string> args;
        int status;
        std::string out;
    };
    const Case cases[] = {
        {{"device", "type", ip}, 0, "HMI-9\n"},
        {{"device", "clock", ip}, 0, "Adjust time successfully!\n"},
        {{"device", "clock", "127.62.253.1"}, 1, "Adjust time fail, can not connect slave!\n"},
        {{"device", "clock", ""}, 10, ""},
        {{"device", "put", dir.file("data"), ip, "--name", "d.bin"},
         0,
         "put " + dir.file("data") + " as /tmp/d.bin: done\n"},
        {{"device", "put", dir.file("empty"), ip}, 3, ""},
        {{"device", "get", "/tmp/d.bin", dir.file("back"), ip},
         0,
         "get /tmp/d.bin into " + dir.file("back") + ": done\n"},
        {{"device", "get", "/home/app/none", dir.file("none"), ip}, 2, ""},
        {{"device", "monitor", ip, "--count", "0"}, 64, ""},
        {{"device", "type"}, 64, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args[1] + (c.args.size() > 2 ? " " + c.args[2] : ""));
        const ProgramRun r = run("rqpcli", c.args);
        EXPECT_EQ(r.status, c.status);
        EXPECT_EQ(r.out, c.out);
    }
    EXPECT_EQ(runProgram("rqpcli", {"device", "clock", ""}).out,
              "Please input corresponding HMI IP address!\n");
    EXPECT_EQ(readFile(dir.file("back")), "payload");
    // A refusal is called one, not a communication error.
    const ProgramRun refused =
        runProgram("rqpcli", {"device", "get", "/home/app/none", dir.file("none"), ip});
    EXPECT_NE(refused.out.find(": the device refused the request\n"), std::string::npos)
        << refused.out;
    EXPECT_EQ(sim.stop(), 0);
    // A start line, one line per request that reached it, a stop line.
    const std::string log = readFile(dir.file("log"));
    // (the readiness poll, type, clock, put, get and the refused gets).
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 2 + 7) << log;
}

TEST(Programs, RqdevsimRefusesBadOptions) {
    TempDir dir;
    EXPECT_EQ(run("rqdevsim", {"--address", "127.62.254.1"}).status, 64);
    EXPECT_EQ(run("rqdevsim", {"--address", "127.62.254.1", "--root", dir.str(), "--type", "T",
                               "--fault", "loud"})
                  .status,
              64);
    EXPECT_EQ(run("rqdevsim", {"--address", "127.62.254.1", "--root", dir.str(), "--type", "T",
                               "--version-date", "20241340"})
                  .status,
              1);
    EXPECT_EQ(run("rqdevsim", {"--address", "127.62.254.1", "--root", dir.str(), "--type", "T",
                               "--max-connections", "0"})
                  .status,
              64);
}

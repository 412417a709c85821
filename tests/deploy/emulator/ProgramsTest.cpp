// The programs around the device protocol: rqdevsim as a process and the
// `rqpcli device` commands against it, with their texts and exit statuses.

#include "deploy/protocol/DeviceProtocol.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

using namespace rqtest;

namespace {

struct ProgramRun {
    int status;
    std::string out;
};

// Runs a program of the program directory; standard output is collected,
// standard error dropped.
ProgramRun run(const std::string& program, const std::vector<std::string>& args) {
    std::string command = "'" + programDir() + "/" + program + "'";
    for (const auto& a : args)
        command += " '" + a + "'";
    command += " 2>/dev/null";
    ProgramRun result{-1, {}};
    std::FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe)
        return result;
    char buffer[4096];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
        result.out.append(buffer, n);
    const int status = ::pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

class Simulator {
public:
    Simulator(const std::vector<std::string>& args, const std::string& logFile) {
        std::vector<std::string> all = {programDir() + "/rqdevsim"};
        all.insert(all.end(), args.begin(), args.end());
        std::vector<char*> argv;
        for (auto& a : all)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 1, logFile.c_str(), O_WRONLY | O_CREAT, 0644);
        posix_spawn(&pid_, argv[0], &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
    }
    // SIGTERM, then the exit status.
    int stop() {
        if (pid_ <= 0)
            return -1;
        ::kill(pid_, SIGTERM);
        int status = 0;
        ::waitpid(pid_, &status, 0);
        pid_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    ~Simulator() { stop(); }

private:
    pid_t pid_ = 0;
};

} // namespace

TEST(Programs, RqdevsimAndTheDeviceCommands) {
    TempDir dir;
    const std::string ip = "127.62.252.1";
    Simulator sim({"--address", ip, "--root", dir.file("root"), "--type", "HMI-9", "--version-date",
                   "20240101"},
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
    EXPECT_EQ(readFile(dir.file("back")), "payload");
    EXPECT_EQ(sim.stop(), 0);
    // A start line, one line per request that reached it, a stop line.
    const std::string log = readFile(dir.file("log"));
    // (the readiness poll, type, clock, put, get and the refused get).
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 2 + 6) << log;
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
}

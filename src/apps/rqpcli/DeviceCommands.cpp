// Device commands: device type, device put, device get, device clock, device
// monitor. Each exits with its transfer result (0 to 4).

#include "CliSupport.h"
#include "Command.h"
#include "core/FileUtil.h"
#include "deploy/protocol/DeviceProtocol.h"
#include "deploy/transfer/DeployJobs.h"

#include <chrono>
#include <iostream>
#include <thread>

using namespace rqcli;

namespace {

const char* resultText(rq::TransferResult result) {
    switch (result) {
    case rq::kTransferOk:
        return "done";
    case rq::kCannotConnect:
        return "can not connect to the device";
    case rq::kCommError:
        return "communication error";
    case rq::kLocalFileError:
        return "can not open file or other error";
    case rq::kTypeMismatch:
        return "device type differs";
    }
    return "unknown result";
}

// Reports a transfer without a dialog text of its own; a failure says what the
// device did when that is known (refused, did not answer in time).
int report(const std::string& what, rq::TransferResult result) {
    if (result == rq::kTransferOk) {
        std::cout << what << ": " << resultText(result) << "\n";
        return result;
    }
    const std::string detail = rq::transferFailureText(rq::lastTransferFailure());
    std::cerr << "rqpcli: " << what << ": "
              << (result == rq::kCommError && !detail.empty() ? detail
                                                              : std::string(resultText(result)))
              << (result != rq::kCommError && !detail.empty() ? " (" + detail + ")" : "") << "\n";
    return result;
}

// After a dialog's own text: what the device did, when known.
void printDetail() {
    const std::string detail = rq::transferFailureText(rq::lastTransferFailure());
    if (!detail.empty())
        std::cerr << "rqpcli: " << detail << "\n";
}

int runType(const std::vector<std::string>& args) {
    Options opt({}, {});
    int status;
    if (!parseOrExit(commandNamed("device type"), opt, args, 1, 1, &status))
        return status;
    char type[128];
    const rq::TransferResult result = rq::QueryDeviceType(opt.positional()[0], type, sizeof type);
    if (result != rq::kTransferOk)
        return report("device type", result);
    std::cout << type << "\n";
    return result;
}

int runPut(const std::vector<std::string>& args) {
    Options opt({"dir", "name", "extra"}, {"quiet"});
    int status;
    if (!parseOrExit(commandNamed("device put"), opt, args, 2, 2, &status))
        return status;
    const std::string& local = opt.positional()[0];
    std::string name = opt.value("name").value_or("");
    if (name.empty()) {
        const std::size_t slash = local.find_last_of('/');
        name = slash == std::string::npos ? local : local.substr(slash + 1);
    }
    const std::string dir = opt.value("dir").value_or("/tmp");
    TerminalProgress progress(opt.flag("quiet"));
    rq::TransferControl control;
    rq::meterProgress(control, name,
                      [&](const rq::TransferProgress& p) { progress.onProgress(p); });
    const rq::TransferResult result = rq::PutFile(local, name, dir, opt.positional()[1], 2,
                                                  opt.value("extra").value_or(""), &control);
    progress.finish();
    return report("put " + local + " as " + dir + "/" + name, result);
}

int runGet(const std::vector<std::string>& args) {
    Options opt({}, {"quiet"});
    int status;
    if (!parseOrExit(commandNamed("device get"), opt, args, 3, 3, &status))
        return status;
    const auto& p = opt.positional();
    TerminalProgress progress(opt.flag("quiet"));
    rq::TransferControl control;
    rq::meterProgress(control, p[0],
                      [&](const rq::TransferProgress& t) { progress.onProgress(t); });
    const rq::TransferResult result = rq::GetFile(p[0], p[1], p[2], &control);
    progress.finish();
    return report("get " + p[0] + " into " + p[1], result);
}

// The dialogs' texts: those with the information icon on standard output, the
// others on standard error.
void printOutcome(const rq::TransferOutcome& o) {
    if (o.message.empty())
        return;
    (o.icon == rq::MessageIcon::Information ? std::cout : std::cerr) << o.message << "\n";
}

int runClock(const std::vector<std::string>& args) {
    Options opt({}, {});
    int status;
    if (!parseOrExit(commandNamed("device clock"), opt, args, 1, 1, &status))
        return status;
    // Result 3 shows nothing, as in the clock dialog.
    const rq::TransferOutcome o = rq::adjustDeviceClock(opt.positional()[0]);
    printOutcome(o);
    if (o.result == rq::kCommError)
        printDetail();
    return o.checkFailed ? kExitCheckFailed : o.result;
}

int runMonitor(const std::vector<std::string>& args) {
    Options opt({"count"}, {});
    int status;
    const Command& command = commandNamed("device monitor");
    if (!parseOrExit(command, opt, args, 1, 1, &status))
        return status;
    long count = 1;
    if (auto c = opt.value("count")) {
        std::size_t used = 0;
        try {
            count = std::stol(*c, &used);
        } catch (...) {
            used = 0;
        }
        if (used != c->size() || count < 1) {
            std::cerr << "rqpcli device monitor: --count needs a positive number\n"
                      << "usage: rqpcli " << command.usage << "\n";
            return kExitUsage;
        }
    }
    const std::string& ip = opt.positional()[0];
    rq::RunningMonitor monitor(rq::programDirectory());
    const rq::TransferOutcome started = monitor.start(ip);
    if (!started.succeeded) {
        printOutcome(started);
        if (started.result == rq::kCommError)
            printDetail();
        return started.checkFailed ? kExitCheckFailed : started.result;
    }
    int result = rq::kTransferOk;
    for (long i = 0; i < count; ++i) {
        // Like the dialog's timer, the first poll comes one interval after the start.
        std::this_thread::sleep_for(std::chrono::milliseconds(rq::RunningMonitor::kPollIntervalMs));
        rq::RunningMonitor::Fields f;
        monitor.poll(f);
        result = monitor.lastPollResult();
        std::cout << "Slave IP Address: " << ip << "\n"
                  << "system\n"
                  << "  Total Memory: " << f.totalMemory << "\n"
                  << "  Memory Usage: " << f.usedMemory << "\n"
                  << "  Free Memory: " << f.freeMemory << "\n"
                  << "  CPU Utilization : " << f.cpuUsage << "\n"
                  << "application\n"
                  << "  Memory Usage: " << f.appMemory << "\n"
                  << "  Memory Usage Rate: " << f.appMemoryRate << "\n";
        if (i + 1 < count)
            std::cout << "\n";
        std::cout.flush();
    }
    monitor.quit();
    return result;
}

CommandRegistration regType({"device type", "device type IP",
                             "prints the HMI type name that the device at IP reports", runType});
CommandRegistration
    regPut({"device put", "device put LOCAL IP [--dir /tmp] [--name NAME] [--extra TEXT] [--quiet]",
            "sends the file LOCAL to the device as DIR/NAME (NAME defaults to "
            "LOCAL's file name; the extra text is the package password)",
            runPut});
CommandRegistration regGet({"device get", "device get REMOTE LOCAL IP [--quiet]",
                            "fetches the device's file REMOTE into LOCAL", runGet});
CommandRegistration regClock({"device clock", "device clock IP",
                              "sets the device clock to this computer's time", runClock});
CommandRegistration regMonitor({"device monitor", "device monitor IP [--count N]",
                                "starts the device's monitor service and shows its memory and "
                                "CPU figures N times, every 2 seconds",
                                runMonitor});

} // namespace

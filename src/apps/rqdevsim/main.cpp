// rqdevsim: an emulated device on the network for testing and for work without
// hardware. Serves the transfer protocol on one address until interrupted.

#include "deploy/emulator/DeviceEmulator.h"

#include "RqVersion.h"

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <pthread.h>
#include <string>
#include <vector>

namespace {

constexpr int kExitUsage = 64;

const char* kUsage =
    "usage: rqdevsim --address A --root DIR --type NAME [--version-date YYYYMMDD]\n"
    "                [--ready-after SECONDS] [--fault refuse|silent|cut|bad-length|busy]\n"
    "                [--max-connections N]\n"
    "       rqdevsim --version\n"
    "Listens on A at the ports 8100, 8102, 8103 and 8104 and keeps the device's\n"
    "files under DIR. Serves at most N connections at once (default 64); more are\n"
    "closed at once. Stops on SIGINT or SIGTERM.\n";

int usageError(const std::string& text) {
    std::cerr << "rqdevsim: " << text << "\n" << kUsage;
    return kExitUsage;
}

// A whole number of at most six digits.
bool parseSeconds(const std::string& text, int& seconds) {
    if (text.empty() || text.size() > 6 ||
        text.find_first_not_of("0123456789") != std::string::npos)
        return false;
    seconds = std::stoi(text);
    return true;
}

} // namespace

int main(int argc, char** argv) {
    rq::EmulatorOptions options;
    options.log = &std::cout;
    std::vector<std::string> args(argv + 1, argv + argc);
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--help" || a == "-h") {
            std::cout << kUsage;
            return 0;
        }
        if (a == "--version") {
            std::cout << "rqdevsim " << RQ_VERSION << "\n";
            return 0;
        }
        if (i + 1 >= args.size())
            return usageError(a.compare(0, 2, "--") == 0 ? "option " + a + " needs a value"
                                                         : "unexpected argument " + a);
        const std::string& value = args[++i];
        if (a == "--address") {
            options.address = value;
        } else if (a == "--root") {
            options.root = value;
        } else if (a == "--type") {
            options.type = value;
        } else if (a == "--version-date") {
            options.versionDate = value;
        } else if (a == "--ready-after") {
            if (!parseSeconds(value, options.readyAfterSeconds))
                return usageError("--ready-after needs a whole number of seconds");
        } else if (a == "--max-connections") {
            int count = 0;
            if (!parseSeconds(value, count) || count < 1 || count > 4096)
                return usageError("--max-connections needs a number from 1 to 4096");
            options.maxConnections = count;
        } else if (a == "--fault") {
            auto fault = rq::parseEmulatorFault(value);
            if (!fault)
                return usageError("unknown fault " + value);
            options.fault = *fault;
        } else {
            return usageError("unknown option " + a);
        }
    }
    if (options.address.empty() || options.root.empty() || options.type.empty())
        return usageError("--address, --root and --type are required");

    // The signals are taken by sigwait below, never by a serving thread.
    sigset_t stopSignals;
    sigemptyset(&stopSignals);
    sigaddset(&stopSignals, SIGINT);
    sigaddset(&stopSignals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);

    rq::DeviceEmulator emulator(options);
    std::string error;
    if (!emulator.start(&error)) {
        std::cerr << "rqdevsim: " << error << "\n";
        return 1;
    }
    std::cout << "rqdevsim: device \"" << options.type << "\" on " << options.address
              << " (ports 8100, 8102, 8103, 8104), root " << options.root
              << (options.fault != rq::EmulatorFault::None
                      ? std::string(", fault ") + rq::emulatorFaultName(options.fault)
                      : std::string())
              << std::endl;
    int signal = 0;
    sigwait(&stopSignals, &signal);
    emulator.stop();
    std::cout << "rqdevsim: stopped" << std::endl;
    return 0;
}

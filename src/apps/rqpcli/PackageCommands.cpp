// Package commands: package wrap, package unwrap.

#include "Command.h"
#include "core/TextEncoding.h"
#include "deploy/cipher/PackageFile.h"

#include <iostream>

using namespace rqcli;

namespace {

// The password is typed in UTF-8; the device compares the bytes of its code page.
std::optional<std::string> devicePassword(const Options& opt) {
    if (auto p = opt.value("password"))
        return rq::toDeviceBytes(*p);
    return std::nullopt;
}

int runWrap(const std::vector<std::string>& args) {
    Options opt({"mode", "password"}, {});
    int status;
    const Command& command = commandNamed("package wrap");
    if (!parseOrExit(command, opt, args, 2, 2, &status))
        return status;
    int mode = opt.value("password") ? 2 : 1;
    if (auto m = opt.value("mode")) {
        if (*m != "0" && *m != "1" && *m != "2") {
            std::cerr << "rqpcli package wrap: --mode must be 0, 1 or 2\n"
                      << "usage: rqpcli " << command.usage << "\n";
            return kExitUsage;
        }
        mode = (*m)[0] - '0';
    }
    std::string error;
    if (!rq::wrapPackage(opt.positional()[0], opt.positional()[1], mode, devicePassword(opt),
                         &error))
        return fail(error);
    return kExitOk;
}

int runUnwrap(const std::vector<std::string>& args) {
    Options opt({"password"}, {});
    int status;
    if (!parseOrExit(commandNamed("package unwrap"), opt, args, 2, 2, &status))
        return status;
    std::string error;
    if (!rq::unwrapPackage(opt.positional()[0], opt.positional()[1], devicePassword(opt), &error))
        return fail(error);
    return kExitOk;
}

CommandRegistration regWrap({"package wrap", "package wrap SRC DST [--mode 0|1|2] [--password P]",
                             "wraps SRC into the package DST (mode 2 when a password is given, "
                             "else mode 1; mode 0 is not enciphered)",
                             runWrap});
CommandRegistration regUnwrap({"package unwrap", "package unwrap SRC DST [--password P]",
                               "unwraps the package SRC into DST; a wrong password gives "
                               "different content, not an error",
                               runUnwrap});

} // namespace

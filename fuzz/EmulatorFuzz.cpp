// The emulated device's request handling against a client that sends arbitrary
// bytes.
//
// Input: byte 0 picks the port (8100 files, 8102 update status, 8103 monitor, 8104
// clock), the rest is everything the client sends on one connection. The device
// (no listeners, its root in the scratch directory) serves the bytes through one end
// of a socket pair on this thread; a second thread reads and drops its replies.
// Puts land in the device's root, and a put of /tmp/rqupdate.rqp goes through the
// whole package path: unwrapping, the archive checks and the unpacking.
//
// With RQ_FUZZ_SEED_DIR set the target writes one well-formed request per command
// there (a project package, an upgrade and a start-up image among them) and ends.

#include "FuzzSupport.h"

#include "deploy/cipher/PackageFile.h"
#include "deploy/emulator/DeviceEmulator.h"
#include "deploy/protocol/DeviceProtocol.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace rq;

constexpr int kPorts[] = {kFilePort, kUpdatePort, kMonitorPort, kClockPort};

std::unique_ptr<DeviceEmulator> device;

std::string be32(uint32_t v) {
    return {char(v >> 24), char(v >> 16), char(v >> 8), char(v)};
}

std::string counted(const std::string& bytes) {
    return be32(static_cast<uint32_t>(bytes.size() + 1)) + bytes + std::string(1, '\0');
}

std::string frame(uint8_t command, const std::string& payload) {
    return std::string(1, char(command)) + be32(static_cast<uint32_t>(payload.size())) + payload;
}

std::string put(const std::string& name, const std::string& dir, const std::string& extra,
                const std::string& content) {
    return frame(2, counted(name) + counted(dir)) + "\2" + counted(extra) +
           be32(static_cast<uint32_t>(content.size())) + content;
}

void setUp() {
    fuzz::useSourceProgramDirectory();
    const std::string root = fuzz::scratchDir() + "/device";
    EmulatorOptions options;
    options.address = "127.0.0.1";
    options.root = root;
    options.type = "RQ-HMI800";
    options.versionDate = "20240101";
    options.listen = false;
    options.idleWaitMs = 2000;
    device = std::make_unique<DeviceEmulator>(options);
    std::string error;
    if (!device->start(&error)) {
        std::fprintf(stderr, "rqfuzz: cannot start the device: %s\n", error.c_str());
        std::abort();
    }
    std::atexit([] { device.reset(); });
}

// A gzip'd tar of the given files, made with the system's tar, as a package.
std::string packageOf(const std::string& work, const std::string& files, int mode,
                      const std::string& password) {
    const std::string archive = work + "/a.tar.gz";
    const std::string command = "tar -czf '" + archive + "' -C '" + work + "/src' " + files;
    std::string package = work + "/p.rqp";
    std::string error;
    if (std::system(command.c_str()) != 0 ||
        !wrapPackage(archive, package, mode,
                     password.empty() ? std::nullopt : std::optional<std::string>(password),
                     &error))
        return {};
    std::FILE* f = std::fopen(package.c_str(), "rb");
    std::string bytes;
    char buffer[4096];
    std::size_t got;
    while (f && (got = std::fread(buffer, 1, sizeof buffer, f)) > 0)
        bytes.append(buffer, got);
    if (f)
        std::fclose(f);
    return bytes;
}

void writeSeeds(const std::string& dir) {
    namespace fs = std::filesystem;
    const std::string work = fuzz::scratchDir() + "/seeds";
    fs::create_directories(work + "/src/hmi");
    fuzz::writeSeed(work + "/src", "rqrun.xml", "<rqrun name=\"p\"/>\r\n");
    fuzz::writeSeed(work + "/src/hmi", "w.xml", "<w/>");
    fuzz::writeSeed(work + "/src", "version", "Movaro V1.0 seed\n20250101\n");
    auto seed = [&](const std::string& name, int port, const std::string& bytes) {
        const int index = port == kFilePort      ? 0
                          : port == kUpdatePort  ? 1
                          : port == kMonitorPort ? 2
                                                 : 3;
        fuzz::writeSeed(dir, name, std::string(1, char(index)) + bytes);
    };
    seed("type", kFilePort, frame(1, ""));
    seed("put", kFilePort, put("f.bin", "/tmp", "", "content"));
    seed("put-home", kFilePort, put("x", "/home/app/datafile", "pw", "x"));
    seed("killprog", kFilePort, put("killprog.rqp", "/tmp", "", "stop"));
    seed("rqmon", kFilePort, put("rqmon.rqp", "/tmp", "", "monitor"));
    seed("project", kFilePort,
         put("rqupdate.rqp", "/tmp", "pw", packageOf(work, "rqrun.xml hmi", 2, "pw")));
    seed("upgrade", kFilePort, put("rqupdate.rqp", "/tmp", "", packageOf(work, "version", 1, "")));
    seed("get", kFilePort, frame(3, counted("/home/app/version")));
    seed("put-then-get", kFilePort,
         put("g", "/tmp", "", "abc") + frame(3, counted("/tmp/g")) + frame(1, ""));
    seed("update", kUpdatePort, frame(2, ""));
    seed("monitor", kMonitorPort, frame(1, "") + frame(1, "") + frame(2, ""));
    seed("clock", kClockPort, frame(7, std::string("\x01\x00\x00\x00", 4)));
}

void serveInput(const uint8_t* data, std::size_t size) {
    if (size < 1)
        return;
    const int port = kPorts[data[0] % 4];
    int pair[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, pair) != 0)
        std::abort();
    // The client's side: its bytes, then end of stream; the device's replies are
    // read and dropped so that it never waits on a full buffer.
    std::thread client([fd = pair[1], data, size] {
        const uint8_t* p = data + 1;
        std::size_t left = size - 1;
        char sink[4096];
        bool open = true;
        while (open) {
            pollfd waits{fd, static_cast<short>(POLLIN | (left > 0 ? POLLOUT : 0)), 0};
            if (::poll(&waits, 1, 5000) <= 0)
                break;
            if (waits.revents & POLLIN) {
                const ssize_t got = ::recv(fd, sink, sizeof sink, MSG_DONTWAIT);
                if (got == 0 || (got < 0 && errno != EAGAIN && errno != EINTR))
                    open = false;
            }
            if (left > 0 && (waits.revents & POLLOUT)) {
                const ssize_t sent = ::send(fd, p, left, MSG_DONTWAIT | MSG_NOSIGNAL);
                if (sent > 0) {
                    p += sent;
                    left -= static_cast<std::size_t>(sent);
                    if (left == 0)
                        ::shutdown(fd, SHUT_WR);
                } else if (sent < 0 && errno != EAGAIN && errno != EINTR) {
                    open = false;
                }
            }
            if (waits.revents & (POLLHUP | POLLERR) && !(waits.revents & POLLIN))
                open = false;
        }
    });
    if (size == 1)
        ::shutdown(pair[1], SHUT_WR);
    device->serveStream(pair[0], port);
    ::shutdown(pair[0], SHUT_RDWR);
    client.join();
    ::close(pair[0]);
    ::close(pair[1]);
}

const fuzz::ReaderTarget kTarget{"emulator", setUp, serveInput, writeSeeds};

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::startTarget(kTarget);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    serveInput(data, size);
    return 0;
}

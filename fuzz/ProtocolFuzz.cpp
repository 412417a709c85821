// The device protocol client against a device that answers with arbitrary bytes.
//
// Input: byte 0 picks the operation, byte 1 sizes the caller's buffer where the
// operation takes one, the rest is everything the device sends back. The device is a
// listener on a loopback address of this process on the fixed ports; for each input
// one server thread accepts the client's connection, sends the bytes at once, closes
// its sending side and reads the request until the client closes. The receive
// functions are also fed directly through a socket pair.
//
// With RQ_FUZZ_SEED_DIR set the target writes one well-formed exchange per
// operation there and ends.

#include "FuzzSupport.h"

#include "deploy/protocol/DeviceProtocol.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <netinet/in.h>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace rq;

enum Operation {
    kReceiveFunctions,
    kQueryDeviceType,
    kPutFile,
    kGetFile,
    kQueryUpdateDone,
    kSetClock,
    kPollStatus,
    kOperationCount
};

constexpr int kPorts[] = {kFilePort, kUpdatePort, kMonitorPort, kClockPort};
int listeners[4] = {-1, -1, -1, -1};
std::string deviceIp;
std::string localFile; // what PutFile sends

#ifdef MSG_NOSIGNAL
constexpr int kSendFlags = MSG_NOSIGNAL;
#else
constexpr int kSendFlags = 0;
#endif

int listenOn(const std::string& ip, int port) {
    int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    if (fd < 0)
        return -1;
    int one = 1;
    ::setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = ::inet_addr(ip.c_str());
    if (::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(fd, 8) != 0) {
        ::close(fd);
        return -1;
    }
    return fd;
}

// A loopback address of its own per process, so that parallel runs and the
// emulator tests do not meet on the fixed ports.
void startDevice() {
    const unsigned pid = static_cast<unsigned>(::getpid());
    for (unsigned attempt = 0; attempt < 200; ++attempt) {
        const unsigned n = pid + attempt * 7919;
        const std::string ip = "127." + std::to_string(100 + n % 100) + "." +
                               std::to_string((n / 100) % 250) + "." +
                               std::to_string(1 + (n / 25000) % 250);
        bool all = true;
        for (int i = 0; i < 4 && all; ++i)
            all = (listeners[i] = listenOn(ip, kPorts[i])) >= 0;
        if (all) {
            deviceIp = ip;
            return;
        }
        for (int& fd : listeners)
            if (fd >= 0)
                ::close(fd), fd = -1;
    }
    std::fprintf(stderr, "rqfuzz: no loopback address with the device ports free\n");
    std::abort();
}

int listenerFor(int port) {
    for (int i = 0; i < 4; ++i)
        if (kPorts[i] == port)
            return listeners[i];
    return -1;
}

void sendAllBytes(int fd, const uint8_t* data, std::size_t size) {
    while (size > 0) {
        ssize_t sent = ::send(fd, data, size, kSendFlags);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return; // the client has gone: the rest is never read
        data += sent;
        size -= static_cast<std::size_t>(sent);
    }
}

// One connection: the reply goes out whole, then the request is read to its end.
void serveOnce(int listener, const uint8_t* reply, std::size_t size) {
    pollfd waitFor{listener, POLLIN, 0};
    if (::poll(&waitFor, 1, 10000) <= 0)
        return; // the client never connected; the run goes on
    int fd = ::accept(listener, nullptr, nullptr);
    if (fd < 0)
        return;
    sendAllBytes(fd, reply, size);
    ::shutdown(fd, SHUT_WR);
    char sink[4096];
    for (;;) {
        pollfd readable{fd, POLLIN, 0};
        if (::poll(&readable, 1, 10000) <= 0)
            break;
        ssize_t got = ::recv(fd, sink, sizeof sink, 0);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
    }
    ::close(fd);
}

void receiveFunctions(const uint8_t* reply, std::size_t size, uint32_t capacity) {
    int pair[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, pair) != 0)
        std::abort();
    // A socket pair holds some hundred KiB; more would block the writer.
    sendAllBytes(pair[1], reply, std::min<std::size_t>(size, 64 * 1024));
    ::shutdown(pair[1], SHUT_WR);
    uint8_t type = 0;
    uint32_t length = 0;
    std::vector<char> buffer(capacity);
    if (RecvReplyHeader(pair[0], &type, &length))
        for (int i = 0; i < 16 && RecvCountedString(pair[0], buffer.data(), capacity); ++i) {
        }
    ::close(pair[0]);
    ::close(pair[1]);
}

void runClient(Operation op, uint32_t capacity) {
    switch (op) {
    case kQueryDeviceType: {
        // Exactly the caller's capacity, so that a write past it is caught.
        std::vector<char> buffer(capacity);
        QueryDeviceType(deviceIp, buffer.data(), capacity);
        break;
    }
    case kPutFile:
        PutFile(localFile, "rqupdate.rqp", "/tmp", deviceIp, 1, "secret");
        break;
    case kGetFile: {
        const std::string target = rq::fuzz::scratchDir() + "/fetched";
        GetFile("/usr/rqrun/version", target, deviceIp);
        ::unlink(target.c_str());
        break;
    }
    case kQueryUpdateDone:
        QueryUpdateDone(deviceIp);
        break;
    case kSetClock:
        SetDeviceClockAt(deviceIp, 1700000000u);
        break;
    case kPollStatus: {
        MonitorSocket sock = 0;
        DeviceStatus status{};
        // A second poll only on a kept connection: a new one would find no server.
        if (PollDeviceStatus(deviceIp, sock, status) == kTransferOk && sock != 0) {
            // What the monitor shows of a good reply.
            FormatMemory(status.totalMemory);
            FormatRate(status.cpuUsage);
            PollDeviceStatus(deviceIp, sock, status);
        }
        EndDeviceMonitor(sock);
        break;
    }
    default:
        break;
    }
}

int portOf(Operation op) {
    switch (op) {
    case kQueryUpdateDone:
        return kUpdatePort;
    case kSetClock:
        return kClockPort;
    case kPollStatus:
        return kMonitorPort;
    default:
        return kFilePort;
    }
}

// --- seeds -----------------------------------------------------------------------

void put32(std::string& out, uint32_t v) {
    for (int shift = 24; shift >= 0; shift -= 8)
        out += static_cast<char>(v >> shift);
}

std::string header(uint8_t type, uint32_t length) {
    std::string out(1, static_cast<char>(type));
    put32(out, length);
    return out;
}

std::string counted(const std::string& text) {
    std::string out;
    put32(out, static_cast<uint32_t>(text.size() + 1));
    return out + text + '\0';
}

std::string input(Operation op, uint8_t capacity, const std::string& reply) {
    return std::string(1, static_cast<char>(op)) + static_cast<char>(capacity) + reply;
}

void writeSeeds(const std::string& dir) {
    using rq::fuzz::writeSeed;
    std::string status(1, '\1');
    for (uint32_t v : {65536u, 32768u, 32768u, 4096u, 125u, 63u})
        for (int i = 0; i < 4; ++i)
            status += static_cast<char>(v >> (8 * i));
    writeSeed(dir, "receive",
              input(kReceiveFunctions, 64, header(1, 12) + counted("RQ-7000") + counted("/tmp")));
    writeSeed(dir, "type", input(kQueryDeviceType, 64, header(1, 12) + counted("RQ-7000")));
    writeSeed(dir, "type_long", input(kQueryDeviceType, 8, header(1, 12) + counted("RQ-7000-X")));
    writeSeed(dir, "put", input(kPutFile, 0, header(2, 1) + '\1'));
    writeSeed(dir, "get",
              input(
                  kGetFile, 0, header(3, 1) + '\1' + [] {
                      std::string s;
                      put32(s, 12);
                      return s + "Movaro V1.0\n";
                  }()));
    writeSeed(dir, "update", input(kQueryUpdateDone, 0, header(2, 0)));
    writeSeed(dir, "clock", input(kSetClock, 0, header(7, 1) + '\1'));
    writeSeed(dir, "poll", input(kPollStatus, 0, header(1, 25) + status + header(1, 25) + status));
    writeSeed(dir, "poll_refused", input(kPollStatus, 0, header(1, 1) + '\0'));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    rq::fuzz::useSourceProgramDirectory();
    if (const char* seedDir = std::getenv("RQ_FUZZ_SEED_DIR"); seedDir && *seedDir) {
        std::filesystem::create_directories(seedDir);
        writeSeeds(seedDir);
        std::exit(0);
    }
    const uint8_t content[] = "package content";
    localFile = rq::fuzz::writeScratchFile("put.bin", content, sizeof content);
    startDevice();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2)
        return 0;
    const auto op = static_cast<Operation>(data[0] % kOperationCount);
    const uint32_t capacity = 1u + data[1]; // 1 .. 256
    const uint8_t* reply = data + 2;
    const std::size_t replySize = size - 2;
    if (op == kReceiveFunctions) {
        receiveFunctions(reply, replySize, capacity);
        return 0;
    }
    std::thread device(serveOnce, listenerFor(portOf(op)), reply, replySize);
    runClient(op, capacity);
    device.join();
    return 0;
}

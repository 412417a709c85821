#include "deploy/protocol/DeviceProtocol.h"

#include "core/TextEncoding.h"

#include <algorithm>
#include <arpa/inet.h>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <mutex>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace rq {

namespace {

// Every name and path of a request is packed into a buffer of this size.
constexpr std::size_t kCountedBufferSize = 1024;
// File contents move in pieces of this size. The device sees one byte stream, so
// the piece size is free; a large one keeps the system calls few.
constexpr std::size_t kContentChunk = 1024 * 1024;

#ifdef MSG_NOSIGNAL
constexpr int kSendFlags = MSG_NOSIGNAL;
#else
constexpr int kSendFlags = 0;
#endif

void closeSocket(int sock) {
    if (sock >= 0)
        ::close(sock);
}

void putBigEndian32(unsigned char* out, uint32_t value) {
    out[0] = static_cast<unsigned char>(value >> 24);
    out[1] = static_cast<unsigned char>(value >> 16);
    out[2] = static_cast<unsigned char>(value >> 8);
    out[3] = static_cast<unsigned char>(value);
}

uint32_t getBigEndian32(const unsigned char* in) {
    return (uint32_t(in[0]) << 24) | (uint32_t(in[1]) << 16) | (uint32_t(in[2]) << 8) |
           uint32_t(in[3]);
}

uint32_t getLittleEndian32(const unsigned char* in) {
    return uint32_t(in[0]) | (uint32_t(in[1]) << 8) | (uint32_t(in[2]) << 16) |
           (uint32_t(in[3]) << 24);
}

// Counted string of a UTF-8 text, in the device code page, packed with the bound
// of PackCountedString.
std::size_t packDeviceString(char* buffer, std::size_t capacity, const std::string& utf8) {
    const std::string bytes = toDeviceBytes(utf8);
    return PackCountedString(buffer, capacity, bytes.c_str());
}

// Closes a file on every path.
struct FileCloser {
    std::FILE* file;
    ~FileCloser() {
        if (file)
            std::fclose(file);
    }
};

} // namespace

int ConnectDevice(const std::string& ip, int port) {
    int sock = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    if (sock < 0) {
        std::fputs("create sock error!\n", stderr);
        return -1;
    }
    // 0 means "not connected" to the monitor's caller; never hand out descriptor 0.
    if (sock == 0) {
        int moved = ::fcntl(sock, F_DUPFD_CLOEXEC, 1);
        ::close(sock);
        if (moved < 0) {
            std::fputs("create sock error!\n", stderr);
            return -1;
        }
        sock = moved;
    }
    ::fcntl(sock, F_SETFD, FD_CLOEXEC);
#ifdef SO_NOSIGPIPE
    int one = 1;
    ::setsockopt(sock, SOL_SOCKET, SO_NOSIGPIPE, &one, sizeof one);
#endif
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = ::inet_addr(ip.c_str());
    int rc;
    do {
        rc = ::connect(sock, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    } while (rc < 0 && errno == EINTR);
    if (rc < 0) {
        std::fputs("can't connect to server!\n", stderr);
        ::close(sock);
        return -1;
    }
    return sock;
}

namespace {

using Clock = std::chrono::steady_clock;

std::mutex limitsMutex;
ProtocolLimits currentLimits;
thread_local TransferFailure lastFailure = TransferFailure::None;

// Waits until the socket is ready for `events` at most `waitMs` milliseconds; true
// when it is (or reports an error or hang-up, which the next call then shows).
bool waitReady(int sock, short events, int waitMs) {
    if (waitMs <= 0)
        return false;
    pollfd waitFor{sock, events, 0};
    int ready;
    do {
        ready = ::poll(&waitFor, 1, waitMs);
    } while (ready < 0 && errno == EINTR);
    return ready > 0 && (waitFor.revents & (events | POLLHUP | POLLERR)) != 0;
}

// One command's conversation on a connected socket. Every wait is bounded by its
// own limit and by the operation's deadline, which grows with the bytes moved (see
// ProtocolLimits); this is the only place that decides how long the client waits.
class Exchange {
public:
    explicit Exchange(int sock, bool withDeadline = true)
        : sock_(sock), limits_(protocolLimits()), start_(Clock::now()),
          withDeadline_(withDeadline) {}

    bool send(const void* bytes, std::size_t count) {
        const char* p = static_cast<const char*>(bytes);
        while (count > 0) {
            ssize_t sent = ::send(sock_, p, count, kSendFlags | MSG_DONTWAIT);
            if (sent < 0 && errno == EINTR)
                continue;
            if (sent < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
                if (!waitReady(sock_, POLLOUT, waitMs(limits_.sendWaitSeconds)))
                    return timedOut();
                continue;
            }
            if (sent < 0)
                return false;
            p += sent;
            count -= static_cast<std::size_t>(sent);
            moved(static_cast<std::size_t>(sent));
        }
        return true;
    }

    bool sendFrame(uint8_t command, uint32_t length, const void* payload) {
        unsigned char header[5];
        header[0] = command;
        putBigEndian32(header + 1, length);
        if (!send(header, 1) || !send(header + 1, 4))
            return false;
        return length == 0 || send(payload, length);
    }

    // Exactly `count` bytes (a count of 0 fails); *received tells how many came.
    bool recv(void* buffer, std::size_t count, std::size_t* received = nullptr,
              int waitSeconds = -1) {
        if (waitSeconds < 0)
            waitSeconds = limits_.receiveWaitSeconds;
        char* p = static_cast<char*>(buffer);
        std::size_t got = 0;
        if (received)
            *received = 0;
        if (count == 0)
            return false;
        while (got < count) {
            if (!waitReady(sock_, POLLIN, waitMs(waitSeconds)))
                return timedOut();
            ssize_t n;
            do {
                n = ::recv(sock_, p + got, count - got, 0);
            } while (n < 0 && errno == EINTR);
            if (n <= 0)
                return false;
            got += static_cast<std::size_t>(n);
            if (received)
                *received = got;
            moved(static_cast<std::size_t>(n));
        }
        return true;
    }

    bool replyHeader(uint8_t* type, uint32_t* length) {
        unsigned char lengthBytes[4];
        if (!recv(type, 1) || !recv(lengthBytes, 4))
            return false;
        *length = getBigEndian32(lengthBytes);
        return true;
    }

    bool countedString(char* buffer, uint32_t capacity) {
        unsigned char lengthBytes[4];
        if (!recv(lengthBytes, 4))
            return false;
        const uint32_t n = getBigEndian32(lengthBytes);
        return n <= capacity && recv(buffer, n);
    }

    // A status byte that must be `wanted` (or, with wanted 0, anything but 0);
    // another value is the device's refusal.
    bool status(unsigned char* value, bool (*accepted)(unsigned char)) {
        if (!recv(value, 1))
            return false;
        if (!accepted(*value)) {
            lastFailure = TransferFailure::DeviceRefused;
            return false;
        }
        return true;
    }

private:
    // The wait allowed now: the single wait's limit, cut to what remains of the
    // operation's deadline.
    int waitMs(int waitSeconds) const {
        long long ms = static_cast<long long>(waitSeconds) * 1000;
        if (withDeadline_) {
            const auto used =
                std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start_)
                    .count();
            const long long allowed =
                static_cast<long long>(limits_.operationBaseSeconds) * 1000 +
                static_cast<long long>(moved_ * 1000 /
                                       std::max<uint32_t>(1, limits_.minimumBytesPerSecond));
            ms = std::min(ms, allowed - used);
        }
        return static_cast<int>(std::max<long long>(0, ms));
    }
    void moved(std::size_t count) { moved_ += count; }
    bool timedOut() {
        lastFailure = TransferFailure::TimedOut;
        return false;
    }

    int sock_;
    ProtocolLimits limits_;
    Clock::time_point start_;
    bool withDeadline_;
    unsigned long long moved_ = 0;
};

bool isOne(unsigned char status) {
    return status == 1;
}

bool isNotZero(unsigned char status) {
    return status != 0;
}

} // namespace

ProtocolLimits protocolLimits() {
    std::lock_guard lock(limitsMutex);
    return currentLimits;
}

void setProtocolLimits(const ProtocolLimits& limits) {
    std::lock_guard lock(limitsMutex);
    currentLimits = limits;
}

TransferFailure lastTransferFailure() {
    return lastFailure;
}

const char* transferFailureText(TransferFailure failure) {
    switch (failure) {
    case TransferFailure::None:
        return "";
    case TransferFailure::DeviceRefused:
        return "the device refused the request";
    case TransferFailure::TimedOut:
        return "the device did not answer in time";
    case TransferFailure::NotWhole:
        return "the remote name and directory do not fit into one request";
    }
    return "";
}

int SendAll(int sock, const void* bytes, long count) {
    if (count < 1)
        return 1;
    return Exchange(sock, false).send(bytes, static_cast<std::size_t>(count)) ? 1 : 0;
}

int SendFrame(int sock, uint8_t command, uint32_t length, const void* payload) {
    return Exchange(sock, false).sendFrame(command, length, payload) ? 1 : 0;
}

int RecvExact(int sock, void* buffer, long count, int seconds) {
    if (count <= 0)
        return 0;
    return Exchange(sock, false).recv(buffer, static_cast<std::size_t>(count), nullptr, seconds)
               ? 1
               : 0;
}

int RecvReplyHeader(int sock, uint8_t* type, uint32_t* length) {
    return Exchange(sock, false).replyHeader(type, length) ? 1 : 0;
}

int RecvCountedString(int sock, char* buffer, uint32_t capacity) {
    return Exchange(sock, false).countedString(buffer, capacity) ? 1 : 0;
}

std::size_t PackCountedString(char* buffer, std::size_t capacity, const char* text) {
    if (capacity <= 4)
        return 0;
    // A bounded copy of capacity - 4 characters, then the cut at capacity - 5: the
    // text keeps at most capacity - 9 characters and the last four bytes stay unused.
    // Below a capacity of 9 that cut falls on the length field; the text then keeps
    // what fits before the buffer's end with its zero byte.
    char* out = buffer + 4;
    const std::size_t room = capacity - 4;
    std::size_t i = 0;
    for (; i < room && text[i] != '\0'; ++i)
        out[i] = text[i];
    if (i < room)
        out[i] = '\0';
    buffer[capacity - 5] = '\0';
    std::size_t length = 0;
    while (length < room && out[length] != '\0')
        ++length;
    if (length == room)
        out[--length] = '\0';
    const std::size_t n = length + 1;
    putBigEndian32(reinterpret_cast<unsigned char*>(buffer), static_cast<uint32_t>(n));
    return n + 4;
}

TransferResult QueryDeviceType(const std::string& ip, char* buffer, uint32_t capacity) {
    lastFailure = TransferFailure::None;
    int sock = ConnectDevice(ip, kFilePort);
    if (sock < 0)
        return kCannotConnect;
    Exchange device(sock);
    device.sendFrame(1, 0, nullptr);
    uint8_t type = 0;
    uint32_t length = 0;
    TransferResult result = kCommError;
    if (capacity > 0)
        std::memset(buffer, 0, capacity);
    // The text must arrive with its zero byte, so the caller gets a terminated name.
    if (device.replyHeader(&type, &length) && type == 1 && device.countedString(buffer, capacity) &&
        std::memchr(buffer, 0, capacity))
        result = kTransferOk;
    closeSocket(sock);
    return result;
}

TransferControl::~TransferControl() {
    detach();
}

void TransferControl::cancel() {
    std::lock_guard lock(m_);
    cancelled_ = true;
    if (watched_ >= 0)
        ::shutdown(watched_, SHUT_RDWR);
}

void TransferControl::reset() {
    cancelled_ = false;
}

void TransferControl::attach(int sock) {
    std::lock_guard lock(m_);
    if (watched_ >= 0)
        ::close(watched_);
    // A duplicate: cancel() may shut the connection down until detach(), even after
    // the transfer has closed its own descriptor (whose number may be reused).
    watched_ = ::fcntl(sock, F_DUPFD_CLOEXEC, 0);
    if (cancelled_ && watched_ >= 0)
        ::shutdown(watched_, SHUT_RDWR);
}

void TransferControl::detach() {
    std::lock_guard lock(m_);
    if (watched_ >= 0)
        ::close(watched_);
    watched_ = -1;
}

namespace {

// Watches one transfer's connection for the control's cancel.
struct Watch {
    TransferControl* control;
    Watch(TransferControl* c, int sock) : control(c) {
        if (control)
            control->attach(sock);
    }
    ~Watch() {
        if (control)
            control->detach();
    }
};

} // namespace

TransferResult PutFile(const std::string& localPath, const std::string& remoteName,
                       const std::string& remoteDir, const std::string& ip, uint8_t flag,
                       const std::string& extraText, TransferControl* control) {
    lastFailure = TransferFailure::None;
    FileCloser file{std::fopen(localPath.c_str(), "rb")};
    if (!file.file)
        return kLocalFileError;
    struct stat info {};
    if (::fstat(::fileno(file.file), &info) != 0 || !S_ISREG(info.st_mode) ||
        std::fseek(file.file, 0, SEEK_END) != 0)
        return kLocalFileError;
    const long size = std::ftell(file.file);
    // An empty file is never sent; the size field holds at most 4 GiB - 1.
    if (size <= 0 || static_cast<unsigned long long>(size) > 0xFFFFFFFFull)
        return kLocalFileError;
    if (std::fseek(file.file, 0, SEEK_SET) != 0)
        return kLocalFileError;

    // Both names share one 1024-byte buffer. The directory must fit whole behind the
    // name (a cut name leaves it no room): a request the device would misread is
    // refused before any connection.
    char names[kCountedBufferSize];
    const std::string dirText = toDeviceBytes(remoteDir);
    const std::size_t nameBytes = packDeviceString(names, kCountedBufferSize, remoteName);
    const std::size_t dirBytes =
        PackCountedString(names + nameBytes, kCountedBufferSize - nameBytes, dirText.c_str());
    if (dirBytes != std::strlen(dirText.c_str()) + 5) {
        lastFailure = TransferFailure::NotWhole;
        return kLocalFileError;
    }
    char extra[kCountedBufferSize];
    const std::size_t extraBytes = packDeviceString(extra, kCountedBufferSize, extraText);

    int sock = ConnectDevice(ip, kFilePort);
    if (sock < 0)
        return kCannotConnect;
    Watch watch(control, sock);
    Exchange device(sock);

    // Send results are not checked one by one: a broken connection shows as a failed
    // reply, and nothing more is sent after the first failure.
    bool sent = device.sendFrame(2, static_cast<uint32_t>(nameBytes + dirBytes), names) &&
                device.send(&flag, 1) && device.send(extra, extraBytes);
    unsigned char sizeBytes[4];
    putBigEndian32(sizeBytes, static_cast<uint32_t>(size));
    sent = sent && device.send(sizeBytes, 4);

    // Exactly the announced bytes go out; a file that shrank meanwhile is a local
    // failure, not a stream the device would misread.
    std::vector<char> buffer(kContentChunk);
    char* chunk = buffer.data();
    unsigned long remaining = static_cast<unsigned long>(size);
    while (sent && remaining > 0) {
        const std::size_t want = remaining < kContentChunk ? remaining : kContentChunk;
        const std::size_t got = std::fread(chunk, 1, want, file.file);
        if (got == 0) {
            closeSocket(sock);
            return kLocalFileError;
        }
        sent = device.send(chunk, got);
        remaining -= got;
        if (sent && control)
            control->report(static_cast<uint64_t>(size) - remaining, static_cast<uint64_t>(size));
    }
    std::fclose(file.file);
    file.file = nullptr;

    // A device that stopped taking the content is not asked for a reply it may still
    // send in full: the timed-out send already failed the operation.
    uint8_t type = 0;
    uint32_t length = 0;
    unsigned char status = 0;
    TransferResult result = kCommError;
    if ((sent || lastFailure != TransferFailure::TimedOut) && device.replyHeader(&type, &length) &&
        length == 1 && device.status(&status, isOne))
        result = kTransferOk;
    closeSocket(sock);
    return result;
}

namespace {

// A temporary file beside `target` (or beside the file a link at `target` names),
// created new with the permissions a new file gets, or -1.
int openTemporaryBeside(const std::string& target, std::string& temporary) {
    std::string real = target;
    struct stat linkInfo {};
    if (::lstat(target.c_str(), &linkInfo) == 0 && S_ISLNK(linkInfo.st_mode)) {
        if (char* resolved = ::realpath(target.c_str(), nullptr)) {
            real = resolved;
            std::free(resolved);
        }
    }
    const std::size_t slash = real.find_last_of('/');
    const std::string dir = slash == std::string::npos ? std::string() : real.substr(0, slash + 1);
    const std::string base = slash == std::string::npos ? real : real.substr(slash + 1);
    static std::atomic<unsigned> counter{0};
    for (int attempt = 0; attempt < 100; ++attempt) {
        char suffix[48];
        std::snprintf(suffix, sizeof suffix, ".%ld.%u.%d.part", static_cast<long>(::getpid()),
                      counter.fetch_add(1), attempt);
        temporary = dir + "." + base + suffix;
        int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST)
            return fd;
    }
    return -1;
}

} // namespace

TransferResult GetFile(const std::string& remotePath, const std::string& localPath,
                       const std::string& ip, TransferControl* control) {
    lastFailure = TransferFailure::None;
    char request[kCountedBufferSize];
    const std::size_t requestBytes = packDeviceString(request, kCountedBufferSize, remotePath);

    int sock = ConnectDevice(ip, kFilePort);
    if (sock < 0)
        return kCannotConnect;
    Watch watch(control, sock);
    Exchange device(sock);
    device.sendFrame(3, static_cast<uint32_t>(requestBytes), request);

    uint8_t type = 0;
    uint32_t length = 0;
    unsigned char status = 0;
    unsigned char sizeBytes[4];
    if (!device.replyHeader(&type, &length) || length != 1 || !device.status(&status, isNotZero) ||
        !device.recv(sizeBytes, 4)) {
        closeSocket(sock);
        return kCommError;
    }
    uint32_t remaining = getBigEndian32(sizeBytes);
    const uint32_t total = remaining;

    // Only now, with the device's consent, is anything written: into a temporary
    // that replaces the local file when the last byte is in.
    std::string temporary;
    const int out = openTemporaryBeside(localPath, temporary);
    if (out < 0) {
        closeSocket(sock);
        return kLocalFileError;
    }
    struct Discard {
        int fd;
        const std::string& path;
        bool keep = false;
        ~Discard() {
            if (fd >= 0)
                ::close(fd);
            if (!keep)
                ::unlink(path.c_str());
        }
    } discard{out, temporary};
    // A file that is replaced keeps its permissions.
    struct stat old {};
    if (::stat(localPath.c_str(), &old) == 0 && S_ISREG(old.st_mode))
        ::fchmod(out, old.st_mode & 07777);

    std::vector<char> buffer(kContentChunk);
    char* chunk = buffer.data();
    while (remaining > 0) {
        const std::size_t want = remaining < kContentChunk ? remaining : kContentChunk;
        if (!device.recv(chunk, want)) {
            closeSocket(sock);
            return kCommError;
        }
        for (std::size_t off = 0; off < want;) {
            ssize_t written = ::write(out, chunk + off, want - off);
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0) {
                closeSocket(sock);
                return kLocalFileError;
            }
            off += static_cast<std::size_t>(written);
        }
        remaining -= static_cast<uint32_t>(want);
        if (control)
            control->report(total - remaining, total);
    }
    closeSocket(sock);
    const int closed = ::close(out);
    discard.fd = -1;
    if (closed != 0 || ::rename(temporary.c_str(), localPath.c_str()) != 0)
        return kLocalFileError;
    discard.keep = true;
    return kTransferOk;
}

TransferResult QueryUpdateDone(const std::string& ip) {
    lastFailure = TransferFailure::None;
    int sock = ConnectDevice(ip, kUpdatePort);
    if (sock < 0)
        return kCannotConnect;
    Exchange device(sock);
    device.sendFrame(2, 0, nullptr);
    uint8_t type = 0;
    uint32_t length = 0;
    const bool ready = device.replyHeader(&type, &length) && type == 2;
    closeSocket(sock);
    return ready ? kTransferOk : kCommError;
}

TransferResult SetDeviceClock(const std::string& ip) {
    return SetDeviceClockAt(ip, static_cast<uint32_t>(std::time(nullptr)));
}

TransferResult SetDeviceClockAt(const std::string& ip, uint32_t seconds) {
    lastFailure = TransferFailure::None;
    int sock = ConnectDevice(ip, kClockPort);
    if (sock < 0)
        return kCannotConnect;
    Exchange device(sock);
    // The one value on the wire in little-endian order.
    const unsigned char payload[4] = {
        static_cast<unsigned char>(seconds), static_cast<unsigned char>(seconds >> 8),
        static_cast<unsigned char>(seconds >> 16), static_cast<unsigned char>(seconds >> 24)};
    uint8_t type = 0;
    uint32_t length = 0;
    unsigned char status = 0;
    TransferResult result = kCommError;
    if (device.sendFrame(7, 4, payload) && device.replyHeader(&type, &length) && length == 1 &&
        device.status(&status, isOne))
        result = kTransferOk;
    closeSocket(sock);
    return result;
}

TransferResult PollDeviceStatus(const std::string& ip, MonitorSocket& sock, DeviceStatus& status) {
    lastFailure = TransferFailure::None;
    if (sock == 0) {
        int connected = ConnectDevice(ip, kMonitorPort);
        if (connected < 0)
            return kCannotConnect;
        sock = connected;
    }
    auto drop = [&sock] {
        closeSocket(sock);
        sock = 0;
        return kCommError;
    };
    Exchange device(sock);
    if (!device.sendFrame(1, 0, nullptr))
        return drop();
    uint8_t type = 0;
    uint32_t length = 0;
    if (!device.replyHeader(&type, &length))
        return drop();
    if (length == 1) {
        unsigned char refusal;
        if (device.recv(&refusal, 1))
            lastFailure = TransferFailure::DeviceRefused;
        return drop();
    }
    if (length != 25)
        return drop();
    unsigned char body[25];
    if (!device.recv(body, 25))
        return drop();
    if (body[0] != 1) {
        lastFailure = TransferFailure::DeviceRefused;
        return drop();
    }
    status.totalMemory = getLittleEndian32(body + 1);
    status.usedMemory = getLittleEndian32(body + 5);
    status.freeMemory = getLittleEndian32(body + 9);
    status.appMemory = getLittleEndian32(body + 13);
    status.cpuUsage = getLittleEndian32(body + 17);
    status.appMemoryRate = getLittleEndian32(body + 21);
    return kTransferOk;
}

void EndDeviceMonitor(MonitorSocket& sock) {
    if (sock == 0)
        return;
    Exchange(sock).sendFrame(2, 0, nullptr);
    closeSocket(sock);
    sock = 0;
}

std::string FormatMemory(uint32_t kib) {
    char text[32];
    std::snprintf(text, sizeof text, "%luK", static_cast<unsigned long>(kib));
    return text;
}

std::string FormatRate(uint32_t tenths) {
    char text[32];
    std::snprintf(text, sizeof text, "%lu.%lu", static_cast<unsigned long>(tenths / 10),
                  static_cast<unsigned long>(tenths % 10));
    return text;
}

} // namespace rq

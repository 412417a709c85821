#include "deploy/protocol/DeviceProtocol.h"

#include "core/TextEncoding.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
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
// A fetched file is written in whole pieces of this size (kContentChunk is a multiple).
constexpr std::size_t kGetPiece = 1024;

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

int SendAll(int sock, const void* bytes, long count) {
    const char* p = static_cast<const char*>(bytes);
    while (count > 0) {
        ssize_t sent = ::send(sock, p, static_cast<std::size_t>(count), kSendFlags);
        if (sent < 0) {
            if (errno == EINTR)
                continue;
            return 0;
        }
        p += sent;
        count -= static_cast<long>(sent);
    }
    return 1;
}

int SendFrame(int sock, uint8_t command, uint32_t length, const void* payload) {
    unsigned char header[5];
    header[0] = command;
    putBigEndian32(header + 1, length);
    if (!SendAll(sock, header, 1) || !SendAll(sock, header + 1, 4))
        return 0;
    if (length != 0 && !SendAll(sock, payload, static_cast<long>(length)))
        return 0;
    return 1;
}

namespace {

// RecvExact that also tells how many bytes arrived before a failure.
int recvCounted(int sock, void* buffer, long count, int seconds, long* receivedOut) {
    char* p = static_cast<char*>(buffer);
    long& received = *receivedOut;
    received = 0;
    // A request for no bytes fails like the receive of nothing it would make.
    if (count <= 0)
        return 0;
    while (received < count) {
        pollfd waitFor{sock, POLLIN, 0};
        int ready;
        do {
            ready = ::poll(&waitFor, 1, seconds * 1000);
        } while (ready < 0 && errno == EINTR);
        if (ready <= 0 || (waitFor.revents & (POLLIN | POLLHUP | POLLERR)) == 0)
            return 0;
        ssize_t got;
        do {
            got = ::recv(sock, p + received, static_cast<std::size_t>(count - received), 0);
        } while (got < 0 && errno == EINTR);
        if (got <= 0)
            return 0;
        received += static_cast<long>(got);
    }
    return 1;
}

int recvInto(int sock, void* buffer, long count, long* received) {
    return recvCounted(sock, buffer, count, kReceiveWaitSeconds, received);
}

} // namespace

int RecvExact(int sock, void* buffer, long count, int seconds) {
    long received = 0;
    return recvCounted(sock, buffer, count, seconds, &received);
}

int RecvReplyHeader(int sock, uint8_t* type, uint32_t* length) {
    unsigned char lengthBytes[4];
    if (!RecvExact(sock, type, 1, kReceiveWaitSeconds))
        return 0;
    if (!RecvExact(sock, lengthBytes, 4, kReceiveWaitSeconds))
        return 0;
    *length = getBigEndian32(lengthBytes);
    return 1;
}

int RecvCountedString(int sock, char* buffer, uint32_t capacity) {
    unsigned char lengthBytes[4];
    if (!RecvExact(sock, lengthBytes, 4, kReceiveWaitSeconds))
        return 0;
    const uint32_t n = getBigEndian32(lengthBytes);
    if (n > capacity)
        return 0;
    return RecvExact(sock, buffer, static_cast<long>(n), kReceiveWaitSeconds);
}

std::size_t PackCountedString(char* buffer, std::size_t capacity, const char* text) {
    if (capacity <= 4)
        return 0;
    // A bounded copy of capacity - 4 characters, then the cut at capacity - 5: the
    // text keeps at most capacity - 9 characters and the last four bytes stay unused.
    char* out = buffer + 4;
    const std::size_t room = capacity - 4;
    std::size_t i = 0;
    for (; i < room && text[i] != '\0'; ++i)
        out[i] = text[i];
    if (i < room)
        out[i] = '\0';
    buffer[capacity - 5] = '\0';
    const std::size_t n = std::strlen(out) + 1;
    putBigEndian32(reinterpret_cast<unsigned char*>(buffer), static_cast<uint32_t>(n));
    return n + 4;
}

TransferResult QueryDeviceType(const std::string& ip, char* buffer, uint32_t capacity) {
    int sock = ConnectDevice(ip, kFilePort);
    if (sock < 0)
        return kCannotConnect;
    SendFrame(sock, 1, 0, nullptr);
    uint8_t type = 0;
    uint32_t length = 0;
    TransferResult result = kCommError;
    if (capacity > 0)
        std::memset(buffer, 0, capacity);
    // The text must arrive with its zero byte, so the caller gets a terminated name.
    if (RecvReplyHeader(sock, &type, &length) && type == 1 &&
        RecvCountedString(sock, buffer, capacity) && std::memchr(buffer, 0, capacity))
        result = kTransferOk;
    closeSocket(sock);
    return result;
}

TransferResult PutFile(const std::string& localPath, const std::string& remoteName,
                       const std::string& remoteDir, const std::string& ip, uint8_t flag,
                       const std::string& extraText) {
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

    char names[kCountedBufferSize];
    const std::size_t nameBytes = packDeviceString(names, kCountedBufferSize, remoteName);
    const std::size_t dirBytes =
        packDeviceString(names + nameBytes, kCountedBufferSize - nameBytes, remoteDir);
    char extra[kCountedBufferSize];
    const std::size_t extraBytes = packDeviceString(extra, kCountedBufferSize, extraText);

    int sock = ConnectDevice(ip, kFilePort);
    if (sock < 0)
        return kCannotConnect;

    // Send results are not checked: a broken connection shows as a failed reply.
    SendFrame(sock, 2, static_cast<uint32_t>(nameBytes + dirBytes), names);
    SendAll(sock, &flag, 1);
    SendAll(sock, extra, static_cast<long>(extraBytes));
    unsigned char sizeBytes[4];
    putBigEndian32(sizeBytes, static_cast<uint32_t>(size));
    SendAll(sock, sizeBytes, 4);

    // Exactly the announced bytes go out; a file that shrank meanwhile is a local
    // failure, not a stream the device would misread.
    std::vector<char> buffer(kContentChunk);
    char* chunk = buffer.data();
    unsigned long remaining = static_cast<unsigned long>(size);
    bool sendFailed = false;
    while (remaining > 0) {
        const std::size_t want = remaining < kContentChunk ? remaining : kContentChunk;
        const std::size_t got = std::fread(chunk, 1, want, file.file);
        if (got == 0) {
            closeSocket(sock);
            return kLocalFileError;
        }
        if (!sendFailed && !SendAll(sock, chunk, static_cast<long>(got)))
            sendFailed = true; // keep reading nothing more: the reply read decides
        if (sendFailed)
            break;
        remaining -= got;
    }
    std::fclose(file.file);
    file.file = nullptr;

    uint8_t type = 0;
    uint32_t length = 0;
    unsigned char status = 0;
    TransferResult result = kCommError;
    if (RecvReplyHeader(sock, &type, &length) && length == 1 &&
        RecvExact(sock, &status, 1, kReceiveWaitSeconds) && status == 1)
        result = kTransferOk;
    closeSocket(sock);
    return result;
}

TransferResult GetFile(const std::string& remotePath, const std::string& localPath,
                       const std::string& ip) {
    char request[kCountedBufferSize];
    const std::size_t requestBytes = packDeviceString(request, kCountedBufferSize, remotePath);

    int sock = ConnectDevice(ip, kFilePort);
    if (sock < 0)
        return kCannotConnect;
    SendFrame(sock, 3, static_cast<uint32_t>(requestBytes), request);

    uint8_t type = 0;
    uint32_t length = 0;
    unsigned char status = 0;
    unsigned char sizeBytes[4];
    if (!RecvReplyHeader(sock, &type, &length) || length != 1 ||
        !RecvExact(sock, &status, 1, kReceiveWaitSeconds) || status == 0 ||
        !RecvExact(sock, sizeBytes, 4, kReceiveWaitSeconds)) {
        closeSocket(sock);
        return kCommError;
    }
    uint32_t remaining = getBigEndian32(sizeBytes);

    // Only now, with the device's consent, is the local file touched.
    FileCloser file{std::fopen(localPath.c_str(), "wb")};
    if (!file.file) {
        closeSocket(sock);
        return kLocalFileError;
    }
    std::vector<char> buffer(kContentChunk);
    char* chunk = buffer.data();
    while (remaining > 0) {
        const std::size_t want = remaining < kContentChunk ? remaining : kContentChunk;
        long got = 0;
        if (!recvInto(sock, chunk, static_cast<long>(want), &got)) {
            // The device's file arrives in pieces of 1024 bytes: a cut transfer leaves
            // the whole pieces written and drops the broken one.
            const std::size_t whole = static_cast<std::size_t>(got) / kGetPiece * kGetPiece;
            if (whole > 0)
                std::fwrite(chunk, 1, whole, file.file);
            closeSocket(sock);
            return kCommError;
        }
        if (std::fwrite(chunk, 1, want, file.file) != want) {
            closeSocket(sock);
            return kLocalFileError;
        }
        remaining -= static_cast<uint32_t>(want);
    }
    const int closed = std::fclose(file.file);
    file.file = nullptr;
    closeSocket(sock);
    return closed == 0 ? kTransferOk : kLocalFileError;
}

TransferResult QueryUpdateDone(const std::string& ip) {
    int sock = ConnectDevice(ip, kUpdatePort);
    if (sock < 0)
        return kCannotConnect;
    SendFrame(sock, 2, 0, nullptr);
    uint8_t type = 0;
    uint32_t length = 0;
    const bool ready = RecvReplyHeader(sock, &type, &length) && type == 2;
    closeSocket(sock);
    return ready ? kTransferOk : kCommError;
}

TransferResult SetDeviceClock(const std::string& ip) {
    return SetDeviceClockAt(ip, static_cast<uint32_t>(std::time(nullptr)));
}

TransferResult SetDeviceClockAt(const std::string& ip, uint32_t seconds) {
    int sock = ConnectDevice(ip, kClockPort);
    if (sock < 0)
        return kCannotConnect;
    // The one value on the wire in little-endian order.
    const unsigned char payload[4] = {
        static_cast<unsigned char>(seconds), static_cast<unsigned char>(seconds >> 8),
        static_cast<unsigned char>(seconds >> 16), static_cast<unsigned char>(seconds >> 24)};
    uint8_t type = 0;
    uint32_t length = 0;
    unsigned char status = 0;
    TransferResult result = kCommError;
    if (SendFrame(sock, 7, 4, payload) && RecvReplyHeader(sock, &type, &length) && length == 1 &&
        RecvExact(sock, &status, 1, kReceiveWaitSeconds) && status == 1)
        result = kTransferOk;
    closeSocket(sock);
    return result;
}

TransferResult PollDeviceStatus(const std::string& ip, MonitorSocket& sock, DeviceStatus& status) {
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
    if (!SendFrame(sock, 1, 0, nullptr))
        return drop();
    uint8_t type = 0;
    uint32_t length = 0;
    if (!RecvReplyHeader(sock, &type, &length))
        return drop();
    if (length == 1) {
        unsigned char refusal;
        RecvExact(sock, &refusal, 1, kReceiveWaitSeconds);
        return drop();
    }
    if (length != 25)
        return drop();
    unsigned char body[25];
    if (!RecvExact(sock, body, 25, kReceiveWaitSeconds) || body[0] != 1)
        return drop();
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
    SendFrame(sock, 2, 0, nullptr);
    closeSocket(sock);
    sock = 0;
}

std::string FormatMemory(uint32_t kib) {
    char text[32];
    std::snprintf(text, sizeof text, "%dK", static_cast<int>(kib));
    return text;
}

std::string FormatRate(uint32_t tenths) {
    char text[32];
    std::snprintf(text, sizeof text, "%d.%d", static_cast<int>(tenths / 10),
                  static_cast<int>(tenths % 10));
    return text;
}

} // namespace rq

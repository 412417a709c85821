#include "deploy/emulator/DeviceEmulator.h"

#include "core/TextEncoding.h"
#include "deploy/cipher/PackageFile.h"
#include "deploy/emulator/ArchiveTool.h"
#include "deploy/emulator/SystemFigures.h"
#include "deploy/protocol/DeviceProtocol.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <netinet/in.h>
#include <poll.h>
#include <sstream>
#include <sys/socket.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace rq {

namespace {

#ifdef MSG_NOSIGNAL
constexpr int kSendFlags = MSG_NOSIGNAL;
#else
constexpr int kSendFlags = 0;
#endif

// After a failed accept for want of descriptors or memory, new connections wait
// this long instead of being polled again at once.
constexpr int kAcceptBackOffMs = 100;
// Request payloads are a few counted strings; anything longer is a broken client.
constexpr uint32_t kMaxPayload = 64 * 1024;
constexpr uint32_t kMaxCountedString = 1024;
constexpr std::size_t kStreamChunk = 1024 * 1024;

// The first line of a version file that marks the device's runtime.
constexpr const char* kVersionMarker = "Movaro V1.0";

const int kPorts[] = {kFilePort, kUpdatePort, kMonitorPort, kClockPort};

uint32_t bigEndian32(const unsigned char* in) {
    return (uint32_t(in[0]) << 24) | (uint32_t(in[1]) << 16) | (uint32_t(in[2]) << 8) |
           uint32_t(in[3]);
}

void appendBigEndian32(std::string& out, uint32_t value) {
    out += char(value >> 24);
    out += char(value >> 16);
    out += char(value >> 8);
    out += char(value);
}

void appendLittleEndian32(std::string& out, uint32_t value) {
    out += char(value);
    out += char(value >> 8);
    out += char(value >> 16);
    out += char(value >> 24);
}

std::string countedString(const std::string& bytes) {
    std::string out;
    appendBigEndian32(out, static_cast<uint32_t>(bytes.size() + 1));
    out += bytes;
    out += '\0';
    return out;
}

// Takes one counted string off the front of `data`; false when it does not fit or
// lacks its zero byte.
bool takeCountedString(std::string_view& data, std::string& text) {
    if (data.size() < 4)
        return false;
    const uint32_t n = bigEndian32(reinterpret_cast<const unsigned char*>(data.data()));
    if (n == 0 || n > data.size() - 4 || data[4 + n - 1] != '\0')
        return false;
    text.assign(data.data() + 4, n - 1);
    data.remove_prefix(4 + n);
    return true;
}

bool isValidDate(const std::string& text) {
    if (text.size() != 8)
        return false;
    for (char c : text)
        if (c < '0' || c > '9')
            return false;
    const int year = std::stoi(text.substr(0, 4));
    const int month = std::stoi(text.substr(4, 2));
    const int day = std::stoi(text.substr(6, 2));
    static const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12 || day < 1)
        return false;
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return day <= days[month - 1] + (month == 2 && leap ? 1 : 0);
}

std::string firstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

std::string utcText(uint32_t seconds) {
    std::time_t t = static_cast<std::time_t>(seconds);
    std::tm parts{};
    gmtime_r(&t, &parts);
    char text[64];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S UTC", &parts);
    return text;
}

bool writeWhole(const fs::path& path, const std::string& bytes) {
    const fs::path temporary = path.string() + ".new";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (!out.write(bytes.data(), static_cast<std::streamsize>(bytes.size())) || !out.flush())
            return false;
    }
    std::error_code ec;
    fs::rename(temporary, path, ec);
    if (ec)
        fs::remove(temporary, ec);
    return !ec;
}

// The whole content of an open file into `path`, through a temporary beside it.
bool copyWhole(int fd, const fs::path& path) {
    const fs::path temporary = path.string() + ".new";
    const int out =
        ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0644);
    if (out < 0)
        return false;
    std::vector<char> chunk(kStreamChunk);
    off_t offset = 0;
    bool ok = true;
    for (;;) {
        const ssize_t got = ::pread(fd, chunk.data(), chunk.size(), offset);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            ok = false;
        if (got <= 0)
            break;
        for (ssize_t off = 0; ok && off < got;) {
            const ssize_t written =
                ::write(out, chunk.data() + off, static_cast<size_t>(got - off));
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0)
                ok = false;
            else
                off += written;
        }
        offset += got;
    }
    if (::close(out) != 0)
        ok = false;
    std::error_code ec;
    if (ok)
        fs::rename(temporary, path, ec);
    if (!ok || ec)
        fs::remove(temporary, ec);
    return ok && !ec;
}

} // namespace

std::optional<EmulatorFault> parseEmulatorFault(const std::string& name) {
    for (auto fault : {EmulatorFault::None, EmulatorFault::Refuse, EmulatorFault::Silent,
                       EmulatorFault::Cut, EmulatorFault::BadLength, EmulatorFault::Busy})
        if (name == emulatorFaultName(fault))
            return fault;
    return std::nullopt;
}

const char* emulatorFaultName(EmulatorFault fault) {
    switch (fault) {
    case EmulatorFault::None:
        return "none";
    case EmulatorFault::Refuse:
        return "refuse";
    case EmulatorFault::Silent:
        return "silent";
    case EmulatorFault::Cut:
        return "cut";
    case EmulatorFault::BadLength:
        return "bad-length";
    case EmulatorFault::Busy:
        return "busy";
    }
    return "none";
}

// One accepted connection, served on its own thread. Every wait is bounded by the
// idle wait and, inside a request, by the request's deadline.
struct DeviceEmulator::Connection {
    using Clock = std::chrono::steady_clock;

    int fd = -1;
    int port = 0;
    unsigned long id = 0;
    std::string peer;
    std::thread thread;
    std::atomic<bool> done{false};
    const std::atomic<bool>* stopping = nullptr;
    const EmulatorOptions* options = nullptr;

    bool inRequest = false;
    Clock::time_point requestStart{};
    unsigned long long moved = 0;

    void beginRequest() {
        inRequest = true;
        requestStart = Clock::now();
        moved = 0;
    }
    void endRequest() { inRequest = false; }

    int waitMs() const {
        long long ms = options->idleWaitMs;
        if (inRequest) {
            const long long used =
                std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - requestStart)
                    .count();
            const long long allowed =
                static_cast<long long>(options->requestBaseSeconds) * 1000 +
                static_cast<long long>(
                    moved * 1000 / std::max<uint32_t>(1, options->requestMinimumBytesPerSecond));
            ms = std::min(ms, allowed - used);
        }
        return static_cast<int>(std::max<long long>(0, ms));
    }
    bool waitFor(short events) {
        if (stopping->load())
            return false;
        const int ms = waitMs();
        if (ms <= 0)
            return false;
        pollfd waitFor{fd, events, 0};
        int ready;
        do {
            ready = ::poll(&waitFor, 1, ms);
        } while (ready < 0 && errno == EINTR);
        return ready > 0;
    }

    // Waits for data; false on time-out, end or error.
    bool readSome(void* buffer, std::size_t count, std::size_t& got) {
        for (;;) {
            if (!waitFor(POLLIN))
                return false;
            ssize_t n = ::recv(fd, buffer, count, MSG_DONTWAIT);
            if (n < 0 && (errno == EINTR || errno == EAGAIN || errno == EWOULDBLOCK))
                continue;
            if (n <= 0)
                return false;
            got = static_cast<std::size_t>(n);
            moved += got;
            return true;
        }
    }
    bool readExact(void* buffer, std::size_t count) {
        char* p = static_cast<char*>(buffer);
        while (count > 0) {
            std::size_t got = 0;
            if (!readSome(p, count, got))
                return false;
            p += got;
            count -= got;
        }
        return true;
    }
    bool sendAll(const void* bytes, std::size_t count) {
        const char* p = static_cast<const char*>(bytes);
        while (count > 0) {
            ssize_t sent = ::send(fd, p, count, kSendFlags | MSG_DONTWAIT);
            if (sent < 0 && errno == EINTR)
                continue;
            if (sent < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
                if (!waitFor(POLLOUT))
                    return false;
                continue;
            }
            if (sent <= 0)
                return false;
            p += sent;
            count -= static_cast<std::size_t>(sent);
            moved += static_cast<std::size_t>(sent);
        }
        return true;
    }
    // A request payload of a sensible size.
    bool readPayload(std::string& payload, uint32_t length) {
        if (length > kMaxPayload)
            return false;
        payload.resize(length);
        return length == 0 || readExact(payload.data(), length);
    }
    // Reads and drops everything until the client closes (or the request's time or
    // the emulator ends).
    void drainToEnd() {
        char sink[4096];
        std::size_t got = 0;
        while (readSome(sink, sizeof sink, got)) {
        }
    }
};

DeviceEmulator::DeviceEmulator(EmulatorOptions options) : options_(std::move(options)) {}

DeviceEmulator::~DeviceEmulator() {
    stop();
}

std::string DeviceEmulator::rootPath(const std::string& devicePath) const {
    fs::path path = root_;
    std::string_view rest = devicePath;
    while (!rest.empty()) {
        const std::size_t slash = rest.find('/');
        const std::string_view part = rest.substr(0, slash);
        if (!part.empty() && part != ".")
            path /= std::string(part);
        if (slash == std::string_view::npos)
            break;
        rest.remove_prefix(slash + 1);
    }
    return path.string();
}

bool DeviceEmulator::start(std::string* error) {
    auto failWith = [&](const std::string& text) {
        if (error)
            *error = text;
        stop();
        return false;
    };
    in_addr address{};
    if (::inet_pton(AF_INET, options_.address.c_str(), &address) != 1)
        return failWith("not an IPv4 address: " + options_.address);
    if (options_.root.empty())
        return failWith("no root directory given");
    if (options_.type.empty())
        return failWith("no device type given");
    if (!options_.versionDate.empty() && !isValidDate(options_.versionDate))
        return failWith("not a valid date (YYYYMMDD): " + options_.versionDate);
    if (options_.readyAfterSeconds < 0)
        return failWith("the ready delay cannot be negative");

    std::error_code ec;
    root_ = fs::absolute(options_.root, ec);
    for (const char* dir : {"tmp", "home/app", "home/app/datafile"}) {
        fs::create_directories(root_ / dir, ec);
        if (ec)
            return failWith("cannot make " + (root_ / dir).string() + ": " + ec.message());
    }
    if (!options_.versionDate.empty() &&
        !writeWhole(root_ / "home/app/version",
                    std::string(kVersionMarker) + " rqdevsim\n" + options_.versionDate + "\n"))
        return failWith("cannot write " + (root_ / "home/app/version").string());

    if (options_.maxConnections < 1)
        return failWith("at least one connection must be allowed");
    rootFd_ = ::open(root_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (rootFd_ < 0)
        return failWith("cannot open " + root_.string() + ": " + std::strerror(errno));
    // Packages are unwrapped and read where no client's put can reach.
    std::string work = (fs::temp_directory_path(ec) / "rqdevsim-XXXXXX").string();
    if (ec || !::mkdtemp(work.data()))
        return failWith(std::string("cannot make a work directory: ") + std::strerror(errno));
    workDir_ = work;

    stopping_ = false;
    if (::pipe(wakePipe_) != 0)
        return failWith(std::string("cannot make a pipe: ") + std::strerror(errno));
    // With the refusal fault nothing listens, so every connection is refused.
    if (options_.fault != EmulatorFault::Refuse && options_.listen) {
        for (int port : kPorts) {
            int fd = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
            if (fd < 0)
                return failWith(std::string("cannot make a socket: ") + std::strerror(errno));
            ::fcntl(fd, F_SETFD, FD_CLOEXEC);
            listeners_.push_back(fd);
            listenerPorts_.push_back(port);
            int one = 1;
            ::setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
            sockaddr_in where{};
            where.sin_family = AF_INET;
            where.sin_port = htons(static_cast<uint16_t>(port));
            where.sin_addr = address;
            if (::bind(fd, reinterpret_cast<const sockaddr*>(&where), sizeof where) != 0 ||
                ::listen(fd, 16) != 0)
                return failWith("cannot listen on " + options_.address + ":" +
                                std::to_string(port) + ": " + std::strerror(errno));
        }
    }
    acceptor_ = std::thread([this] { acceptLoop(); });
    return true;
}

void DeviceEmulator::stop() {
    stopping_ = true;
    if (wakePipe_[1] >= 0) {
        const char wake = 1;
        [[maybe_unused]] ssize_t ignored = ::write(wakePipe_[1], &wake, 1);
    }
    if (acceptor_.joinable())
        acceptor_.join();
    for (int fd : listeners_)
        ::close(fd);
    listeners_.clear();
    listenerPorts_.clear();
    {
        std::lock_guard lock(connectionsMutex_);
        for (auto& c : connections_)
            if (c->fd >= 0)
                ::shutdown(c->fd, SHUT_RDWR);
    }
    for (auto& c : connections_)
        if (c->thread.joinable())
            c->thread.join();
    connections_.clear();
    for (int& fd : wakePipe_) {
        if (fd >= 0)
            ::close(fd);
        fd = -1;
    }
    if (rootFd_ >= 0)
        ::close(rootFd_);
    rootFd_ = -1;
    if (!workDir_.empty()) {
        std::error_code ec;
        fs::remove_all(workDir_, ec);
        workDir_.clear();
    }
}

void DeviceEmulator::serveStream(int fd, int port) {
    Connection c;
    c.fd = fd;
    c.port = port;
    c.id = ++nextConnectionId_;
    c.peer = "stream";
    c.stopping = &stopping_;
    c.options = &options_;
    serve(c);
}

int DeviceEmulator::connectionCount() {
    std::lock_guard lock(connectionsMutex_);
    int count = 0;
    for (const auto& c : connections_)
        count += c->done ? 0 : 1;
    return count;
}

// The directory of a device path, opened from the root one name at a time without
// following any link; -1 when a part is missing, "..", a link or not a directory.
int DeviceEmulator::openDeviceDirectory(const std::string& devicePath) const {
    int current = ::dup(rootFd_);
    std::string_view rest = devicePath;
    while (current >= 0 && !rest.empty()) {
        const std::size_t slash = rest.find('/');
        const std::string part(rest.substr(0, slash));
        rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash + 1);
        if (part.empty() || part == ".")
            continue;
        int next = -1;
        if (part != "..")
            next = ::openat(current, part.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        ::close(current);
        current = next;
    }
    return current;
}

void DeviceEmulator::acceptLoop() {
    std::vector<pollfd> waits;
    waits.push_back({wakePipe_[0], POLLIN, 0});
    for (int fd : listeners_)
        waits.push_back({fd, POLLIN, 0});
    bool backOff = false;
    while (!stopping_) {
        for (auto& w : waits)
            w.revents = 0;
        // While backing off only the wake pipe is watched, so a listener that stays
        // readable cannot make this loop spin.
        const int polled =
            ::poll(waits.data(), backOff ? 1 : waits.size(), backOff ? kAcceptBackOffMs : 1000);
        if (polled < 0 && errno != EINTR)
            break;
        if (waits[0].revents)
            break;
        backOff = false;
        // Finished connections leave the list here.
        {
            std::lock_guard lock(connectionsMutex_);
            for (auto it = connections_.begin(); it != connections_.end();) {
                if ((*it)->done) {
                    (*it)->thread.join();
                    it = connections_.erase(it);
                } else {
                    ++it;
                }
            }
        }
        for (std::size_t i = 1; i < waits.size() && !backOff; ++i) {
            if (!(waits[i].revents & POLLIN))
                continue;
            sockaddr_in peer{};
            socklen_t peerSize = sizeof peer;
            int fd = ::accept(waits[i].fd, reinterpret_cast<sockaddr*>(&peer), &peerSize);
            if (fd < 0) {
                if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM)
                    backOff = true;
                continue;
            }
            ::fcntl(fd, F_SETFD, FD_CLOEXEC);
            auto connection = std::make_unique<Connection>();
            connection->fd = fd;
            connection->port = listenerPorts_[i - 1];
            connection->id = ++nextConnectionId_;
            connection->stopping = &stopping_;
            connection->options = &options_;
            char text[INET_ADDRSTRLEN] = {};
            ::inet_ntop(AF_INET, &peer.sin_addr, text, sizeof text);
            connection->peer = std::string(text) + ":" + std::to_string(ntohs(peer.sin_port));
            if (connectionCount() >= options_.maxConnections) {
                logLine(*connection, "too many connections -> closed");
                ::close(fd);
                continue;
            }
            Connection* c = connection.get();
            std::lock_guard lock(connectionsMutex_);
            connections_.push_back(std::move(connection));
            try {
                c->thread = std::thread([this, c] {
                    serve(*c);
                    std::lock_guard lock(connectionsMutex_);
                    ::close(c->fd);
                    c->fd = -1;
                    c->done = true;
                });
            } catch (const std::system_error&) {
                // No thread for it: the connection is closed, the device goes on.
                ::close(c->fd);
                connections_.pop_back();
                backOff = true;
            }
        }
    }
}

void DeviceEmulator::logLine(const Connection& c, const std::string& text) {
    if (!options_.log)
        return;
    std::lock_guard lock(logMutex_);
    *options_.log << options_.address << ":" << c.port << " " << text << std::endl;
}

void DeviceEmulator::serve(Connection& c) {
    // A connection carries requests until the client closes it; the monitor keeps
    // its connection across polls, the other clients send one request each.
    for (;;) {
        unsigned char header[5];
        c.endRequest();
        if (!c.readExact(header, 1))
            return;
        c.beginRequest();
        if (!c.readExact(header + 1, 4)) {
            logLine(c, "request cut short");
            return;
        }
        const uint8_t command = header[0];
        const uint32_t length = bigEndian32(header + 1);
        if (options_.fault == EmulatorFault::Silent) {
            logLine(c, "command " + std::to_string(command) + " -> no answer (silent)");
            c.drainToEnd();
            return;
        }
        bool keepGoing = false;
        switch (c.port) {
        case kFilePort:
            keepGoing = serveFile(c, command, length);
            break;
        case kUpdatePort:
            keepGoing = serveUpdate(c, command, length);
            break;
        case kMonitorPort:
            keepGoing = serveMonitor(c, command, length);
            break;
        case kClockPort:
            keepGoing = serveClock(c, command, length);
            break;
        }
        if (!keepGoing)
            return;
    }
}

bool DeviceEmulator::sendReply(Connection& c, uint8_t type, const std::string& body) {
    std::string bytes;
    bytes += char(type);
    // The lying-length fault announces one byte more than the body holds.
    const uint32_t announced =
        static_cast<uint32_t>(body.size()) + (options_.fault == EmulatorFault::BadLength ? 1 : 0);
    appendBigEndian32(bytes, announced);
    bytes += body;
    if (options_.fault == EmulatorFault::Cut) {
        // Half the reply, then the connection goes.
        c.sendAll(bytes.data(), bytes.size() / 2);
        return false;
    }
    return c.sendAll(bytes.data(), bytes.size());
}

bool DeviceEmulator::serveFile(Connection& c, uint8_t command, uint32_t length) {
    std::string payload;
    if (!c.readPayload(payload, length)) {
        logLine(c, "command " + std::to_string(command) + " with a payload of " +
                       std::to_string(length) + " bytes -> dropped");
        return false;
    }
    switch (command) {
    case 1: {
        std::string body = countedString(toDeviceBytes(options_.type));
        // A lying device also announces an empty counted string.
        if (options_.fault == EmulatorFault::BadLength)
            body.replace(0, 4, 4, '\0');
        logLine(c, "type -> " + options_.type);
        return sendReply(c, 1, body);
    }
    case 2:
        return putFile(c, payload);
    case 3:
        return getFile(c, payload);
    default:
        logLine(c, "unknown command " + std::to_string(command) + " -> closed");
        return false;
    }
}

bool DeviceEmulator::putFile(Connection& c, const std::string& payload) {
    std::string_view data = payload;
    std::string name, dir, extra;
    unsigned char flag = 0;
    unsigned char countBytes[4], sizeBytes[4];
    if (!takeCountedString(data, name) || !takeCountedString(data, dir) || !data.empty()) {
        logLine(c, "put with a malformed name frame -> dropped");
        return false;
    }
    if (!c.readExact(&flag, 1) || !c.readExact(countBytes, 4)) {
        logLine(c, "put cut short");
        return false;
    }
    // The announced length is checked before anything is allocated for it.
    const uint32_t extraCount = bigEndian32(countBytes);
    if (extraCount == 0 || extraCount > kMaxCountedString) {
        logLine(c, "put with an extra text of " + std::to_string(extraCount) + " bytes -> dropped");
        return false;
    }
    std::string extraBytes(extraCount, '\0');
    if (!c.readExact(extraBytes.data(), extraCount) || extraBytes.back() != '\0' ||
        !c.readExact(sizeBytes, 4)) {
        logLine(c, "put with a malformed extra text -> dropped");
        return false;
    }
    // The extra text is the package password, compared as the bytes that came.
    extra.assign(extraBytes.data(), extraCount - 1);
    const uint32_t size = bigEndian32(sizeBytes);
    const std::string remoteDir = fromDeviceBytes(dir);
    const std::string remoteName = fromDeviceBytes(name);
    std::string remote = remoteDir + "/" + remoteName;
    for (char& ch : remote)
        if (ch == '\0')
            ch = '?';

    // Only names inside an existing directory of the device are taken; a zero byte
    // inside a name would cut it short on the way to the file system.
    const bool zeroInside =
        name.find('\0') != std::string::npos || dir.find('\0') != std::string::npos ||
        remoteName.find('\0') != std::string::npos || remoteDir.find('\0') != std::string::npos;
    const bool acceptable = !zeroInside && !remoteDir.empty() && remoteDir[0] == '/' &&
                            !remoteName.empty() && remoteName.find('/') == std::string::npos &&
                            remoteName != "." && remoteName != ".." &&
                            unsafeMemberName({remoteDir.substr(1)}).empty();
    const int dirFd = acceptable ? openDeviceDirectory(remoteDir) : -1;
    // Each connection writes its own temporary; the last complete one wins the name.
    std::string temporary;
    int out = -1;
    for (int attempt = 0; dirFd >= 0 && out < 0 && attempt < 100; ++attempt) {
        temporary = ".rqdevsim-" + std::to_string(c.id) + "-" + std::to_string(attempt) + ".part";
        out = ::openat(dirFd, temporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                       0644);
        if (out < 0 && errno != EEXIST)
            break;
    }
    struct Close {
        int& fd;
        ~Close() {
            if (fd >= 0)
                ::close(fd);
        }
    };
    int dirHandle = dirFd;
    Close closeDir{dirHandle}, closeOut{out};
    auto discard = [&] {
        if (out >= 0)
            ::unlinkat(dirFd, temporary.c_str(), 0);
    };
    bool writeFailed = out < 0;

    // With the cut fault the connection goes after half the content.
    const uint32_t toRead = options_.fault == EmulatorFault::Cut ? size / 2 : size;
    std::vector<char> chunk(std::min<std::size_t>(kStreamChunk, std::max<uint32_t>(toRead, 1)));
    uint32_t remaining = toRead;
    while (remaining > 0) {
        std::size_t got = 0;
        if (!c.readSome(chunk.data(), std::min<std::size_t>(remaining, chunk.size()), got)) {
            discard();
            logLine(c, "put " + remote + " cut short after " + std::to_string(toRead - remaining) +
                           " of " + std::to_string(size) + " bytes");
            return false;
        }
        for (std::size_t off = 0; !writeFailed && off < got;) {
            ssize_t written = ::write(out, chunk.data() + off, got - off);
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0)
                writeFailed = true;
            else
                off += static_cast<std::size_t>(written);
        }
        remaining -= static_cast<uint32_t>(got);
    }
    if (options_.fault == EmulatorFault::Cut) {
        discard();
        logLine(c, "put " + remote + " -> connection cut after " + std::to_string(toRead) + " of " +
                       std::to_string(size) + " bytes (cut)");
        return false;
    }
    uint8_t status = 0;
    std::string note;
    if (writeFailed) {
        discard();
        note = zeroInside  ? "zero byte in the name"
               : dirFd < 0 ? "no such directory"
                           : "cannot write the file";
    } else if (::renameat(dirFd, temporary.c_str(), dirFd, remoteName.c_str()) != 0) {
        discard();
        note = "cannot write the file";
    } else {
        status = 1;
        // The device acts on the bytes it received, from the file it wrote, whatever
        // the name points at by now.
        if (remoteDir == "/tmp")
            status = actOnArrival(remoteName, out, extra, note);
    }
    logLine(c, "put " + remote + " " + std::to_string(size) + " bytes flag " +
                   std::to_string(flag) + " -> status " + std::to_string(status) +
                   (note.empty() ? "" : " (" + note + ")"));
    return sendReply(c, 2, std::string(1, char(status)));
}

bool DeviceEmulator::getFile(Connection& c, const std::string& payload) {
    std::string_view data = payload;
    std::string path;
    if (!takeCountedString(data, path) || !data.empty()) {
        logLine(c, "get with a malformed path -> dropped");
        return false;
    }
    const std::string remote = fromDeviceBytes(path);
    const std::size_t slash = remote.find_last_of('/');
    const bool safe = !remote.empty() && remote[0] == '/' && remote.size() > 1 &&
                      remote.find('\0') == std::string::npos &&
                      path.find('\0') == std::string::npos &&
                      unsafeMemberName({remote.substr(1)}).empty() && slash + 1 < remote.size();
    int in = -1;
    struct stat info {};
    if (safe) {
        const int dirFd = openDeviceDirectory(remote.substr(0, slash));
        if (dirFd >= 0) {
            in = ::openat(dirFd, remote.c_str() + slash + 1,
                          O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
            ::close(dirFd);
        }
    }
    if (in >= 0 && (::fstat(in, &info) != 0 || !S_ISREG(info.st_mode) ||
                    static_cast<uint64_t>(info.st_size) > 0xFFFFFFFFull)) {
        ::close(in);
        in = -1;
    }
    if (in < 0) {
        logLine(c, "get " + remote + " -> status 0 (no such file)");
        return sendReply(c, 3, std::string(1, '\0'));
    }
    const uint64_t size = static_cast<uint64_t>(info.st_size);
    // Header, status and size go first; the content streams behind them. The
    // header's length covers the status byte only.
    std::string head;
    head += char(3);
    appendBigEndian32(head, 1 + (options_.fault == EmulatorFault::BadLength ? 1 : 0));
    head += char(1);
    appendBigEndian32(head, static_cast<uint32_t>(size));
    const uint64_t toSend = options_.fault == EmulatorFault::Cut ? size / 2 : size;
    bool ok = c.sendAll(head.data(), head.size());
    std::vector<char> chunk(kStreamChunk);
    uint64_t sent = 0;
    while (ok && sent < toSend) {
        ssize_t got = ::read(in, chunk.data(), std::min<uint64_t>(chunk.size(), toSend - sent));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        ok = c.sendAll(chunk.data(), static_cast<std::size_t>(got));
        sent += static_cast<uint64_t>(got);
    }
    ::close(in);
    if (options_.fault == EmulatorFault::Cut) {
        logLine(c, "get " + remote + " -> connection cut after " + std::to_string(sent) + " of " +
                       std::to_string(size) + " bytes (cut)");
        return false;
    }
    logLine(c, "get " + remote + " -> status 1, " + std::to_string(sent) + " bytes");
    return ok && sent == size;
}

bool DeviceEmulator::serveUpdate(Connection& c, uint8_t command, uint32_t length) {
    std::string payload;
    if (command != 2 || !c.readPayload(payload, length)) {
        logLine(c, "unknown command " + std::to_string(command) + " -> closed");
        return false;
    }
    const bool ready = options_.fault != EmulatorFault::Busy && updateReady();
    logLine(c, std::string("update done? -> ") + (ready ? "ready" : "busy"));
    return sendReply(c, ready ? 2 : 1, std::string());
}

bool DeviceEmulator::serveMonitor(Connection& c, uint8_t command, uint32_t length) {
    std::string payload;
    if (!c.readPayload(payload, length)) {
        logLine(c, "monitor request too long -> closed");
        return false;
    }
    if (command == 2) {
        logLine(c, "end monitoring");
        return false;
    }
    if (command != 1) {
        logLine(c, "unknown command " + std::to_string(command) + " -> closed");
        return false;
    }
    std::string body;
    {
        std::lock_guard lock(stateMutex_);
        if (!monitorRunning_) {
            body.assign(1, '\0');
        } else {
            const MemoryFigures memory = readMemoryFigures();
            const uint32_t own = readOwnMemoryKib();
            const CpuSample now = readCpuSample();
            const uint32_t cpu = cpuUsageTenths({cpuTotal_, cpuIdle_}, now);
            cpuTotal_ = now.total;
            cpuIdle_ = now.idle;
            body += char(1);
            for (uint32_t value : {memory.totalKib, memory.usedKib, memory.freeKib, own, cpu,
                                   shareTenths(own, memory.totalKib)})
                appendLittleEndian32(body, value);
        }
    }
    if (body.size() == 1) {
        logLine(c, "poll -> status 0 (monitor not started)");
    } else {
        logLine(c, "poll -> status 1");
    }
    return sendReply(c, 1, body);
}

bool DeviceEmulator::serveClock(Connection& c, uint8_t command, uint32_t length) {
    std::string payload;
    if (command != 7 || !c.readPayload(payload, length)) {
        logLine(c, "unknown command " + std::to_string(command) + " -> closed");
        return false;
    }
    uint8_t status = 0;
    if (payload.size() == 4) {
        const auto* b = reinterpret_cast<const unsigned char*>(payload.data());
        const uint32_t seconds = uint32_t(b[0]) | (uint32_t(b[1]) << 8) | (uint32_t(b[2]) << 16) |
                                 (uint32_t(b[3]) << 24);
        {
            std::lock_guard lock(stateMutex_);
            lastClock_ = seconds;
        }
        status = 1;
        logLine(c, "clock " + utcText(seconds) + " -> status 1");
    } else {
        logLine(c, "clock with " + std::to_string(payload.size()) + " bytes -> status 0");
    }
    return sendReply(c, 7, std::string(1, char(status)));
}

void DeviceEmulator::startBusyPeriod() {
    busyUntil_ =
        std::chrono::steady_clock::now() + std::chrono::seconds(options_.readyAfterSeconds);
}

uint8_t DeviceEmulator::actOnArrival(const std::string& name, int file,
                                     const std::string& extraText, std::string& note) {
    std::unique_lock lock(stateMutex_);
    if (name == "killprog.rqp") {
        runtimeRunning_ = false;
        startBusyPeriod();
        note = "runtime stopped";
        return 1;
    }
    if (name == "rqmon.rqp") {
        if (!monitorRunning_) {
            const CpuSample start = readCpuSample();
            cpuTotal_ = start.total;
            cpuIdle_ = start.idle;
        }
        monitorRunning_ = true;
        note = "monitor started";
        return 1;
    }
    if (name == "rqupdate.rqp") {
        ++updatesInProgress_;
        lock.unlock();
        const uint8_t status = installPackage(file, extraText, note);
        lock.lock();
        --updatesInProgress_;
        startBusyPeriod();
        return status;
    }
    return 1;
}

uint8_t DeviceEmulator::installPackage(int package, const std::string& password,
                                       std::string& note) {
    std::lock_guard installing(installMutex_);
    std::optional<std::string> key;
    if (!password.empty())
        key = password;
    // The package is copied into the emulator's own work directory and unwrapped
    // there; the archive is then read from one open file that nothing else reaches.
    const fs::path copy = workDir_ / "package.rqp";
    const fs::path unwrapped = workDir_ / "archive.tar.gz";
    std::error_code ec;
    std::string error;
    if (!copyWhole(package, copy)) {
        note = "cannot copy the package";
        return 0;
    }
    const bool unwrappedOk = unwrapPackage(copy.string(), unwrapped.string(), key, &error);
    fs::remove(copy, ec);
    if (!unwrappedOk) {
        fs::remove(unwrapped, ec);
        note = "not a package: " + error;
        return 0;
    }
    const int archive = ::open(unwrapped.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    fs::remove(unwrapped, ec);
    if (archive < 0) {
        note = "cannot read the unwrapped package";
        return 0;
    }
    struct Close {
        int fd;
        ~Close() { ::close(fd); }
    } closeArchive{archive};
    unsigned char signature[2] = {};
    if (::pread(archive, signature, 2, 0) != 2 || signature[0] != 0x1F || signature[1] != 0x8B) {
        note = "does not unwrap to a gzip archive";
        return 0;
    }
    // A start-up image is one gzip stream of raw pixels rather than an archive: the
    // device writes it to its flash.
    if (isPlainGzipStream(archive)) {
        std::lock_guard lock(stateMutex_);
        const bool written = copyWhole(archive, root_ / "home/app/logo.gz");
        note = written ? "start-up image written" : "cannot write the start-up image";
        return written ? 1 : 0;
    }
    std::vector<std::string> names;
    if (!listArchive(archive, names, &error)) {
        note = error;
        return 0;
    }
    if (std::string bad = unsafeMemberName(names); !bad.empty()) {
        note = "refused member " + bad;
        return 0;
    }
    // An upgrade carries the runtime's version file at its top level.
    for (const std::string& member : names) {
        if (member != "version" && member != "./version")
            continue;
        std::string version;
        if (readArchiveMember(archive, member, version, 64 * 1024, &error) &&
            firstLine(version).find(kVersionMarker) != std::string::npos) {
            std::lock_guard lock(stateMutex_);
            if (!writeWhole(root_ / "home/app/version", version)) {
                note = "cannot write the version file";
                return 0;
            }
            runtimeRunning_ = true;
            note = "upgraded to " + firstLine(version);
            return 1;
        }
    }
    // Any other package is a project: kept as received and unpacked beside it.
    const fs::path app = root_ / "home/app";
    const fs::path staging = app / "project.new";
    fs::remove_all(staging, ec);
    fs::create_directory(staging, ec);
    const int stagingFd =
        ec ? -1 : ::open(staging.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    const bool extracted = stagingFd >= 0 && extractArchive(archive, stagingFd, &error);
    if (stagingFd >= 0)
        ::close(stagingFd);
    if (!extracted) {
        fs::remove_all(staging, ec);
        note = "cannot unpack: " + (error.empty() ? std::string("no staging directory") : error);
        return 0;
    }
    std::lock_guard lock(stateMutex_);
    fs::remove_all(app / "project", ec);
    fs::rename(staging, app / "project", ec);
    if (ec) {
        note = "cannot install the project: " + ec.message();
        return 0;
    }
    if (!copyWhole(package, app / "rqupdate.rqp")) {
        note = "cannot keep the package";
        return 0;
    }
    // The runtime keeps its retained parameters here; a fresh project has none yet.
    const fs::path params = app / "datafile" / "rtdbparams.bin";
    if (!fs::exists(params, ec))
        writeWhole(params, std::string());
    runtimeRunning_ = true;
    note = "project installed, " + std::to_string(names.size()) + " members";
    return 1;
}

bool DeviceEmulator::runtimeRunning() const {
    std::lock_guard lock(stateMutex_);
    return runtimeRunning_;
}

bool DeviceEmulator::monitorRunning() const {
    std::lock_guard lock(stateMutex_);
    return monitorRunning_;
}

bool DeviceEmulator::updateReady() const {
    std::lock_guard lock(stateMutex_);
    return updatesInProgress_ == 0 && std::chrono::steady_clock::now() >= busyUntil_;
}

std::optional<uint32_t> DeviceEmulator::lastClock() const {
    std::lock_guard lock(stateMutex_);
    return lastClock_;
}

} // namespace rq

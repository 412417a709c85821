#include "RecordingServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace rqtest {

namespace {

// Longer than any wait of the client, so the client's time-out decides first.
constexpr int kServerWaitMs = 10000;

bool waitReadable(int fd) {
    pollfd p{fd, POLLIN, 0};
    return ::poll(&p, 1, kServerWaitMs) > 0;
}

} // namespace

RecordingServer::RecordingServer(const std::string& ip, int port,
                                 std::vector<std::vector<Exchange>> connections)
    : script_(std::move(connections)) {
    listener_ = ::socket(AF_INET, SOCK_STREAM, 0);
    int one = 1;
    ::setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(static_cast<uint16_t>(port));
    ::inet_pton(AF_INET, ip.c_str(), &a.sin_addr);
    if (::bind(listener_, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0 ||
        ::listen(listener_, 4) != 0)
        throw std::runtime_error("cannot listen on " + ip + ":" + std::to_string(port));
    thread_ = std::thread([this] { run(); });
}

RecordingServer::~RecordingServer() {
    if (thread_.joinable())
        thread_.join();
    ::close(listener_);
}

const std::vector<std::string>& RecordingServer::received() {
    if (thread_.joinable())
        thread_.join();
    return received_;
}

void RecordingServer::run() {
    for (const auto& exchanges : script_) {
        if (!waitReadable(listener_))
            return;
        int fd = ::accept(listener_, nullptr, nullptr);
        if (fd < 0)
            return;
        std::string got;
        bool open = true;
        char buffer[65536];
        for (const Exchange& e : exchanges) {
            while (open && got.size() < e.expect) {
                ssize_t n = waitReadable(fd) ? ::recv(fd, buffer, sizeof buffer, 0) : 0;
                if (n <= 0)
                    open = false;
                else
                    got.append(buffer, static_cast<std::size_t>(n));
            }
            if (!open)
                break;
            ::send(fd, e.reply.data(), e.reply.size(), MSG_NOSIGNAL);
            if (e.close)
                open = false;
        }
        // Whatever else comes until the client closes is recorded too.
        while (open) {
            ssize_t n = waitReadable(fd) ? ::recv(fd, buffer, sizeof buffer, 0) : 0;
            if (n <= 0)
                break;
            got.append(buffer, static_cast<std::size_t>(n));
        }
        ::close(fd);
        received_.push_back(got);
    }
}

std::string be32(uint32_t v) {
    return {char(v >> 24), char(v >> 16), char(v >> 8), char(v)};
}

std::string le32(uint32_t v) {
    return {char(v), char(v >> 8), char(v >> 16), char(v >> 24)};
}

std::string counted(const std::string& text) {
    return be32(static_cast<uint32_t>(text.size() + 1)) + text + std::string(1, '\0');
}

std::string frame(uint8_t command, const std::string& payload) {
    return std::string(1, char(command)) + be32(static_cast<uint32_t>(payload.size())) + payload;
}

std::string replyHeader(uint8_t type, uint32_t length) {
    return std::string(1, char(type)) + be32(length);
}

} // namespace rqtest

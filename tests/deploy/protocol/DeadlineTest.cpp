// The client's bounds against devices that stall or trickle: a send the device does
// not take, and an operation slower than the minimum rate, both give 2; a slow but
// steady transfer completes.

#include "RecordingServer.h"
#include "deploy/protocol/DeviceProtocol.h"
#include "support/TestSupport.h"

#include <arpa/inet.h>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

using namespace rqtest;

namespace {

std::string nextAddress() {
    static int n = 0;
    ++n;
    return "127.63." + std::to_string(n / 250) + "." + std::to_string(n % 250 + 1);
}

// One connection: reads `expect` request bytes (none at all when `neverRead`), then
// sends `reply` in pieces of `piece` bytes, `pauseMs` apart, and waits for the
// client to close.
class PacedDevice {
public:
    PacedDevice(const std::string& ip, int port, std::size_t expect, std::string reply,
                std::size_t piece, int pauseMs, bool neverRead = false) {
        listener_ = ::socket(AF_INET, SOCK_STREAM, 0);
        int one = 1;
        ::setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_port = htons(static_cast<uint16_t>(port));
        ::inet_pton(AF_INET, ip.c_str(), &a.sin_addr);
        EXPECT_EQ(::bind(listener_, reinterpret_cast<sockaddr*>(&a), sizeof a), 0);
        EXPECT_EQ(::listen(listener_, 1), 0);
        thread_ = std::thread([=, this] {
            int fd = ::accept(listener_, nullptr, nullptr);
            if (fd < 0)
                return;
            // Small buffers so that a device that never reads stops the client soon.
            int small = 4096;
            ::setsockopt(fd, SOL_SOCKET, SO_RCVBUF, &small, sizeof small);
            char buffer[4096];
            std::size_t got = 0;
            while (!neverRead && got < expect) {
                ssize_t n = ::recv(fd, buffer, sizeof buffer, 0);
                if (n <= 0)
                    break;
                got += static_cast<std::size_t>(n);
            }
            for (std::size_t off = 0; !neverRead && off < reply.size(); off += piece) {
                std::this_thread::sleep_for(std::chrono::milliseconds(pauseMs));
                if (::send(fd, reply.data() + off, std::min(piece, reply.size() - off),
                           MSG_NOSIGNAL) <= 0)
                    break;
            }
            // Until the test ends; a reading device also stops when the client closes.
            while (!stop_) {
                pollfd p{fd, POLLIN, 0};
                if (!neverRead && ::poll(&p, 1, 50) > 0 &&
                    ::recv(fd, buffer, sizeof buffer, 0) <= 0)
                    break;
                if (neverRead)
                    std::this_thread::sleep_for(std::chrono::milliseconds(50));
            }
            ::close(fd);
        });
    }
    ~PacedDevice() {
        stop_ = true;
        ::shutdown(listener_, SHUT_RDWR);
        thread_.join();
        ::close(listener_);
    }

private:
    int listener_ = -1;
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

class DeadlineTest : public ::testing::Test {
protected:
    void SetUp() override {
        saved_ = rq::protocolLimits();
        rq::ProtocolLimits fast;
        fast.sendWaitSeconds = 1;
        fast.operationBaseSeconds = 1;
        fast.minimumBytesPerSecond = 1000;
        rq::setProtocolLimits(fast);
    }
    void TearDown() override { rq::setProtocolLimits(saved_); }
    rq::ProtocolLimits saved_;
};

} // namespace

TEST_F(DeadlineTest, TricklingDeviceFailsTypeAndGet) {
    const std::string ip = nextAddress();
    // One byte every 200 ms earns 1 ms each: the operation ends a little after 1 s.
    {
        PacedDevice device(ip, rq::kFilePort, 5,
                           replyHeader(1, 104) + counted(std::string(99, 'T')), 1, 200);
        char type[128];
        EXPECT_EQ(rq::QueryDeviceType(ip, type, sizeof type), rq::kCommError);
        EXPECT_EQ(rq::lastTransferFailure(), rq::TransferFailure::TimedOut);
    }
    TempDir dir;
    writeFile(dir.file("v"), "old");
    const std::string request = frame(3, counted("/v"));
    {
        PacedDevice device(ip, rq::kFilePort, request.size(),
                           replyHeader(3, 1) + "\1" + be32(100) + std::string(100, 'x'), 1, 200);
        EXPECT_EQ(rq::GetFile("/v", dir.file("v"), ip), rq::kCommError);
        EXPECT_EQ(rq::lastTransferFailure(), rq::TransferFailure::TimedOut);
    }
    EXPECT_EQ(readFile(dir.file("v")), "old");
}

TEST_F(DeadlineTest, SteadyTransferLongerThanTheBaseCompletes) {
    const std::string ip = nextAddress();
    // 6000 bytes at 2500 bytes a second: 2.4 s, more than the 1 s base, but the
    // bytes earn 6 s.
    const std::string content(6000, 'c');
    const std::string request = frame(3, counted("/v"));
    PacedDevice device(ip, rq::kFilePort, request.size(),
                       replyHeader(3, 1) + "\1" + be32(6000) + content, 500, 200);
    TempDir dir;
    EXPECT_EQ(rq::GetFile("/v", dir.file("v"), ip), rq::kTransferOk);
    EXPECT_EQ(readFile(dir.file("v")), content);
}

TEST_F(DeadlineTest, DeviceThatNeverReadsFailsThePut) {
    const std::string ip = nextAddress();
    PacedDevice device(ip, rq::kFilePort, 0, "", 1, 0, true);
    TempDir dir;
    writeFile(dir.file("big"), std::string(32 * 1024 * 1024, 'b'));
    EXPECT_EQ(rq::PutFile(dir.file("big"), "big", "/tmp", ip, 2, ""), rq::kCommError);
    EXPECT_EQ(rq::lastTransferFailure(), rq::TransferFailure::TimedOut);
}

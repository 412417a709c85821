// The emulated device against clients that lie, crowd, crawl or race: announced
// lengths, links planted under the root, two puts of one name at once, too many
// connections, a request that never ends, a zero byte inside a name.

#include "deploy/emulator/DeviceEmulator.h"
#include "deploy/protocol/DeviceProtocol.h"
#include "support/TestSupport.h"

#include <arpa/inet.h>
#include <chrono>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

using namespace rqtest;
namespace fs = std::filesystem;

namespace {

std::string nextAddress() {
    static int n = 0;
    ++n;
    return "127.64." + std::to_string(n / 250) + "." + std::to_string(n % 250 + 1);
}

std::string be32(uint32_t v) {
    return {char(v >> 24), char(v >> 16), char(v >> 8), char(v)};
}

std::string counted(const std::string& bytes) {
    return be32(static_cast<uint32_t>(bytes.size() + 1)) + bytes + std::string(1, '\0');
}

// The start of a put up to and including its size field.
std::string putHead(const std::string& name, const std::string& dir, uint32_t size) {
    const std::string names = counted(name) + counted(dir);
    return std::string(1, '\2') + be32(static_cast<uint32_t>(names.size())) + names + "\2" +
           counted("") + be32(size);
}

// A raw client connection to one port of the device.
struct RawClient {
    int fd = -1;
    RawClient(const std::string& ip, int port) {
        fd = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_port = htons(static_cast<uint16_t>(port));
        ::inet_pton(AF_INET, ip.c_str(), &a.sin_addr);
        EXPECT_EQ(::connect(fd, reinterpret_cast<sockaddr*>(&a), sizeof a), 0);
    }
    ~RawClient() { ::close(fd); }
    void send(const std::string& bytes) {
        EXPECT_EQ(::send(fd, bytes.data(), bytes.size(), MSG_NOSIGNAL), ssize_t(bytes.size()));
    }
    // What arrives until the device closes, `want` bytes have come, or nothing more
    // comes for `ms`.
    std::string reply(int ms = 3000, bool* closed = nullptr, std::size_t want = 6) {
        std::string got;
        char buffer[256];
        pollfd p{fd, POLLIN, 0};
        while (got.size() < want && ::poll(&p, 1, ms) > 0) {
            ssize_t n = ::recv(fd, buffer, sizeof buffer, 0);
            if (n <= 0) {
                if (closed)
                    *closed = true;
                return got;
            }
            got.append(buffer, static_cast<std::size_t>(n));
        }
        if (closed)
            *closed = false;
        return got;
    }
};

const std::string kRefused = std::string("\2") + be32(1) + std::string(1, '\0');
const std::string kAccepted = std::string("\2") + be32(1) + std::string(1, '\1');

class HostileClientTest : public ::testing::Test {
protected:
    void startDevice(const std::function<void(rq::EmulatorOptions&)>& adjust = {}) {
        rq::EmulatorOptions options;
        options.address = ip;
        options.root = root.str();
        options.type = "T";
        if (adjust)
            adjust(options);
        device = std::make_unique<rq::DeviceEmulator>(options);
        std::string error;
        ASSERT_TRUE(device->start(&error)) << error;
    }
    bool deviceAnswers() {
        char type[16];
        return rq::QueryDeviceType(ip, type, sizeof type) == rq::kTransferOk;
    }

    std::string ip = nextAddress();
    TempDir root, work;
    std::unique_ptr<rq::DeviceEmulator> device;
};

} // namespace

TEST_F(HostileClientTest, AnnouncedLengthsAreCheckedBeforeAnything) {
    startDevice();
    // 18 bytes that announce an extra text of 4 GiB: dropped at once.
    RawClient client(ip, rq::kFilePort);
    const std::string names = counted("f") + counted("/tmp");
    client.send(std::string(1, '\2') + be32(uint32_t(names.size())) + names + "\2" +
                be32(0xFFFFFFFF));
    bool closed = false;
    EXPECT_EQ(client.reply(2000, &closed), "");
    EXPECT_TRUE(closed);
    // So is a request frame longer than any request.
    RawClient big(ip, rq::kFilePort);
    big.send(std::string(1, '\3') + be32(0xFFFFFFF0));
    EXPECT_EQ(big.reply(2000, &closed), "");
    EXPECT_TRUE(closed);
    EXPECT_TRUE(deviceAnswers());
}

TEST_F(HostileClientTest, LinksUnderTheRootAreNeverFollowed) {
    startDevice();
    TempDir outside;
    writeFile(outside.file("secret"), "secret");
    fs::create_directory_symlink(outside.path(), root.path() / "tmp" / "out");
    fs::create_symlink(outside.file("secret"), root.path() / "home" / "app" / "secret");
    writeFile(work.file("f"), "planted");

    EXPECT_EQ(rq::PutFile(work.file("f"), "f", "/tmp/out", ip, 2, ""), rq::kCommError);
    EXPECT_EQ(rq::lastTransferFailure(), rq::TransferFailure::DeviceRefused);
    EXPECT_FALSE(fs::exists(outside.file("f")));
    EXPECT_EQ(rq::GetFile("/tmp/out/secret", work.file("got"), ip), rq::kCommError);
    EXPECT_EQ(rq::GetFile("/home/app/secret", work.file("got"), ip), rq::kCommError);
    EXPECT_FALSE(fs::exists(work.file("got")));
    // A put over the link replaces the link, not the file it names.
    EXPECT_EQ(rq::PutFile(work.file("f"), "secret", "/home/app", ip, 2, ""), rq::kTransferOk);
    EXPECT_EQ(readFile(outside.file("secret")), "secret");
    EXPECT_FALSE(fs::is_symlink(root.path() / "home" / "app" / "secret"));
}

TEST_F(HostileClientTest, ClientFilesInTmpAreNotTheDevicesWorkFiles) {
    startDevice();
    // The device unwraps packages elsewhere: a file a client left under the name the
    // device once used for its archive stays as it is.
    writeFile(work.file("mine"), "mine");
    ASSERT_EQ(rq::PutFile(work.file("mine"), "rqupdate.tar.gz", "/tmp", ip, 2, ""),
              rq::kTransferOk);
    writeFile(work.file("p"), "not a package");
    EXPECT_EQ(rq::PutFile(work.file("p"), "rqupdate.rqp", "/tmp", ip, 2, ""), rq::kCommError);
    EXPECT_EQ(readFile(root.path() / "tmp" / "rqupdate.tar.gz"), "mine");
}

TEST_F(HostileClientTest, TwoPutsOfOneNameLeaveOneWholeFile) {
    startDevice();
    const std::string a(200000, 'a'), b(200000, 'b');
    RawClient first(ip, rq::kFilePort);
    first.send(putHead("same", "/tmp", uint32_t(a.size())) + a.substr(0, a.size() / 2));
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    writeFile(work.file("b"), b);
    EXPECT_EQ(rq::PutFile(work.file("b"), "same", "/tmp", ip, 2, ""), rq::kTransferOk);
    EXPECT_EQ(readFile(root.path() / "tmp" / "same"), b);
    first.send(a.substr(a.size() / 2));
    EXPECT_EQ(first.reply(), kAccepted);
    EXPECT_EQ(readFile(root.path() / "tmp" / "same"), a);
    // No temporary is left.
    EXPECT_EQ(std::distance(fs::directory_iterator(root.path() / "tmp"), fs::directory_iterator()),
              1);
}

TEST_F(HostileClientTest, ZeroByteInsideANameIsRefused) {
    startDevice();
    RawClient client(ip, rq::kFilePort);
    client.send(putHead(std::string("evil\0.rqp", 9), "/tmp", 1) + "x");
    EXPECT_EQ(client.reply(), kRefused);
    EXPECT_TRUE(fs::is_empty(root.path() / "tmp"));
}

TEST_F(HostileClientTest, ConnectionsAreCappedAndSlowRequestsDropped) {
    startDevice([](rq::EmulatorOptions& o) {
        o.maxConnections = 2;
        o.idleWaitMs = 5000;
        o.requestBaseSeconds = 1;
        o.requestMinimumBytesPerSecond = 1000;
    });
    {
        RawClient one(ip, rq::kFilePort), two(ip, rq::kMonitorPort);
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        // The third is closed at once, and the device does not stop.
        RawClient three(ip, rq::kFilePort);
        bool closed = false;
        EXPECT_EQ(three.reply(2000, &closed), "");
        EXPECT_TRUE(closed);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_TRUE(deviceAnswers());

    // One byte every 300 ms: the request's time runs out after about a second.
    RawClient crawler(ip, rq::kFilePort);
    const std::string request = std::string(1, '\3') + be32(50) + std::string(50, 'x');
    const auto start = std::chrono::steady_clock::now();
    bool closed = false;
    for (char byte : request) {
        if (::send(crawler.fd, &byte, 1, MSG_NOSIGNAL) != 1)
            break;
        if (crawler.reply(300, &closed) != "" || closed)
            break;
    }
    EXPECT_TRUE(closed);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST_F(HostileClientTest, OutOfDescriptorsTheDeviceWaitsInsteadOfSpinning) {
    startDevice();
    // Leave this process exactly one free descriptor, for the client's socket: the
    // device's accept then fails for want of one.
    rlimit saved{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &saved), 0);
    const int probe = ::open("/dev/null", O_RDONLY);
    ASSERT_GE(probe, 0);
    ::close(probe);
    rlimit tight = saved;
    tight.rlim_cur = static_cast<rlim_t>(probe) + 1;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &tight), 0);
    auto client = std::make_unique<RawClient>(ip, rq::kFilePort);
    auto cpuSeconds = [] {
        rusage usage{};
        ::getrusage(RUSAGE_SELF, &usage);
        return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
               (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
    };
    const double before = cpuSeconds();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    const double used = cpuSeconds() - before;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &saved), 0);
    // A loop around the failing accept would have taken a large share of that second.
    EXPECT_LT(used, 0.05);
    // With descriptors back, the waiting client is served.
    client->send(std::string(1, '\1') + be32(0));
    EXPECT_EQ(client->reply(3000, nullptr, 11), std::string(1, '\1') + be32(6) + counted("T"));
}

// Inputs that the emulator fuzz target found to break the device, replayed on a
// real connection.

#include "deploy/emulator/DeviceEmulator.h"
#include "deploy/protocol/DeviceProtocol.h"
#include "support/TestSupport.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace rqtest;

namespace {

// What the device answers to `request` sent on one connection to port 8100 and
// then closed for sending.
std::string answerTo(const std::string& ip, const std::string& request) {
    int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(rq::kFilePort);
    ::inet_pton(AF_INET, ip.c_str(), &a.sin_addr);
    EXPECT_EQ(::connect(fd, reinterpret_cast<sockaddr*>(&a), sizeof a), 0);
    EXPECT_EQ(::send(fd, request.data(), request.size(), MSG_NOSIGNAL), ssize_t(request.size()));
    ::shutdown(fd, SHUT_WR);
    std::string got;
    char buffer[256];
    pollfd p{fd, POLLIN, 0};
    while (::poll(&p, 1, 5000) > 0) {
        ssize_t n = ::recv(fd, buffer, sizeof buffer, 0);
        if (n <= 0)
            break;
        got.append(buffer, static_cast<std::size_t>(n));
    }
    ::close(fd);
    return got;
}

} // namespace

// A package that unwraps to the gzip signature and then nothing libarchive can
// open: the archive reader has no error text to give, which must not be read.
TEST(EmulatorFuzzRegression, ArchiveThatCannotBeOpenedIsRefused) {
    TempDir root;
    rq::EmulatorOptions options;
    options.address = "127.62.253.9";
    options.root = root.str();
    options.type = "T";
    rq::DeviceEmulator device(options);
    std::string error;
    ASSERT_TRUE(device.start(&error)) << error;
    const std::string request(
        "\x02\x00\x00\x00\x1a\x00\x00\x00\x0d\x72\x71\x75\x70\x64\x61\x74\x65\x2e\x72\x71"
        "\x70\x00\x00\x00\x00\x05\x2f\x74\x6d\x70\x00\x02\x00\x00\x00\x01\x00\x00\x00\x00"
        "\xb0\x52\x51\x50\x00\x00\x00\x01\x8c\x00\x00\x00\x00\x00\x00\x00\x00\x59\xb6\x92"
        "\xfb\x28\xe2\x2d\x7f\x98\x5f\x29\x7a\xa8\x57\x94\x1f\xaa\xbe\x7d\xbe\x2d\x4c\x0e"
        "\xf4\xd3\xb0\xec\x5d\xf1\x7d\x63\x4e\x93\x1f\x49\x8e\xb5\xfc\xaa\xcd\x4c\x0b\x4a"
        "\x52\x38\xf9\xf8\x98\xd5\x73\xe4\x36\xa3\x67\x44\x0f\x6e\xd2\x7f\xbe\x26\x6a\xad"
        "\x44\x03\xba\x26\xca\x6d\xa4\xe0\x59\x51\x87\xe2\x40\x76\xf8\xaf\x19\x4c\xf3\xb8"
        "\x95\x37\xb1\xb6\x03\x91\xb2\x19\x4a\x52\x38\xf9\xf8\x98\xd5\x73\xd9\x7b\x94\x07"
        "\xe2\x1d\x15\xbc\x81\x83\xc8\x14\x8f\x15\x88\x9a\x65\xbb\x89\x40\xa9\xe4\x7a\x2e"
        "\xa7\x38\x37\xaa\x6a\x7a\xb6\x77\x7f\x39\x3f\x6d\x11\x39\x58\xcb\x26\xb0\x83\x90"
        "\x04\xd2\xe9\xf2\x84\xb6\x48\x2d\x61\x74\x65\x2e\x72\x71\x70\x00\x00\x00\x68\x6d"
        "\x69\x2f\x6d\x70\x00\x02\x00\x00\x00\x46\xfd\xda\x2a\x03\x94\xf2\xb0\x30\x08\x91"
        "\x4a\xeb\xd4\xbf\x75\x4c",
        246);
    EXPECT_EQ(answerTo(options.address, request).substr(0, 6),
              std::string("\x02\x00\x00\x00\x01\x00", 6));
}

// The protocol client against a scripted server: the exact request bytes and the
// result for each kind of reply.

#include "deploy/protocol/DeviceProtocol.h"
#include "RecordingServer.h"
#include "core/TextEncoding.h"
#include "support/TestSupport.h"

#include <arpa/inet.h>
#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

using namespace rqtest;

namespace {

// Each server gets its own loopback address, so no two tests share a port.
std::string nextAddress() {
    static int n = 0;
    ++n;
    return "127.61." + std::to_string(n / 250) + "." + std::to_string(n % 250 + 1);
}

std::string pattern(std::size_t size) {
    std::string s(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        s[i] = static_cast<char>((i * 131 + i / 251) & 0xFF);
    return s;
}

} // namespace

TEST(PackCountedString, BoundsAndLengthField) {
    struct Case {
        std::size_t capacity;
        std::string text;
        std::size_t used;   // return value
        std::string onWire; // the text as packed
    };
    const Case cases[] = {
        {0, "abc", 0, ""},
        {4, "abc", 0, ""},
        {5, "", 5, ""},
        {9, "hello", 5, ""},
        {10, "hello", 6, "h"},
        {1024, "", 5, ""},
        {1024, "abc", 8, "abc"},
        {1024, std::string(1015, 'a'), 1020, std::string(1015, 'a')},
        {1024, std::string(1016, 'b'), 1020, std::string(1015, 'b')},
        {1024, std::string(3000, 'c'), 1020, std::string(1015, 'c')},
        // Below a capacity of 9 the text keeps what fits with its zero byte.
        {5, "abcdef", 5, ""},
        {6, "a", 6, "a"},
        {8, "ab", 7, "ab"},
        {8, "abcdef", 8, "abc"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE("capacity " + std::to_string(c.capacity) + ", text of " +
                     std::to_string(c.text.size()));
        std::string buffer(c.capacity + 16, '\x5A');
        EXPECT_EQ(rq::PackCountedString(buffer.data(), c.capacity, c.text.c_str()), c.used);
        // Nothing is written beyond the capacity.
        EXPECT_EQ(buffer.substr(c.capacity), std::string(16, '\x5A'));
        if (c.used != 0) {
            EXPECT_EQ(buffer.substr(0, c.used), counted(c.onWire));
        }
    }
}

TEST(RecvExact, CollectsPiecesAndFailsOnNothing) {
    int pair[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, pair), 0);
    char buffer[8] = {};
    EXPECT_EQ(rq::RecvExact(pair[0], buffer, 0, 1), 0); // reading 0 bytes fails
    ASSERT_EQ(::write(pair[1], "abc", 3), 3);
    ASSERT_EQ(::write(pair[1], "de", 2), 2);
    EXPECT_EQ(rq::RecvExact(pair[0], buffer, 5, 1), 1);
    EXPECT_EQ(std::string(buffer, 5), "abcde");
    EXPECT_EQ(rq::RecvExact(pair[0], buffer, 1, 1), 0); // silence: one-second wait, then failure
    ::close(pair[1]);
    EXPECT_EQ(rq::RecvExact(pair[0], buffer, 1, 1), 0); // end of stream
    // A send to a closed peer fails instead of ending the process.
    EXPECT_EQ(rq::SendAll(pair[0], "x", 1), 0);
    EXPECT_EQ(rq::SendAll(pair[0], "x", 0), 1);
    ::close(pair[0]);
}

TEST(QueryDeviceType, FrameAndReplies) {
    struct Case {
        const char* what;
        std::string reply;
        uint32_t capacity;
        rq::TransferResult result;
        std::string name;
    };
    const std::string longName(127, 'T');
    const Case cases[] = {
        {"type name", replyHeader(1, 10) + counted("HMI-A"), 128, rq::kTransferOk, "HMI-A"},
        {"exactly fits", replyHeader(1, 132) + counted(longName), 128, rq::kTransferOk, longName},
        {"longer than capacity", replyHeader(1, 133) + counted(longName + "T"), 128, rq::kCommError,
         ""},
        {"wrong reply type", replyHeader(2, 10) + counted("HMI-A"), 128, rq::kCommError, ""},
        {"zero-length string", replyHeader(1, 4) + be32(0), 128, rq::kCommError, ""},
        {"closed after the header", replyHeader(1, 10), 128, rq::kCommError, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const std::string ip = nextAddress();
        RecordingServer server(ip, rq::kFilePort, {{{5, c.reply, true}}});
        std::string buffer(c.capacity, '\x7F');
        EXPECT_EQ(rq::QueryDeviceType(ip, buffer.data(), c.capacity), c.result);
        if (c.result == rq::kTransferOk) {
            EXPECT_EQ(std::string(buffer.c_str()), c.name);
        }
        EXPECT_EQ(server.received().at(0), frame(1, ""));
    }
}

// The frame length covers only the two names; the content crosses the piece size.
// Names and the password travel in the device code page.
TEST(PutFile, RequestBytes) {
    rq::setDeviceCodePage("GB2312");
    const std::string big = pattern(2 * 65536 + 7);
    struct Case {
        std::string name, password, content, expected;
    } cases[] = {
        {"rqupdate.rqp", "secret", big,
         frame(2, counted("rqupdate.rqp") + counted("/tmp")) + "\x02" + counted("secret") +
             be32(uint32_t(big.size())) + big},
        // The longest name that leaves "/tmp" whole room in the 1024-byte buffer.
        {std::string(1006, 'n'), "", "x",
         frame(2, counted(std::string(1006, 'n')) + counted("/tmp")) + "\x02" + counted("") +
             be32(1) + "x"},
        {"数据.rqp", "密", "x",
         frame(2, counted("\xCA\xFD\xBE\xDD.rqp") + counted("/tmp")) + "\x02" +
             counted("\xC3\xDC") + be32(1) + "x"},
    };
    for (const Case& c : cases) {
        TempDir dir;
        writeFile(dir.file("f"), c.content);
        const std::string ip = nextAddress();
        // The reply type is not looked at.
        RecordingServer server(ip, rq::kFilePort,
                               {{{c.expected.size(), replyHeader(9, 1) + std::string(1, '\1')}}});
        EXPECT_EQ(rq::PutFile(dir.file("f"), c.name, "/tmp", ip, 2, c.password), rq::kTransferOk);
        EXPECT_EQ(server.received().at(0), c.expected) << c.name.substr(0, 20);
    }
}

TEST(PutFile, RefusedReplies) {
    TempDir dir;
    writeFile(dir.file("f"), "abc");
    const std::size_t requestSize = frame(2, counted("f") + counted("/tmp")).size() + 1 + 5 + 4 + 3;
    struct Case {
        const char* what;
        std::string reply;
    };
    const Case cases[] = {
        {"status 0", replyHeader(2, 1) + std::string(1, '\0')},
        {"status 2", replyHeader(2, 1) + std::string(1, '\2')},
        {"length 2", replyHeader(2, 2) + std::string("\1\1")},
        {"no status byte", replyHeader(2, 1)},
        {"nothing", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const std::string ip = nextAddress();
        RecordingServer server(ip, rq::kFilePort, {{{requestSize, c.reply, true}}});
        EXPECT_EQ(rq::PutFile(dir.file("f"), "f", "/tmp", ip, 2, ""), rq::kCommError);
        EXPECT_EQ(server.received().at(0).size(), requestSize);
    }
}

TEST(PutFile, LocalFileErrorsComeBeforeAnyConnection) {
    TempDir dir;
    writeFile(dir.file("empty"), "");
    writeFile(dir.file("f"), "x");
    // Nobody listens on this address: a connection attempt would give 1.
    const std::string ip = nextAddress();
    EXPECT_EQ(rq::PutFile(dir.file("empty"), "e", "/tmp", ip, 2, ""), rq::kLocalFileError);
    EXPECT_EQ(rq::PutFile(dir.file("missing"), "m", "/tmp", ip, 2, ""), rq::kLocalFileError);
    EXPECT_EQ(rq::PutFile(dir.str(), "d", "/tmp", ip, 2, ""), rq::kLocalFileError);
    // A name and directory that do not both fit whole into the request buffer (the
    // directory would be cut, lost, or packed from bytes beyond the buffer).
    for (std::size_t length : {1007, 1008, 1011, 1014, 1015, 1016, 2000}) {
        SCOPED_TRACE(length);
        EXPECT_EQ(rq::PutFile(dir.file("f"), std::string(length, 'n'), "/tmp", ip, 2, ""),
                  rq::kLocalFileError);
        EXPECT_EQ(rq::lastTransferFailure(), rq::TransferFailure::NotWhole);
    }
    EXPECT_EQ(rq::PutFile(dir.file("f"), "f", std::string(1016, 'd'), ip, 2, ""),
              rq::kLocalFileError);
}

TEST(GetFile, RepliesAndTheLocalFile) {
    const std::string big = pattern(150001);
    struct Case {
        const char* what;
        std::string reply;
        bool closeAfter;
        rq::TransferResult result;
        bool fileExpected;
        std::string fileContent;
    };
    const std::string ok = replyHeader(3, 1) + std::string(1, '\1');
    const Case cases[] = {
        {"small file", ok + be32(5) + "hello", false, rq::kTransferOk, true, "hello"},
        {"large file", ok + be32(uint32_t(big.size())) + big, false, rq::kTransferOk, true, big},
        {"empty file", ok + be32(0), false, rq::kTransferOk, true, ""},
        {"any non-zero status", replyHeader(3, 1) + "\x07" + be32(2) + "ab", false, rq::kTransferOk,
         true, "ab"},
        {"status 0", replyHeader(3, 1) + std::string(1, '\0'), true, rq::kCommError, false, ""},
        // A cut transfer leaves nothing behind.
        {"cut in the content", ok + be32(3000) + big.substr(0, 2100), true, rq::kCommError, false,
         ""},
        {"length 2", replyHeader(3, 2) + "\1\1" + be32(1) + "a", true, rq::kCommError, false, ""},
        {"size missing", ok, true, rq::kCommError, false, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TempDir dir;
        const std::string ip = nextAddress();
        const std::string request = frame(3, counted("/home/app/version"));
        RecordingServer server(ip, rq::kFilePort, {{{request.size(), c.reply, c.closeAfter}}});
        EXPECT_EQ(rq::GetFile("/home/app/version", dir.file("v"), ip), c.result);
        EXPECT_EQ(server.received().at(0), request);
        EXPECT_EQ(std::filesystem::exists(dir.file("v")), c.fileExpected);
        if (c.fileExpected) {
            EXPECT_EQ(readFile(dir.file("v")), c.fileContent);
        }
        // No temporary is left beside it.
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()),
                                std::filesystem::directory_iterator()),
                  c.fileExpected ? 1 : 0);
    }
}

TEST(GetFile, FailuresKeepAnExistingFileAndUnwritableTargetIsLocal) {
    TempDir dir;
    writeFile(dir.file("v"), "old");
    const std::size_t request = frame(3, counted("/home/app/version")).size();
    std::string ip = nextAddress();
    {
        RecordingServer server(ip, rq::kFilePort,
                               {{{request, replyHeader(3, 1) + std::string(1, '\0'), true}}});
        EXPECT_EQ(rq::GetFile("/home/app/version", dir.file("v"), ip), rq::kCommError);
        EXPECT_EQ(rq::lastTransferFailure(), rq::TransferFailure::DeviceRefused);
    }
    EXPECT_EQ(readFile(dir.file("v")), "old");
    ip = nextAddress();
    {
        // Cut in the middle: the old file stays whole.
        RecordingServer server(ip, rq::kFilePort,
                               {{{request, replyHeader(3, 1) + "\1" + be32(5000) + "new", true}}});
        EXPECT_EQ(rq::GetFile("/home/app/version", dir.file("v"), ip), rq::kCommError);
        EXPECT_EQ(rq::lastTransferFailure(), rq::TransferFailure::None);
    }
    EXPECT_EQ(readFile(dir.file("v")), "old");
    ip = nextAddress();
    {
        RecordingServer server(ip, rq::kFilePort,
                               {{{request, replyHeader(3, 1) + "\1" + be32(3) + "new", true}}});
        EXPECT_EQ(rq::GetFile("/home/app/version", dir.file("v"), ip), rq::kTransferOk);
    }
    EXPECT_EQ(readFile(dir.file("v")), "new");
    ip = nextAddress();
    RecordingServer server(ip, rq::kFilePort,
                           {{{request, replyHeader(3, 1) + "\1" + be32(1) + "a", true}}});
    EXPECT_EQ(rq::GetFile("/home/app/version", dir.file("no/such/dir"), ip), rq::kLocalFileError);
}

TEST(SetDeviceClock, LittleEndianSecondsAndReplies) {
    struct Case {
        uint32_t seconds;
        std::string payload;
        std::string reply;
        rq::TransferResult result;
    };
    const std::string ok = replyHeader(7, 1) + std::string(1, '\1');
    const Case cases[] = {
        {1, std::string("\x01\x00\x00\x00", 4), ok, rq::kTransferOk},
        {0x12345678, "\x78\x56\x34\x12", ok, rq::kTransferOk},
        {2, std::string("\x02\x00\x00\x00", 4), replyHeader(7, 1) + std::string(1, '\0'),
         rq::kCommError},
        {3, std::string("\x03\x00\x00\x00", 4), replyHeader(7, 2) + "\1\1", rq::kCommError},
        {4, std::string("\x04\x00\x00\x00", 4), "", rq::kCommError},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.seconds);
        const std::string ip = nextAddress();
        RecordingServer server(ip, rq::kClockPort, {{{9, c.reply, true}}});
        EXPECT_EQ(rq::SetDeviceClockAt(ip, c.seconds), c.result);
        EXPECT_EQ(server.received().at(0), frame(7, c.payload));
    }
}

TEST(QueryUpdateDone, OnlyTheReplyTypeCounts) {
    struct Case {
        std::string reply;
        rq::TransferResult result;
    };
    const Case cases[] = {
        {replyHeader(2, 0), rq::kTransferOk},   {replyHeader(2, 7), rq::kTransferOk},
        {replyHeader(1, 0), rq::kCommError},    {replyHeader(0, 0), rq::kCommError},
        {std::string(1, '\2'), rq::kCommError},
    };
    for (const Case& c : cases) {
        const std::string ip = nextAddress();
        RecordingServer server(ip, rq::kUpdatePort, {{{5, c.reply, true}}});
        EXPECT_EQ(rq::QueryUpdateDone(ip), c.result);
        EXPECT_EQ(server.received().at(0), frame(2, ""));
    }
}

TEST(PollDeviceStatus, KeepsTheConnectionUntilARefusal) {
    auto statusReply = [](uint32_t base) {
        std::string body = replyHeader(1, 25) + std::string(1, '\1');
        for (uint32_t i = 0; i < 6; ++i)
            body += le32(base + i);
        return body;
    };
    const std::string ip = nextAddress();
    RecordingServer server(ip, rq::kMonitorPort,
                           {{{5, statusReply(1000)},
                             {10, statusReply(0x01020300)},
                             {15, replyHeader(1, 1) + std::string(1, '\0')}},
                            {{5, statusReply(7)}}});
    rq::MonitorSocket sock = 0;
    rq::DeviceStatus s{};
    ASSERT_EQ(rq::PollDeviceStatus(ip, sock, s), rq::kTransferOk);
    EXPECT_NE(sock, 0);
    EXPECT_EQ(s.totalMemory, 1000u);
    EXPECT_EQ(s.appMemoryRate, 1005u);
    const rq::MonitorSocket first = sock;
    ASSERT_EQ(rq::PollDeviceStatus(ip, sock, s), rq::kTransferOk);
    EXPECT_EQ(sock, first);
    EXPECT_EQ(s.usedMemory, 0x01020301u);
    EXPECT_EQ(s.cpuUsage, 0x01020304u);
    // The refusal drops the connection; the next poll connects anew.
    EXPECT_EQ(rq::PollDeviceStatus(ip, sock, s), rq::kCommError);
    EXPECT_EQ(sock, 0);
    ASSERT_EQ(rq::PollDeviceStatus(ip, sock, s), rq::kTransferOk);
    EXPECT_EQ(s.freeMemory, 9u);
    rq::EndDeviceMonitor(sock);
    EXPECT_EQ(sock, 0);
    const auto& received = server.received();
    ASSERT_EQ(received.size(), 2u);
    EXPECT_EQ(received[0], frame(1, "") + frame(1, "") + frame(1, ""));
    EXPECT_EQ(received[1], frame(1, "") + frame(2, ""));
}

TEST(PollDeviceStatus, BadRepliesDropTheConnection) {
    const std::string values(24, '\0');
    const std::string cases[] = {
        replyHeader(1, 24) + std::string(1, '\1') + values.substr(1),
        replyHeader(1, 25) + std::string(1, '\0') + values,
        replyHeader(1, 25) + std::string(1, '\1') + values.substr(0, 10),
        replyHeader(1, 0),
    };
    for (const std::string& reply : cases) {
        const std::string ip = nextAddress();
        RecordingServer server(ip, rq::kMonitorPort, {{{5, reply, true}}});
        rq::MonitorSocket sock = 0;
        rq::DeviceStatus s{};
        EXPECT_EQ(rq::PollDeviceStatus(ip, sock, s), rq::kCommError);
        EXPECT_EQ(sock, 0);
    }
}

TEST(DeviceProtocol, NoListenerGivesCannotConnectAndTheFixedText) {
    TempDir dir;
    writeFile(dir.file("f"), "x");
    const std::string ip = nextAddress();
    char buffer[128];
    rq::MonitorSocket sock = 0;
    rq::DeviceStatus s{};
    const std::vector<std::function<rq::TransferResult()>> commands = {
        [&] { return rq::QueryDeviceType(ip, buffer, sizeof buffer); },
        [&] { return rq::PutFile(dir.file("f"), "f", "/tmp", ip, 2, ""); },
        [&] { return rq::GetFile("/home/app/version", dir.file("v"), ip); },
        [&] { return rq::QueryUpdateDone(ip); },
        [&] { return rq::SetDeviceClock(ip); },
        [&] { return rq::PollDeviceStatus(ip, sock, s); },
    };
    for (const auto& command : commands) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(command(), rq::kCannotConnect);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "can't connect to server!\n");
    }
    EXPECT_EQ(sock, 0);
    EXPECT_FALSE(std::filesystem::exists(dir.file("v")));
}

TEST(DeviceProtocol, MonitorFigureTexts) {
    EXPECT_EQ(rq::FormatMemory(0xFFFFFFFF), "4294967295K");
    EXPECT_EQ(rq::FormatRate(0xFFFFFFFF), "429496729.5");
    EXPECT_EQ(rq::FormatMemory(0), "0K");
    EXPECT_EQ(rq::FormatMemory(1048576), "1048576K");
    EXPECT_EQ(rq::FormatRate(5), "0.5");
    EXPECT_EQ(rq::FormatRate(1000), "100.0");
    EXPECT_EQ(rq::FormatRate(127), "12.7");
}

TEST(TransferControl, ReportsProgressToTheWholeAndCancelEndsATransferAtOnce) {
    // Progress of a put and a get: growing counts that end at the whole.
    const std::string content = pattern(3 * 1024 * 1024 + 5);
    TempDir dir;
    writeFile(dir.file("f"), content);
    std::vector<std::pair<uint64_t, uint64_t>> seen;
    rq::TransferControl control;
    control.progress = [&](uint64_t done, uint64_t total) { seen.emplace_back(done, total); };
    {
        const std::string ip = nextAddress();
        const std::string request = frame(2, counted("f") + counted("/tmp")) + "\x02" +
                                    counted("") + be32(uint32_t(content.size())) + content;
        RecordingServer server(ip, rq::kFilePort,
                               {{{request.size(), replyHeader(2, 1) + std::string(1, '\1')}}});
        EXPECT_EQ(rq::PutFile(dir.file("f"), "f", "/tmp", ip, 2, "", &control), rq::kTransferOk);
        EXPECT_EQ(server.received().at(0), request);
    }
    {
        const std::string ip = nextAddress();
        RecordingServer server(
            ip, rq::kFilePort,
            {{{frame(3, counted("/f")).size(), replyHeader(3, 1) + std::string(1, '\1') +
                                                   be32(uint32_t(content.size())) + content}}});
        EXPECT_EQ(rq::GetFile("/f", dir.file("g"), ip, &control), rq::kTransferOk);
        EXPECT_EQ(readFile(dir.file("g")), content);
    }
    ASSERT_GE(seen.size(), 4u);
    int ends = 0;
    for (std::size_t i = 0; i < seen.size(); ++i) {
        EXPECT_EQ(seen[i].second, content.size());
        EXPECT_LE(seen[i].first, seen[i].second);
        if (seen[i].first == seen[i].second)
            ++ends;
        else
            EXPECT_LT(seen[i].first, seen[i + 1].first);
    }
    EXPECT_EQ(ends, 2);

    // A device that accepts and never reads: the put waits in its send until cancelled
    // from another thread, and then ends at once.
    const std::string ip = nextAddress();
    int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(rq::kFilePort);
    a.sin_addr.s_addr = ::inet_addr(ip.c_str());
    ASSERT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&a), sizeof a), 0);
    ::listen(listener, 1);
    writeFile(dir.file("big"), std::string(32u << 20, 'b'));
    rq::TransferControl stopper;
    std::thread canceller([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        stopper.cancel();
    });
    const auto t0 = std::chrono::steady_clock::now();
    EXPECT_EQ(rq::PutFile(dir.file("big"), "big", "/tmp", ip, 2, "", &stopper), rq::kCommError);
    EXPECT_LT(std::chrono::steady_clock::now() - t0, std::chrono::seconds(3));
    canceller.join();
    // A cancelled control fails the next transfer before it moves anything.
    EXPECT_EQ(rq::PutFile(dir.file("f"), "f", "/tmp", ip, 2, "", &stopper), rq::kCommError);
    stopper.reset();
    ::close(listener);
}

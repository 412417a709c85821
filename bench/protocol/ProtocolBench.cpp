// Putting and getting a large file to the emulated device on loopback, beside a
// plain TCP copy of the same bytes measured in the same run: the plain sender
// streams the file into a socket and the plain receiver writes what arrives to a
// file, with no protocol around it. Each direction runs several rounds,
// alternating protocol and plain, and the best round of each counts.
//
//   bench_protocol [--mib N] [--rounds R]      (defaults: 256 MiB, 3 rounds)
//
// Prints the throughputs and the ratio protocol / plain (target: at least 0.8).

#include "deploy/emulator/DeviceEmulator.h"
#include "deploy/protocol/DeviceProtocol.h"

#include <arpa/inet.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

constexpr const char* kDeviceAddress = "127.63.0.1";
constexpr const char* kPlainAddress = "127.63.0.2";
constexpr int kPlainPort = 9100;
constexpr std::size_t kPlainChunk = 1024 * 1024;

[[noreturn]] void die(const std::string& text) {
    std::fprintf(stderr, "bench_protocol: %s\n", text.c_str());
    std::exit(1);
}

void makeFile(const fs::path& path, std::size_t bytes) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!f)
        die("cannot write " + path.string());
    std::vector<unsigned char> chunk(kPlainChunk);
    uint32_t x = 12345;
    for (auto& b : chunk) {
        x = x * 1103515245u + 12345u;
        b = static_cast<unsigned char>(x >> 16);
    }
    for (std::size_t done = 0; done < bytes; done += chunk.size())
        std::fwrite(chunk.data(), 1, std::min(chunk.size(), bytes - done), f);
    std::fclose(f);
}

bool sameFiles(const fs::path& a, const fs::path& b) {
    std::FILE* fa = std::fopen(a.c_str(), "rb");
    std::FILE* fb = std::fopen(b.c_str(), "rb");
    bool same = fa && fb;
    std::vector<char> ba(kPlainChunk), bb(kPlainChunk);
    while (same) {
        std::size_t na = std::fread(ba.data(), 1, ba.size(), fa);
        std::size_t nb = std::fread(bb.data(), 1, bb.size(), fb);
        same = na == nb && std::memcmp(ba.data(), bb.data(), na) == 0;
        if (na == 0)
            break;
    }
    if (fa)
        std::fclose(fa);
    if (fb)
        std::fclose(fb);
    return same;
}

int listenOn(const char* ip, int port) {
    int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    int one = 1;
    ::setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(static_cast<uint16_t>(port));
    ::inet_pton(AF_INET, ip, &a.sin_addr);
    if (::bind(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0 || ::listen(fd, 4) != 0)
        die(std::string("cannot listen on ") + ip);
    return fd;
}

int connectTo(const char* ip, int port) {
    int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(static_cast<uint16_t>(port));
    ::inet_pton(AF_INET, ip, &a.sin_addr);
    if (::connect(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0)
        die("plain connect failed");
    return fd;
}

// File -> socket, then half-close.
void sendFile(int sock, const fs::path& path) {
    int in = ::open(path.c_str(), O_RDONLY);
    std::vector<char> chunk(kPlainChunk);
    ssize_t n;
    while ((n = ::read(in, chunk.data(), chunk.size())) > 0)
        for (ssize_t off = 0; off < n;) {
            ssize_t sent =
                ::send(sock, chunk.data() + off, static_cast<std::size_t>(n - off), MSG_NOSIGNAL);
            if (sent <= 0)
                die("plain send failed");
            off += sent;
        }
    ::close(in);
    ::shutdown(sock, SHUT_WR);
}

// Socket -> file until the sender's end.
void receiveFile(int sock, const fs::path& path) {
    int out = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    std::vector<char> chunk(kPlainChunk);
    ssize_t n;
    while ((n = ::recv(sock, chunk.data(), chunk.size(), 0)) > 0)
        if (::write(out, chunk.data(), static_cast<std::size_t>(n)) != n)
            die("plain write failed");
    ::close(out);
}

// The plain copy of one direction: the server thread takes the far side's part.
// Upload: client file -> server file; the server acknowledges with one byte after
// closing its file, as the device's status byte does. Download: server file ->
// client file.
double plainCopy(int listener, bool upload, const fs::path& source, const fs::path& target) {
    const auto start = Clock::now();
    std::thread server([&] {
        int c = ::accept(listener, nullptr, nullptr);
        if (upload) {
            receiveFile(c, target);
            char ack = 1;
            ::send(c, &ack, 1, MSG_NOSIGNAL);
        } else {
            sendFile(c, source);
        }
        ::close(c);
    });
    int sock = connectTo(kPlainAddress, kPlainPort);
    if (upload) {
        sendFile(sock, source);
        char ack;
        if (::recv(sock, &ack, 1, 0) != 1)
            die("plain acknowledgement missing");
    } else {
        receiveFile(sock, target);
    }
    ::close(sock);
    server.join();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

template <class F> double timed(F&& f) {
    const auto start = Clock::now();
    f();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

} // namespace

int main(int argc, char** argv) {
    std::size_t mib = 256;
    int rounds = 3;
    for (int i = 1; i + 1 < argc; i += 2) {
        if (std::strcmp(argv[i], "--mib") == 0)
            mib = std::strtoul(argv[i + 1], nullptr, 10);
        else if (std::strcmp(argv[i], "--rounds") == 0)
            rounds = std::atoi(argv[i + 1]);
    }
    if (mib == 0 || mib > 4095 || rounds < 1)
        die("usage: bench_protocol [--mib 1..4095] [--rounds N]");

    const fs::path dir =
        fs::temp_directory_path() / ("rq-bench-protocol-" + std::to_string(getpid()));
    fs::create_directories(dir);
    const fs::path source = dir / "source.bin";
    const fs::path fetched = dir / "fetched.bin";
    const std::size_t bytes = mib * 1024 * 1024;
    makeFile(source, bytes);

    rq::EmulatorOptions options;
    options.address = kDeviceAddress;
    options.root = (dir / "device").string();
    options.type = "BENCH";
    rq::DeviceEmulator device(options);
    std::string error;
    if (!device.start(&error))
        die(error);
    const fs::path onDevice = device.rootPath("/tmp/big.bin");
    int listener = listenOn(kPlainAddress, kPlainPort);

    double bestPut = 1e30, bestGet = 1e30, bestPlainUp = 1e30, bestPlainDown = 1e30;
    auto putRound = [&] {
        fs::remove(onDevice);
        bestPut = std::min(bestPut, timed([&] {
                               if (rq::PutFile(source.string(), "big.bin", "/tmp", kDeviceAddress,
                                               2, "") != rq::kTransferOk)
                                   die("put failed");
                           }));
    };
    auto plainUpRound = [&] {
        bestPlainUp =
            std::min(bestPlainUp, plainCopy(listener, true, source, dir / "plain-up.bin"));
        fs::remove(dir / "plain-up.bin");
    };
    auto getRound = [&] {
        fs::remove(fetched);
        bestGet = std::min(bestGet, timed([&] {
                               if (rq::GetFile("/tmp/big.bin", fetched.string(), kDeviceAddress) !=
                                   rq::kTransferOk)
                                   die("get failed");
                           }));
    };
    auto plainDownRound = [&] {
        bestPlainDown =
            std::min(bestPlainDown, plainCopy(listener, false, onDevice, dir / "plain-down.bin"));
        fs::remove(dir / "plain-down.bin");
    };
    // Each round swaps which of the pair goes first, so that neither always meets
    // the write-back of the one before.
    for (int r = 0; r < rounds; ++r) {
        if (r % 2 == 0) {
            putRound();
            plainUpRound();
            getRound();
            plainDownRound();
        } else {
            plainUpRound();
            putRound();
            plainDownRound();
            getRound();
        }
    }
    if (!sameFiles(source, onDevice) || !sameFiles(source, fetched))
        die("the copies differ from the source");
    device.stop();
    ::close(listener);
    fs::remove_all(dir);

    auto rate = [mib](double seconds) { return static_cast<double>(mib) / seconds; };
    std::printf("%zu MiB, best of %d rounds, loopback\n", mib, rounds);
    std::printf("put: protocol %8.1f MiB/s   plain TCP %8.1f MiB/s   ratio %.2f (target >= 0.8)\n",
                rate(bestPut), rate(bestPlainUp), bestPlainUp / bestPut);
    std::printf("get: protocol %8.1f MiB/s   plain TCP %8.1f MiB/s   ratio %.2f (target >= 0.8)\n",
                rate(bestGet), rate(bestPlainDown), bestPlainDown / bestGet);
    return 0;
}

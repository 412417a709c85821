#pragma once
// A device on the network, emulated: the device side of the transfer protocol on
// the four fixed ports of one IPv4 address, with the device's file system kept
// under a root directory (ROOT/tmp, ROOT/home/app/...). It acts on what arrives in
// /tmp as the device does: killprog.rqp stops the runtime, rqupdate.rqp installs a
// project or an upgrade, rqmon.rqp starts the monitor service.
//
// Fault triggers let every error path of a client run against it: no listener,
// silence, a connection cut in the middle of a transfer, a wrong reply length, an
// update port that never reports ready.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace rq {

enum class EmulatorFault {
    None,
    Refuse,    // no listener: every connection is refused
    Silent,    // accepts and reads, never answers
    Cut,       // closes in the middle of a transfer
    BadLength, // announces a wrong reply length
    Busy,      // the update port never reports ready
};

std::optional<EmulatorFault> parseEmulatorFault(const std::string& name);
const char* emulatorFaultName(EmulatorFault fault);

struct EmulatorOptions {
    std::string address;     // dotted IPv4 text
    std::string root;        // the device's file system
    std::string type;        // the HMI type name the device reports (UTF-8)
    std::string versionDate; // YYYYMMDD: writes ROOT/home/app/version at start; "" = keep
    int readyAfterSeconds = 0;
    EmulatorFault fault = EmulatorFault::None;
    std::ostream* log = nullptr; // one line per request; nullptr = quiet

    // Connections served at once; more are accepted and closed at once.
    int maxConnections = 64;
    // A client may stay silent this long between requests (and before the first).
    int idleWaitMs = 30000;
    // A request, from its first byte to the last byte of its reply, may take
    // requestBaseSeconds plus one second for every requestMinimumBytesPerSecond bytes
    // it moved; a slower client is dropped.
    int requestBaseSeconds = 30;
    uint32_t requestMinimumBytesPerSecond = 1024;
    // False: no listeners at all; requests reach the device through serveStream
    // only (fuzzing).
    bool listen = true;
};

class DeviceEmulator {
public:
    explicit DeviceEmulator(EmulatorOptions options);
    ~DeviceEmulator();
    DeviceEmulator(const DeviceEmulator&) = delete;
    DeviceEmulator& operator=(const DeviceEmulator&) = delete;

    // Lays out the root and starts listening; false with the reason in *error.
    bool start(std::string* error);
    // Closes the listeners and every open connection and waits for them.
    void stop();
    // Serves one connected stream as a connection to `port` would be served, on the
    // calling thread, until the client closes or a request fails. The caller keeps
    // the descriptor.
    void serveStream(int fd, int port);

    // What the device has been through, for tests.
    bool runtimeRunning() const;
    bool monitorRunning() const;
    bool updateReady() const;
    std::optional<uint32_t> lastClock() const;
    std::string rootPath(const std::string& devicePath) const; // "/home/app/version" -> file
    int connectionCount();

private:
    struct Connection;
    struct Reply;

    void acceptLoop();
    void serve(Connection& connection);
    bool serveFile(Connection& c, uint8_t command, uint32_t length);
    bool serveUpdate(Connection& c, uint8_t command, uint32_t length);
    bool serveMonitor(Connection& c, uint8_t command, uint32_t length);
    bool serveClock(Connection& c, uint8_t command, uint32_t length);
    bool putFile(Connection& c, const std::string& payload);
    int openDeviceDirectory(const std::string& devicePath) const;
    bool getFile(Connection& c, const std::string& payload);
    bool sendReply(Connection& c, uint8_t type, const std::string& body);
    uint8_t actOnArrival(const std::string& name, int file, const std::string& extraText,
                         std::string& note);
    uint8_t installPackage(int package, const std::string& password, std::string& note);
    void startBusyPeriod();
    void logLine(const Connection& c, const std::string& text);

    EmulatorOptions options_;
    std::filesystem::path root_;
    int rootFd_ = -1;
    std::filesystem::path workDir_; // private to the emulator, outside the root
    std::vector<int> listeners_;
    std::vector<int> listenerPorts_;
    int wakePipe_[2] = {-1, -1};
    std::thread acceptor_;
    std::atomic<bool> stopping_{false};
    std::atomic<unsigned long> nextConnectionId_{0}; // names each connection's temporaries

    std::mutex connectionsMutex_;
    std::list<std::unique_ptr<Connection>> connections_;

    mutable std::mutex stateMutex_; // the device's state and its file system actions
    bool runtimeRunning_ = true;
    bool monitorRunning_ = false;
    int updatesInProgress_ = 0;
    std::chrono::steady_clock::time_point busyUntil_{};
    std::optional<uint32_t> lastClock_;
    uint64_t cpuTotal_ = 0, cpuIdle_ = 0; // the previous /proc/stat sample

    std::mutex installMutex_; // one package is handled at a time
    std::mutex logMutex_;
};

} // namespace rq

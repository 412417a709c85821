#pragma once
// The device transfer protocol, client side: blocking TCP operations against the
// device's four fixed ports. Every command opens its own connection, sends one
// request frame, reads the reply and closes; only the running monitor keeps its
// connection between polls. Nothing here shows a message: each command returns a
// TransferResult and the caller words the message.
//
// Request frame: command byte, 4-byte big-endian payload length, payload.
// Reply header: type byte, 4-byte big-endian length. Counted string: 4-byte
// big-endian n (text bytes + terminating zero), then the text and its zero byte,
// in the device code page.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

namespace rq {

enum TransferResult : int {
    kTransferOk = 0,
    kCannotConnect = 1,
    kCommError = 2,
    kLocalFileError = 3,
    kTypeMismatch = 4, // produced by the project download only
};

// The six values of a poll-status reply, in wire order: KiB, KiB, KiB, KiB, tenths
// of a percent, tenths of a percent.
struct DeviceStatus {
    uint32_t totalMemory, usedMemory, freeMemory, appMemory, cpuUsage, appMemoryRate;
};

using MonitorSocket = int; // 0 = not connected

inline constexpr int kFilePort = 8100, kUpdatePort = 8102, kMonitorPort = 8103, kClockPort = 8104;

// Seconds every single receive waits for data.
inline constexpr int kReceiveWaitSeconds = 5;

// The bounds beyond the single receive wait, so that no device can hold a command
// without end. A send that the device does not take within sendWaitSeconds fails.
// A whole operation (connect excluded) may take operationBaseSeconds plus one
// second for every minimumBytesPerSecond bytes moved so far, in either direction:
// a steady transfer of any size completes, a trickle slower than that fails. Both
// failures give kCommError.
struct ProtocolLimits {
    int receiveWaitSeconds = kReceiveWaitSeconds; // each receive's wait (tests shorten it)
    int sendWaitSeconds = 10;
    int operationBaseSeconds = 30;
    uint32_t minimumBytesPerSecond = 1024;
};
ProtocolLimits protocolLimits();
// For tests and for the programs' options; applies to commands started afterwards.
void setProtocolLimits(const ProtocolLimits& limits);

// Why the calling thread's last command failed, beyond its TransferResult, for
// callers that word more than the result. The result codes stay as they are.
enum class TransferFailure {
    None,
    DeviceRefused, // the device answered with its refusal (status byte 0 or not 1)
    TimedOut,      // a wait or the operation's deadline ran out
    NotWhole,      // a put's name and directory do not fit the request frame
};
TransferFailure lastTransferFailure();
// "the device refused the request" and the like; "" for None.
const char* transferFailureText(TransferFailure failure);

// What a caller holds over one put or get: the bytes moved are reported to
// `progress` (on the transferring thread, after each piece), and cancel(), from any
// thread, ends the transfer at once by shutting its connection down. A cancelled
// control fails every later transfer it is given (kCommError) until reset().
class TransferControl {
public:
    TransferControl() = default;
    ~TransferControl();
    TransferControl(const TransferControl&) = delete;
    TransferControl& operator=(const TransferControl&) = delete;

    std::function<void(uint64_t done, uint64_t total)> progress;
    void cancel();
    bool cancelled() const { return cancelled_.load(); }
    void reset();

    // The connection of the transfer under way (used by the protocol client).
    void attach(int sock);
    void detach();
    void report(uint64_t done, uint64_t total) const {
        if (progress)
            progress(done, total);
    }

private:
    std::mutex m_;
    int watched_ = -1; // a duplicate of the connection's descriptor
    std::atomic<bool> cancelled_{false};
};

// Low-level operations: 1 success, 0 failure unless said otherwise.

// A connected IPv4 TCP socket, or -1 after printing "create sock error!\n" or
// "can't connect to server!\n" to standard error. The address is dotted text; no
// name resolution.
int ConnectDevice(const std::string& ip, int port);
// Sends all bytes, each wait for the device to take more bounded by the send wait;
// a count below 1 succeeds at once.
int SendAll(int sock, const void* bytes, long count);
// Command byte, big-endian length, then the payload when the length is not 0.
int SendFrame(int sock, uint8_t command, uint32_t length, const void* payload);
// Reads exactly `count` bytes, waiting at most `seconds` before every receive. A
// request for 0 bytes fails.
int RecvExact(int sock, void* buffer, long count, int seconds);
int RecvReplyHeader(int sock, uint8_t* type, uint32_t* length);
// Reads a counted string (its text and zero byte as sent) into `buffer`; a length
// above `capacity` fails.
int RecvCountedString(int sock, char* buffer, uint32_t capacity);
// Packs `text` as a counted string; text longer than capacity - 9 bytes is cut to
// capacity - 9. Returns the bytes used (4 + n), or 0 when capacity is 4 or less.
std::size_t PackCountedString(char* buffer, std::size_t capacity, const char* text);

// Commands. Texts (names, paths, the extra text) are UTF-8 here and go on the wire
// in the device code page.

// Port 8100, command 1: the device's HMI type name into `buffer` (zero-terminated).
TransferResult QueryDeviceType(const std::string& ip, char* buffer, uint32_t capacity);
// Port 8100, command 2: sends a local file as remoteDir/remoteName. An empty or
// unreadable local file, or a name and directory whose counted strings do not both
// fit whole into the 1024-byte request buffer, gives kLocalFileError before any
// connection.
TransferResult PutFile(const std::string& localPath, const std::string& remoteName,
                       const std::string& remoteDir, const std::string& ip, uint8_t flag,
                       const std::string& extraText, TransferControl* control = nullptr);
// Port 8100, command 3: fetches a remote file. The content is received into a
// temporary file beside the local path, which replaces the local file only when
// every byte has arrived; a refused or failed transfer leaves the local file as it
// was.
TransferResult GetFile(const std::string& remotePath, const std::string& localPath,
                       const std::string& ip, TransferControl* control = nullptr);
// Port 8102, command 2: kTransferOk when the device reports ready (reply type 2).
TransferResult QueryUpdateDone(const std::string& ip);
// Port 8104, command 7: sets the device clock to time(nullptr).
TransferResult SetDeviceClock(const std::string& ip);
// The same with a given number of seconds since 1970-01-01 00:00 UTC.
TransferResult SetDeviceClockAt(const std::string& ip, uint32_t seconds);
// Port 8103, command 1. Connects when `sock` is 0 and keeps the connection open
// after a good reply; any failure closes it and resets `sock` to 0.
TransferResult PollDeviceStatus(const std::string& ip, MonitorSocket& sock, DeviceStatus& status);
// Port 8103, command 2 on the open monitor connection (no reply awaited), then
// closes it.
void EndDeviceMonitor(MonitorSocket& sock);

// "%dK" and "%d.%d" (value / 10, value % 10) as the monitor shows them, the values
// taken unsigned as they are on the wire.
std::string FormatMemory(uint32_t kib);
std::string FormatRate(uint32_t tenths);

} // namespace rq

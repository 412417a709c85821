#pragma once
// A deployment operation without its dialog: checks on the calling thread, then the
// work on one worker thread that reports to a listener with the dialog's event
// codes and ends in an outcome that carries the exact message the dialog shows.
//
// Event codes: 0 a toolchain script started (text: its command line), 1 it
// finished, 2 the transfer finished (result), 4 the readiness wait began (result
// of the put before it), 5 the readiness wait ended (result). The listener is
// called on the worker thread; a dialog forwards the calls to its own thread.

#include "core/MessageSink.h"
#include "deploy/protocol/DeviceProtocol.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace rq {

struct TransferOutcome {
    // A TransferResult (0..4); -1 when the operation made no transfer (a check or
    // a local step failed, or it has none).
    int result = -1;
    std::string message; // the text the dialog shows; empty: nothing is shown
    // Why it failed beyond the message ("the device refused the request"), for a
    // command line or a detail line; never replaces the message. Empty: nothing known.
    std::string detail;
    MessageIcon icon = MessageIcon::None;
    bool checkFailed = false; // a check stopped it before any work
    bool succeeded = false;
    bool cancelled = false; // the user cancelled it; nothing is shown
};

// How far a put or get has come: bytes moved of the whole, and the rate so far.
struct TransferProgress {
    std::string what; // the remote or local file name being moved
    uint64_t done = 0;
    uint64_t total = 0;
    double bytesPerSecond = 0;
};

// "NAME: 12.0 MiB of 64.0 MiB, 85.3 MiB/s" (KiB below one MiB, bytes below one KiB).
std::string formatProgress(const TransferProgress& progress);
// Whole percent of the bytes moved (100 for an empty whole).
int progressPercent(const TransferProgress& progress);

// Hooks a control's byte counts to `report`: the name, the rate since start(), at
// most one report every 100 ms and always the last one.
void meterProgress(TransferControl& control, const std::string& what,
                   std::function<void(const TransferProgress&)> report);

struct TransferEvent {
    int code = 0;
    int result = 0;
    std::string text;
};

class TransferListener {
public:
    virtual ~TransferListener() = default;
    virtual void onTransferEvent(const TransferEvent& event) {}
    // The dialog's status line; an empty text hides it.
    virtual void onStatus(const std::string& text) {}
    // A put or get moved more bytes (at most every 100 ms, and once at its end).
    virtual void onProgress(const TransferProgress& progress) {}
    // Once, at the end (for a failed check: on the calling thread).
    virtual void onOutcome(const TransferOutcome& outcome) {}
};

// How a readiness wait polls the device's update port.
struct ReadinessWait {
    int polls = 21;
    int pauseMs = 1000;   // after each unsuccessful poll
    int firstPauseMs = 0; // before the first poll
};

class TransferJob {
public:
    explicit TransferJob(TransferListener* listener);
    virtual ~TransferJob();
    TransferJob(const TransferJob&) = delete;
    TransferJob& operator=(const TransferJob&) = delete;

    // Runs the checks; when one fails returns its outcome (also given to the
    // listener) and starts nothing. Otherwise starts the worker and returns nothing.
    std::optional<TransferOutcome> start();
    // Waits for the worker and returns the outcome.
    TransferOutcome wait();
    // start() then wait().
    TransferOutcome run();
    // Asks the worker to stop: the transfer under way ends at once and the steps
    // after it are not taken. Any thread may call it.
    void cancel();
    bool cancelRequested() const { return cancelled_.load(); }

    // What the toolchain scripts wrote to standard error (not shown by the dialog;
    // the command line prints it after a failure).
    std::string scriptErrors() const;

protected:
    virtual std::optional<TransferOutcome> check() { return std::nullopt; }
    virtual TransferOutcome work() = 0; // on the worker thread

    void event(int code, int result = 0, const std::string& text = {});
    void status(const std::string& text);
    // Runs a toolchain line in the program directory `dir`, reporting 0 and 1 and
    // dropping its output; waits for its end. False when it could not be started;
    // *exitStatus gets the script's exit status (-1 when it did not end normally).
    bool runScript(const std::string& line, const std::string& dir, int* exitStatus = nullptr);
    // Polls QueryUpdateDone as `wait` says; 0 at the first success, 2 when all
    // polls failed.
    int waitUntilReady(const std::string& ip, const ReadinessWait& wait);
    // The control to hand to one put or get: its progress is reported as `what`
    // (at most every 100 ms, and at the end), and cancel() ends it.
    TransferControl* track(const std::string& what);
    // Sleeps, waking early when the job is cancelled; false when cancelled.
    bool pause(int ms);
    // The outcome of a cancelled job: no message.
    static TransferOutcome cancelledOutcome();

    static TransferOutcome checkFailure(const std::string& message, MessageIcon icon);

private:
    class ScriptRunner;
    TransferListener* listener_;
    std::thread worker_;
    std::atomic<bool> cancelled_{false};
    TransferControl control_;
    std::mutex pauseMutex_;
    std::condition_variable pauseWake_;
    TransferOutcome outcome_;
    std::string scriptErrors_;
};

// "Do not choose project directory, please save project before!" and the other
// texts several operations share.
inline constexpr const char* kMsgNoProjectDirectory =
    "Do not choose project directory, please save project before!";
inline constexpr const char* kMsgNoIp = "Please input corresponding HMI IP address!";
// The typed "Slave IP Address:" when it is not a dotted IPv4 address (which the
// connection would read as another device or none): the failed check with its
// message. Each job asks it after its own checks; an empty address passes here.
std::optional<TransferOutcome> checkDeviceAddress(const std::string& ip);

} // namespace rq

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

#include <atomic>
#include <memory>
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
};

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

    static TransferOutcome checkFailure(const std::string& message, MessageIcon icon);

private:
    class ScriptRunner;
    TransferListener* listener_;
    std::thread worker_;
    TransferOutcome outcome_;
    std::string scriptErrors_;
};

// "Do not choose project directory, please save project before!" and the other
// texts several operations share.
inline constexpr const char* kMsgNoProjectDirectory =
    "Do not choose project directory, please save project before!";
inline constexpr const char* kMsgNoIp = "Please input corresponding HMI IP address!";

} // namespace rq

#include "deploy/transfer/TransferJob.h"

#include "core/ValueChecks.h"

#include "deploy/process/ProcessRunner.h"
#include "deploy/protocol/DeviceProtocol.h"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>

namespace rq {

// The owner variant that forwards only started and finished; standard error is
// kept for diagnostics.
class TransferJob::ScriptRunner : public ProcessRunner {
public:
    explicit ScriptRunner(TransferJob& job) : job_(job) {}
    ~ScriptRunner() override { Stop(); }

    bool waitFinished() {
        std::unique_lock lock(m_);
        cv_.wait(lock, [this] { return finished_; });
        return true;
    }
    std::string errors() {
        std::lock_guard lock(m_);
        return errors_;
    }

protected:
    void OnStarted(const std::string& line) override { job_.event(0, 0, line); }
    void OnStderr(const std::string& text) override {
        std::lock_guard lock(m_);
        if (errors_.size() < 64 * 1024)
            errors_ += text;
    }
    void OnFinished() override {
        job_.event(1);
        std::lock_guard lock(m_);
        finished_ = true;
        cv_.notify_all();
    }

private:
    TransferJob& job_;
    std::mutex m_;
    std::condition_variable cv_;
    bool finished_ = false;
    std::string errors_;
};

namespace {

std::string formatBytes(double bytes) {
    char text[32];
    if (bytes >= 1024.0 * 1024.0)
        std::snprintf(text, sizeof text, "%.1f MiB", bytes / (1024.0 * 1024.0));
    else if (bytes >= 1024.0)
        std::snprintf(text, sizeof text, "%.1f KiB", bytes / 1024.0);
    else
        std::snprintf(text, sizeof text, "%.0f B", bytes);
    return text;
}

} // namespace

std::string formatProgress(const TransferProgress& p) {
    std::string text = p.what.empty() ? std::string() : p.what + ": ";
    text += formatBytes(double(p.done)) + " of " + formatBytes(double(p.total));
    if (p.bytesPerSecond > 0)
        text += ", " + formatBytes(p.bytesPerSecond) + "/s";
    return text;
}

int progressPercent(const TransferProgress& p) {
    if (p.total == 0)
        return 100;
    return static_cast<int>(p.done * 100 / p.total);
}

void meterProgress(TransferControl& control, const std::string& what,
                   std::function<void(const TransferProgress&)> report) {
    using Clock = std::chrono::steady_clock;
    control.progress = [what, report = std::move(report), start = Clock::now(),
                        last = Clock::time_point{}](uint64_t done, uint64_t total) mutable {
        const auto now = Clock::now();
        if (done < total && now - last < std::chrono::milliseconds(100))
            return;
        last = now;
        TransferProgress p;
        p.what = what;
        p.done = done;
        p.total = total;
        const double seconds = std::chrono::duration<double>(now - start).count();
        p.bytesPerSecond = seconds > 0 ? double(done) / seconds : 0;
        report(p);
    };
}

TransferJob::TransferJob(TransferListener* listener) : listener_(listener) {}

TransferJob::~TransferJob() {
    if (worker_.joinable())
        worker_.join();
}

TransferOutcome TransferJob::checkFailure(const std::string& message, MessageIcon icon) {
    TransferOutcome o;
    o.message = message;
    o.icon = icon;
    o.checkFailed = true;
    return o;
}

std::optional<TransferOutcome> checkDeviceAddress(const std::string& ip) {
    std::optional<std::string> message = checkIpv4Address("Slave IP Address", ip);
    if (!message)
        return std::nullopt;
    TransferOutcome o;
    o.message = *message;
    o.icon = MessageIcon::Stop;
    o.checkFailed = true;
    return o;
}

std::optional<TransferOutcome> TransferJob::start() {
    if (worker_.joinable())
        worker_.join();
    cancelled_ = false;
    control_.reset();
    if (auto failed = check()) {
        outcome_ = *failed;
        if (listener_)
            listener_->onOutcome(outcome_);
        return failed;
    }
    worker_ = std::thread([this] {
        outcome_ = work();
        // A cancel that came too late to stop anything leaves the success standing.
        if (cancelled_.load() && !outcome_.succeeded)
            outcome_ = cancelledOutcome();
        if (listener_)
            listener_->onOutcome(outcome_);
    });
    return std::nullopt;
}

TransferOutcome TransferJob::wait() {
    if (worker_.joinable())
        worker_.join();
    return outcome_;
}

TransferOutcome TransferJob::run() {
    if (auto failed = start())
        return *failed;
    return wait();
}

void TransferJob::cancel() {
    {
        std::lock_guard lock(pauseMutex_);
        cancelled_ = true;
    }
    control_.cancel();
    pauseWake_.notify_all();
}

TransferControl* TransferJob::track(const std::string& what) {
    meterProgress(control_, what, [this](const TransferProgress& p) {
        if (listener_)
            listener_->onProgress(p);
    });
    return &control_;
}

bool TransferJob::pause(int ms) {
    std::unique_lock lock(pauseMutex_);
    return !pauseWake_.wait_for(lock, std::chrono::milliseconds(ms),
                                [this] { return cancelled_.load(); });
}

TransferOutcome TransferJob::cancelledOutcome() {
    TransferOutcome o;
    o.cancelled = true;
    return o;
}

std::string TransferJob::scriptErrors() const {
    return scriptErrors_;
}

void TransferJob::event(int code, int result, const std::string& text) {
    if (listener_)
        listener_->onTransferEvent({code, result, text});
}

void TransferJob::status(const std::string& text) {
    if (listener_)
        listener_->onStatus(text);
}

bool TransferJob::runScript(const std::string& line, const std::string& dir, int* exitStatus) {
    if (exitStatus)
        *exitStatus = -1;
    ScriptRunner runner(*this);
    if (runner.Start(line, {}, dir) != 1) {
        scriptErrors_ += "Unable to start " + line + "\n";
        return false;
    }
    runner.waitFinished();
    runner.Stop();
    scriptErrors_ += runner.errors();
    if (exitStatus)
        *exitStatus = runner.exitCode();
    return true;
}

int TransferJob::waitUntilReady(const std::string& ip, const ReadinessWait& wait) {
    if (wait.firstPauseMs > 0 && !pause(wait.firstPauseMs))
        return kCommError;
    for (int i = 0; i < wait.polls && !cancelled_.load(); ++i) {
        if (QueryUpdateDone(ip) == kTransferOk)
            return kTransferOk;
        if (!pause(wait.pauseMs))
            break;
    }
    return kCommError;
}

} // namespace rq

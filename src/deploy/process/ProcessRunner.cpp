#include "deploy/process/ProcessRunner.h"

#include "core/FileUtil.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace rq {

std::atomic<int> ProcessRunner::running_{0};

namespace {

// After the child has ended, its output is read until both pipes reach end of file
// or stay silent this long (a process it left behind may hold them open).
constexpr int kDrainQuietMs = 200;
// Readers look at the running flag at least this often.
constexpr int kReaderPollMs = 50;

long long nowMs() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

void sleepMs(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

// Both ends close on exec, so that a child started elsewhere inherits neither.
bool makePipe(int fds[2]) {
#ifdef __linux__
    return ::pipe2(fds, O_CLOEXEC) == 0;
#else
    if (::pipe(fds) != 0)
        return false;
    ::fcntl(fds[0], F_SETFD, FD_CLOEXEC);
    ::fcntl(fds[1], F_SETFD, FD_CLOEXEC);
    return true;
#endif
}

void closeQuietly(int fd) {
    if (fd >= 0)
        ::close(fd);
}

} // namespace

std::string shellQuote(const std::string& text) {
    if (text.find_first_of("\"$`\\") == std::string::npos)
        return "\"" + text + "\"";
    std::string out = "'";
    for (char c : text) {
        if (c == '\'')
            out += "'\\''";
        else
            out += c;
    }
    return out + "'";
}

ProcessRunner::ProcessRunner() = default;

ProcessRunner::~ProcessRunner() {
    Stop();
}

void ProcessRunner::closeFd(int& fd) {
    closeQuietly(fd);
    fd = -1;
}

int ProcessRunner::Start(const std::string& commandLine, const Environment& environment,
                         const std::string& workingDir) {
    if (pid_ != 0 || waiter_.joinable() || outReader_.joinable() || errReader_.joinable() ||
        stdoutRead_ >= 0)
        Stop();
    reaped_ = false;
    exitCode_ = -1;
    {
        std::lock_guard lock(waiterMutex_);
        waiterFinished_ = false;
    }

    // Everything the child needs is prepared before the fork: after it, the child
    // may only make async-signal-safe calls.
    const std::string dir = workingDir.empty() ? programDirectory() : workingDir;
    std::vector<std::string> envText;
    for (char** e = environ; e && *e; ++e) {
        std::string entry = *e;
        bool replaced = false;
        for (const auto& [name, value] : environment)
            replaced = replaced || entry.compare(0, name.size() + 1, name + "=") == 0;
        if (!replaced)
            envText.push_back(std::move(entry));
    }
    for (const auto& [name, value] : environment)
        envText.push_back(name + "=" + value);
    std::vector<char*> envp;
    for (auto& e : envText)
        envp.push_back(e.data());
    envp.push_back(nullptr);
    std::string shell = "/bin/sh", dashC = "-c", line = commandLine;
    char* argv[] = {shell.data(), dashC.data(), line.data(), nullptr};

    int in[2] = {-1, -1}, out[2] = {-1, -1}, err[2] = {-1, -1}, failPipe[2] = {-1, -1};
    bool piped = makePipe(in) && makePipe(out) && makePipe(err) && makePipe(failPipe);
    pid_t pid = piped ? ::fork() : -1;
    if (pid == 0) {
        // Child: its own process group (so that Stop reaches what the shell starts),
        // default signal handling, the pipe ends as 0, 1 and 2.
        ::setpgid(0, 0);
        sigset_t none;
        sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
        struct sigaction dfl {};
        dfl.sa_handler = SIG_DFL;
        ::sigaction(SIGPIPE, &dfl, nullptr);
        ::dup2(in[0], 0);
        ::dup2(out[1], 1);
        ::dup2(err[1], 2);
        if (::chdir(dir.c_str()) == 0)
            ::execve(argv[0], argv, envp.data());
        int code = errno;
        (void)!::write(failPipe[1], &code, sizeof code);
        ::_exit(127);
    }

    // The runner keeps its own ends; the child's ends are closed here.
    closeQuietly(in[0]);
    closeQuietly(out[1]);
    closeQuietly(err[1]);
    closeQuietly(failPipe[1]);
    stdinWrite_ = in[1];
    stdoutRead_ = out[0];
    stderrRead_ = err[0];

    bool started = pid > 0;
    if (started) {
        int code = 0;
        ssize_t n;
        do
            n = ::read(failPipe[0], &code, sizeof code);
        while (n < 0 && errno == EINTR);
        if (n > 0) {
            int status;
            while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
            }
            started = false;
        }
    }
    closeQuietly(failPipe[0]);
    if (!started) {
        OnStdout("Unable to start " + commandLine + "\n");
        return 0;
    }

    pid_ = pid;
    // Nothing is ever written to the child: it reads end of file at once.
    closeFd(stdinWrite_);
    int stop[2];
    if (!makePipe(stop)) {
        stop[0] = stop[1] = -1;
    }
    stopRead_ = stop[0];
    stopWrite_ = stop[1];
    running_ = 1;
    readersLeft_ = 2;
    lastOutputMs_ = nowMs();
    // The threads begin their work once OnStarted has returned, so that the owner
    // sees "started" before any output or the finish, however fast the child is.
    released_ = false;
    outReader_ = std::thread([this] {
        released_.wait(false);
        readerLoop(stdoutRead_, false);
    });
    errReader_ = std::thread([this] {
        released_.wait(false);
        readerLoop(stderrRead_, true);
    });
    waiter_ = std::thread([this] {
        released_.wait(false);
        waiterLoop();
    });
    OnStarted(commandLine);
    released_ = true;
    released_.notify_all();
    return 1;
}

bool ProcessRunner::stopSignalled() const {
    if (stopRead_ < 0)
        return running_.load() == 0;
    pollfd p{stopRead_, POLLIN, 0};
    return ::poll(&p, 1, 0) > 0;
}

void ProcessRunner::signalStop() {
    if (stopWrite_ >= 0) {
        char c = 1;
        (void)!::write(stopWrite_, &c, 1);
    }
}

void ProcessRunner::readerLoop(int fd, bool isStderr) {
    // The read end does not block: the reader reads while there is data and waits
    // in poll() (for data or the stop event) only when the pipe is empty.
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
    char buf[kPieceSize];
    while (running_.load() != 0) {
        ssize_t n = ::read(fd, buf, sizeof buf);
        if (n > 0) {
            lastOutputMs_ = nowMs();
            std::string piece(buf, static_cast<size_t>(n));
            if (isStderr)
                OnStderr(piece);
            else
                OnStdout(piece);
            continue;
        }
        if (n == 0)
            break; // end of file: the writing side is gone
        if (errno == EINTR)
            continue;
        if (errno == EBADF)
            break;
        // Empty pipe (or another read error, which is ignored and retried): wait.
        pollfd p[2] = {{fd, POLLIN, 0}, {stopRead_, POLLIN, 0}};
        int r = ::poll(p, stopRead_ >= 0 ? 2 : 1, kReaderPollMs);
        if (r < 0 && errno != EINTR)
            break;
        if (r > 0 && stopRead_ >= 0 && (p[1].revents & POLLIN))
            break;
        if (r > 0 && (p[0].revents & POLLNVAL))
            break;
    }
    --readersLeft_;
}

void ProcessRunner::waiterLoop() {
    bool ended = false;
    while (running_.load() != 0) {
        int status = 0;
        pid_t r = ::waitpid(pid_, &status, WNOHANG);
        if (r == pid_) {
            exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            reaped_ = true;
            ended = true;
            break;
        }
        if (r < 0 && errno != EINTR) { // nothing to wait for any more
            reaped_ = true;
            ended = true;
            break;
        }
        pollfd p{stopRead_, POLLIN, 0};
        if (::poll(&p, stopRead_ >= 0 ? 1 : 0, 1) > 0)
            break; // stopped
    }
    if (ended) {
        // Let the readers take what the child wrote before it ended.
        const long long endedAt = nowMs();
        while (readersLeft_.load() > 0 && !stopSignalled()) {
            long long quietSince = std::max(endedAt, lastOutputMs_.load());
            if (nowMs() - quietSince >= kDrainQuietMs)
                break;
            sleepMs(5);
        }
        running_ = 0;
    }
    OnFinished();
    std::lock_guard lock(waiterMutex_);
    waiterFinished_ = true;
    waiterDone_.notify_all();
}

bool ProcessRunner::childActive() {
    if (pid_ == 0 || reaped_.load())
        return false;
    // Look without reaping: the exit status stays for the waiter.
    siginfo_t info{};
    info.si_pid = 0;
    if (::waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG | WNOWAIT) != 0)
        return false; // no such child any more
    return info.si_pid == 0;
}

void ProcessRunner::Stop() {
    const bool active = pid_ != 0 || waiter_.joinable() || outReader_.joinable() ||
                        errReader_.joinable() || stdoutRead_ >= 0 || stderrRead_ >= 0;
    if (!active)
        return;
    // The pauses give the threads time to see the flag and drain while a child
    // still runs; a child that has already ended has nothing left to wait for.
    const bool childRunning = childActive();
    auto pause = [childRunning](int ms) {
        if (childRunning)
            sleepMs(ms);
    };
    // 1. Clear the flag, signal the stop event, let the threads see it.
    running_ = 0;
    signalStop();
    pause(500);
    // 2. The waiter ends within a millisecond of the signal; a slow OnFinished of
    // the owner is waited for (the thread refers to this object).
    if (waiter_.joinable()) {
        std::unique_lock lock(waiterMutex_);
        waiterDone_.wait_for(lock, std::chrono::milliseconds(1000),
                             [this] { return waiterFinished_; });
        lock.unlock();
        waiter_.join();
    }
    // 3. The child's ends were closed right after the start.
    pause(100);
    // 4. and 5. The readers end at the stop signal; their pipes are closed once
    // they are gone, so no read can meet a reused descriptor.
    closeFd(stdinWrite_);
    pause(100);
    for (std::thread* t : {&outReader_, &errReader_})
        if (t->joinable())
            t->join();
    closeFd(stdoutRead_);
    closeFd(stderrRead_);
    // 6. A child still active is terminated with everything it started.
    pause(100);
    if (pid_ != 0 && !reaped_) {
        int status = 0;
        pid_t r = ::waitpid(pid_, &status, WNOHANG);
        if (r == pid_) {
            exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            reaped_ = true;
        } else if (r == 0) {
            ::kill(-pid_, SIGKILL);
            ::kill(pid_, SIGKILL);
            for (int waited = 0; waited < 1000; waited += 5) {
                if (::waitpid(pid_, &status, WNOHANG) == pid_) {
                    reaped_ = true;
                    break;
                }
                sleepMs(5);
            }
        }
    }
    // 7. Forget the process; close the stop event.
    pid_ = 0;
    closeFd(stopRead_);
    closeFd(stopWrite_);
}

bool ProcessRunner::IsRunning() const {
    return pid_ != 0 && !reaped_.load();
}

} // namespace rq

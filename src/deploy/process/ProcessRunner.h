#pragma once
// Runs one command line as a child process with piped standard input, output and
// error, reads output and error on two reader threads while a third thread waits
// for the child, and reports four events through virtual operations.
//
// The child is `/bin/sh -c LINE`, started in the program directory with the given
// environment additions exported. Its standard input is a pipe that is never
// written (the child reads end of file at once). Output arrives in pieces of at
// most 256 bytes; a piece may end inside a line or a multi-byte character.
//
// One process-wide `running` flag coordinates the threads, so only one runner may
// be active at a time. Owners call stop() before every new start (the destructor
// calls it too); stopping a running child takes about 800 ms of pauses that let
// the threads see the flag and drain. A derived class that overrides the events calls Stop() in its
// own destructor, while its members still exist. The pauses are taken only while
// a child still runs: stopping after the child has ended returns at once.
//
// The events run on the runner's threads, and Stop() waits for those threads: an
// event must not wait for the thread that calls Stop() (a dialog forwards events
// to its own thread without blocking, e.g. as queued messages).

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <sys/types.h>
#include <thread>
#include <utility>
#include <vector>

namespace rq {

class ProcessRunner {
public:
    using Environment = std::vector<std::pair<std::string, std::string>>;

    ProcessRunner();
    virtual ~ProcessRunner();
    ProcessRunner(const ProcessRunner&) = delete;
    ProcessRunner& operator=(const ProcessRunner&) = delete;

    // Starts `/bin/sh -c commandLine` in `workingDir` (the program directory when
    // empty). Returns 1 when the child was started; 0 after passing "Unable to start
    // LINE\n" to OnStdout (neither OnStarted nor OnFinished follow).
    int Start(const std::string& commandLine, const Environment& environment = {},
              const std::string& workingDir = {});
    // Ends everything: the threads, and a child that is still active (with its
    // process group).
    void Stop();
    // True while a child is held that has not ended.
    bool IsRunning() const;

    // The child's exit status once it has ended normally, -1 otherwise (killed,
    // stopped, never started).
    int exitCode() const { return exitCode_.load(); }

    // The process-wide flag; set by Start, cleared by the waiter or Stop.
    static bool running() { return running_.load() != 0; }

    static constexpr std::size_t kPieceSize = 256;

protected:
    // Called on the starting thread right after the threads were created; they
    // report nothing before it has returned.
    virtual void OnStarted(const std::string& commandLine) {}
    // A piece of standard output (reader thread); also the start-failure text
    // (starting thread).
    virtual void OnStdout(const std::string& text) {}
    // A piece of standard error (reader thread).
    virtual void OnStderr(const std::string& text) {}
    // Once, on the waiter thread, when the child has ended and its output has been
    // read, or when the runner was stopped.
    virtual void OnFinished() {}

private:
    void readerLoop(int fd, bool isStderr);
    void waiterLoop();
    void signalStop();
    bool stopSignalled() const;
    void closeFd(int& fd);
    // True while the child has not ended (whether or not it was reaped yet).
    bool childActive();

    static std::atomic<int> running_;

    // Runner ends: stdin write end (closed once the child has it), stdout and
    // stderr read ends. The child's ends are closed in the parent right after the
    // fork, so the readers see end of file when the child is gone.
    int stdinWrite_ = -1, stdoutRead_ = -1, stderrRead_ = -1;
    // The stop event: a self-pipe, written once by Stop.
    int stopRead_ = -1, stopWrite_ = -1;
    std::thread outReader_, errReader_, waiter_;
    pid_t pid_ = 0;
    std::atomic<bool> reaped_{false};
    std::atomic<int> exitCode_{-1};
    std::atomic<int> readersLeft_{0};
    std::atomic<long long> lastOutputMs_{0};
    std::atomic<bool> released_{false};

    std::mutex waiterMutex_;
    std::condition_variable waiterDone_;
    bool waiterFinished_ = false;
};

// Quotes a text for /bin/sh so that it stays one word: in double quotes when it
// holds none of " $ ` \ (the way a batch file's argument reads), else in single
// quotes.
std::string shellQuote(const std::string& text);

} // namespace rq

// Output throughput of the process runner (256-byte pieces through a reader thread
// and a virtual call each) beside a plain read of the same child's output through
// popen with 64 KiB reads, measured in the same run. The child is
// `head -c N /dev/zero`; the best of several rounds counts for each.
//
//   bench_process [--mib N] [--rounds R]      (defaults: 256 MiB, 3 rounds)
//
// Prints both throughputs and the ratio runner / plain.

#include "deploy/process/ProcessRunner.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

using Clock = std::chrono::steady_clock;

namespace {

class CountingRunner : public rq::ProcessRunner {
public:
    ~CountingRunner() override { Stop(); }
    std::atomic<unsigned long long> bytes{0};
    void waitFinished() {
        std::unique_lock lock(m_);
        cv_.wait(lock, [this] { return finished_; });
    }

protected:
    void OnStdout(const std::string& text) override { bytes += text.size(); }
    void OnFinished() override {
        std::lock_guard lock(m_);
        finished_ = true;
        cv_.notify_all();
    }

private:
    std::mutex m_;
    std::condition_variable cv_;
    bool finished_ = false;
};

double runnerSeconds(const std::string& line, unsigned long long expected) {
    CountingRunner r;
    const auto t0 = Clock::now();
    if (r.Start(line, {}, "/") != 1) {
        std::fprintf(stderr, "bench_process: cannot start %s\n", line.c_str());
        std::exit(1);
    }
    r.waitFinished();
    const double s = std::chrono::duration<double>(Clock::now() - t0).count();
    if (r.bytes != expected) {
        std::fprintf(stderr, "bench_process: runner read %llu of %llu bytes\n", r.bytes.load(),
                     expected);
        std::exit(1);
    }
    return s;
}

double plainSeconds(const std::string& line, unsigned long long expected) {
    const auto t0 = Clock::now();
    std::FILE* p = ::popen(line.c_str(), "r");
    if (!p)
        std::exit(1);
    std::vector<char> buf(64 * 1024);
    unsigned long long total = 0;
    for (std::size_t n; (n = std::fread(buf.data(), 1, buf.size(), p)) > 0;)
        total += n;
    ::pclose(p);
    const double s = std::chrono::duration<double>(Clock::now() - t0).count();
    if (total != expected)
        std::exit(1);
    return s;
}

} // namespace

int main(int argc, char** argv) {
    unsigned long long mib = 256;
    int rounds = 3;
    for (int i = 1; i + 1 < argc; i += 2) {
        std::string a = argv[i];
        if (a == "--mib")
            mib = std::strtoull(argv[i + 1], nullptr, 10);
        else if (a == "--rounds")
            rounds = std::atoi(argv[i + 1]);
    }
    const unsigned long long bytes = mib * 1024 * 1024;
    const std::string line = "head -c " + std::to_string(bytes) + " /dev/zero";
    double bestRunner = 1e30, bestPlain = 1e30;
    for (int r = 0; r < rounds; ++r) {
        bestRunner = std::min(bestRunner, runnerSeconds(line, bytes));
        bestPlain = std::min(bestPlain, plainSeconds(line, bytes));
    }
    const double runnerRate = mib / bestRunner, plainRate = mib / bestPlain;
    std::printf("runner  %8.1f MiB/s (%llu MiB in %.3f s, best of %d)\n", runnerRate, mib,
                bestRunner, rounds);
    std::printf("plain   %8.1f MiB/s (%llu MiB in %.3f s, best of %d)\n", plainRate, mib, bestPlain,
                rounds);
    std::printf("ratio runner/plain %.2f\n", runnerRate / plainRate);
    return 0;
}

#include "deploy/process/ProcessRunner.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

using namespace std::chrono;

namespace {

// Records every event in order and lets the test wait for the finish.
class RecordingRunner : public rq::ProcessRunner {
public:
    ~RecordingRunner() override { Stop(); }
    struct Event {
        char kind; // 'S' started, 'o' stdout, 'e' stderr, 'F' finished
        std::string text;
    };
    std::vector<Event> events() {
        std::lock_guard lock(m_);
        return events_;
    }
    std::string joined(char kind) {
        std::string out;
        for (const auto& e : events())
            if (e.kind == kind)
                out += e.text;
        return out;
    }
    int count(char kind) {
        int n = 0;
        for (const auto& e : events())
            n += e.kind == kind;
        return n;
    }
    bool waitFinished(milliseconds limit) {
        std::unique_lock lock(m_);
        return cv_.wait_for(lock, limit, [&] {
            for (const auto& e : events_)
                if (e.kind == 'F')
                    return true;
            return false;
        });
    }

protected:
    void OnStarted(const std::string& line) override { add('S', line); }
    void OnStdout(const std::string& text) override { add('o', text); }
    void OnStderr(const std::string& text) override { add('e', text); }
    void OnFinished() override { add('F', {}); }

private:
    void add(char kind, std::string text) {
        std::lock_guard lock(m_);
        events_.push_back({kind, std::move(text)});
        cv_.notify_all();
    }
    std::mutex m_;
    std::condition_variable cv_;
    std::vector<Event> events_;
};

TEST(ProcessRunner, LongOutputArrivesInPiecesBeforeTheFinish) {
    RecordingRunner r;
    const std::string line = "head -c 5000 /dev/zero | tr '\\0' a; printf tail";
    ASSERT_EQ(r.Start(line), 1);
    ASSERT_TRUE(r.waitFinished(seconds(10)));
    auto ev = r.events();
    ASSERT_FALSE(ev.empty());
    EXPECT_EQ(ev.front().kind, 'S');
    EXPECT_EQ(ev.front().text, line);
    EXPECT_EQ(ev.back().kind, 'F');
    for (const auto& e : ev)
        EXPECT_LE(e.text.size(), rq::ProcessRunner::kPieceSize);
    EXPECT_EQ(r.joined('o'), std::string(5000, 'a') + "tail");
    EXPECT_GE(r.count('o'), 20);
    EXPECT_EQ(r.count('F'), 1);
    EXPECT_FALSE(rq::ProcessRunner::running());
    EXPECT_EQ(r.exitCode(), 0);
    r.Stop();
    EXPECT_EQ(r.count('F'), 1);
}

TEST(ProcessRunner, StreamsEnvironmentAndDirectory) {
    struct Case {
        const char* line;
        const char* out;
        const char* err;
        int exit;
    };
    rqtest::TempDir dir;
    const Case cases[] = {
        {"true", "", "", 0},
        {"echo oops >&2; exit 3", "", "oops\n", 3},
        {"printf %s \"$RQ_VALUE\"", "a b&\"c' $x", "", 0},
        {"pwd", nullptr, "", 0},
        {"read x; echo \"[$x]\"", "[]\n", "", 0}, // standard input is empty
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line);
        RecordingRunner r;
        ASSERT_EQ(r.Start(c.line, {{"RQ_VALUE", "a b&\"c' $x"}}, dir.str()), 1);
        ASSERT_TRUE(r.waitFinished(seconds(10)));
        EXPECT_EQ(r.joined('o'), c.out ? std::string(c.out) : dir.str() + "\n");
        EXPECT_EQ(r.joined('e'), c.err);
        EXPECT_EQ(r.exitCode(), c.exit);
        if (c.out && !*c.out) {
            EXPECT_EQ(r.count('o'), 0); // a silent child gives no output events
        }
    }
}

TEST(ProcessRunner, MissingProgramStartsTheShellAndReportsItsError) {
    RecordingRunner r;
    ASSERT_EQ(r.Start("rq_no_such_program_here"), 1);
    ASSERT_TRUE(r.waitFinished(seconds(10)));
    EXPECT_NE(r.joined('e').find("rq_no_such_program_here"), std::string::npos);
    EXPECT_EQ(r.exitCode(), 127);
}

TEST(ProcessRunner, StartFailureIsReportedAsOutputOnly) {
    RecordingRunner r;
    EXPECT_EQ(r.Start("true", {}, "/nonexistent/rq/dir"), 0);
    auto ev = r.events();
    ASSERT_EQ(ev.size(), 1u);
    EXPECT_EQ(ev[0].kind, 'o');
    EXPECT_EQ(ev[0].text, "Unable to start true\n");
    EXPECT_FALSE(r.IsRunning());
    r.Stop();
    EXPECT_EQ(r.events().size(), 1u);
}

TEST(ProcessRunner, StopTerminatesARunningChild) {
    RecordingRunner r;
    ASSERT_EQ(r.Start("echo begun; sleep 30; echo never"), 1);
    auto t0 = steady_clock::now();
    while (r.joined('o').empty() && steady_clock::now() - t0 < seconds(5))
        std::this_thread::sleep_for(milliseconds(10));
    EXPECT_TRUE(r.IsRunning());
    EXPECT_TRUE(rq::ProcessRunner::running());
    auto before = steady_clock::now();
    r.Stop();
    auto took = steady_clock::now() - before;
    EXPECT_FALSE(r.IsRunning());
    EXPECT_FALSE(rq::ProcessRunner::running());
    EXPECT_GE(took, milliseconds(700));
    EXPECT_LT(took, seconds(5));
    EXPECT_EQ(r.joined('o'), "begun\n");
    EXPECT_EQ(r.count('F'), 1);
}

TEST(ProcessRunner, FinishesAfterSilenceWhenALeftoverProcessHoldsThePipe) {
    RecordingRunner r;
    auto t0 = steady_clock::now();
    ASSERT_EQ(r.Start("sleep 20 & echo done"), 1);
    ASSERT_TRUE(r.waitFinished(seconds(10)));
    EXPECT_LT(steady_clock::now() - t0, seconds(5));
    EXPECT_EQ(r.joined('o'), "done\n");
    r.Stop();
}

} // namespace

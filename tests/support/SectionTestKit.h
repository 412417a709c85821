#pragma once
// Checks shared by the tests of the section files: golden files, bad files, and a
// check context over a fixed set of real-time data.

#include "core/ConfigSection.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace rqtest {

template <class Section> std::string written(const Section& s) {
    std::string out;
    s.write(out);
    return out;
}

// Reads `path` into `s`; section readers never show a message.
inline bool readSection(rq::ConfigSection& s, const std::string& path,
                        std::string* error = nullptr) {
    RecordingSink sink;
    rq::ReadContext ctx{sink, nullptr, nullptr, {}};
    bool ok = s.read(path, ctx);
    EXPECT_TRUE(sink.entries.empty());
    if (error)
        *error = ctx.error;
    return ok;
}

// `bytes` as a file read into `s`, as readSection does.
inline bool readBytes(rq::ConfigSection& s, const std::string& bytes,
                      std::string* error = nullptr) {
    TempDir dir;
    writeFile(dir.file("f.xml"), bytes);
    return readSection(s, dir.file("f.xml"), error);
}

// tests/data/FORMAT/CASE/input.xml (or expected.xml when there is no input) read
// and written gives expected.xml (or the input itself); reading shows the messages
// of messages.txt, one a line (none when absent). The written bytes read back to the
// same bytes without a message, unless `reopens` is false (a raw special character
// in a value then keeps the file from parsing).
template <class Section>
void expectGolden(const std::string& format, const std::string& caseName, bool reopens = true) {
    namespace fs = std::filesystem;
    fs::path input = dataPath(format, caseName, "input.xml");
    const fs::path expected = dataPath(format, caseName, "expected.xml");
    const fs::path messages = dataPath(format, caseName, "messages.txt");
    if (!fs::exists(input))
        input = expected;
    Section s;
    RecordingSink sink;
    rq::ReadContext ctx{sink, nullptr, nullptr, {}};
    ASSERT_TRUE(s.read(input.string(), ctx)) << ctx.error;
    std::vector<std::string> want;
    std::istringstream lines(fs::exists(messages) ? readFile(messages) : "");
    for (std::string line; std::getline(lines, line);)
        want.push_back(line);
    EXPECT_EQ(sink.texts(), want);
    for (const RecordingSink::Entry& e : sink.entries)
        EXPECT_EQ(e.icon, rq::MessageIcon::Stop);
    const std::string out = written(s);
    EXPECT_EQ(out, readFile(fs::exists(expected) ? expected : input));

    TempDir dir;
    writeFile(dir.file("again.xml"), out);
    Section again;
    ASSERT_EQ(readSection(again, dir.file("again.xml")), reopens);
    if (reopens) {
        EXPECT_EQ(written(again), out);
    }
}

// Every bad file fails the read with a reason and leaves the section's empty form.
// `notRoot` is a well-formed file with another root; `badBytes` an element with
// bytes that are neither UTF-8 nor GB2312.
template <class Section>
void expectBadFilesFail(Section filled, const std::string& notRoot, const std::string& rootInCase,
                        const std::string& unclosed, const std::string& badBytes) {
    const std::string empty = written(Section{});
    const std::pair<const char*, const char*> cases[] = {
        {"missing file", nullptr},       {"empty file", ""},
        {"wrong root", notRoot.c_str()}, {"root in other case", rootInCase.c_str()},
        {"malformed", unclosed.c_str()}, {"bad bytes", badBytes.c_str()},
        {"two roots", "<a/><a/>"},
    };
    for (const auto& [what, bytes] : cases) {
        TempDir dir;
        if (bytes)
            writeFile(dir.file("f.xml"), bytes);
        Section s = filled;
        std::string error;
        EXPECT_FALSE(readSection(s, dir.file("f.xml"), &error)) << what;
        EXPECT_FALSE(error.empty()) << what;
        EXPECT_EQ(written(s), empty) << what;
    }
}

// A section file is read while the records are built. `records` (between `head`
// and `tail`) show messages or are dropped: followed by a malformed end they show
// nothing, drop nothing and leave the section's empty form; followed by bytes of
// the device code page (the file is then read a second time) they are shown and
// dropped once, with the result of the file without those bytes.
template <class Section>
void expectLateOutcomesHeldBack(const std::string& head, const std::string& records,
                                const std::string& tail) {
    struct Outcome {
        bool ok;
        std::vector<std::string> shown, dropped;
        std::string out;
    };
    auto read = [](const std::string& bytes) {
        TempDir dir;
        writeFile(dir.file("f.xml"), bytes);
        Section s;
        RecordingSink sink;
        rq::ReadContext ctx{sink, nullptr, nullptr, {}};
        Outcome o{s.read(dir.file("f.xml"), ctx), sink.texts(), {}, written(s)};
        for (const rq::DroppedRecord& d : ctx.dropped)
            o.dropped.push_back(d.element + ": " + d.reason);
        return o;
    };
    const Outcome plain = read(head + records + tail);
    ASSERT_TRUE(plain.ok);
    const Outcome codePage = read(head + records + "<x a=\"\xce\xc2\"/>" + tail);
    EXPECT_TRUE(codePage.ok);
    EXPECT_EQ(codePage.shown, plain.shown);
    EXPECT_EQ(codePage.dropped, plain.dropped);
    EXPECT_EQ(codePage.out, plain.out);
    const Outcome late = read(head + records + "<x>" + tail);
    EXPECT_FALSE(late.ok);
    EXPECT_TRUE(late.shown.empty());
    EXPECT_TRUE(late.dropped.empty());
    EXPECT_EQ(late.out, written(Section{}));
}

// Knows the real-time data given as {database, data} pairs.
class FakeCheck : public rq::CheckContext {
public:
    FakeCheck() = default;
    FakeCheck(std::initializer_list<std::pair<std::string, std::string>> known) : known_(known) {}
    bool hasRealtimeData(std::string_view db, std::string_view data) const override {
        return known_.count({std::string(db), std::string(data)}) > 0;
    }
    // The findings, in order, each starting with its prefix.
    void expectFindings(const std::vector<std::string>& prefixes) const {
        ASSERT_EQ(findings().size(), prefixes.size()) << ::testing::PrintToString(findings());
        for (std::size_t i = 0; i < prefixes.size(); ++i)
            EXPECT_EQ(findings()[i].rfind(prefixes[i], 0), 0u) << findings()[i];
    }

private:
    std::set<std::pair<std::string, std::string>> known_;
};

} // namespace rqtest

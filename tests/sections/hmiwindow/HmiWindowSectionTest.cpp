#include "sections/hmiwindow/HmiWindowSection.h"
#include "core/HmiDeviceCatalog.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <set>

using namespace rq;
namespace fs = std::filesystem;

namespace {

std::string written(const HmiWindowSection& s) {
    std::string out;
    s.write(out);
    return out;
}

bool readFile(HmiWindowSection& s, const std::string& path, std::string* error = nullptr) {
    rqtest::RecordingSink sink;
    ReadContext ctx{sink, nullptr, nullptr, {}};
    bool ok = s.read(path, ctx);
    EXPECT_TRUE(sink.entries.empty());
    if (error)
        *error = ctx.error;
    return ok;
}

const std::string kEmptyFile =
    rqtest::crlf("<?xml version=\"1.0\" ?>\n<hmiwindow>\n</hmiwindow>\n");

// ---- golden files

class HmiWindowGolden : public ::testing::TestWithParam<const char*> {};

TEST_P(HmiWindowGolden, ReadWriteGivesExpectedBytesAndReadsBack) {
    const char* name = GetParam();
    fs::path input = rqtest::dataPath("hmiwindow", name, "input.xml");
    fs::path expected = rqtest::dataPath("hmiwindow", name, "expected.xml");
    if (!fs::exists(expected))
        expected = input;

    HmiWindowSection s;
    std::string error;
    ASSERT_TRUE(readFile(s, input.string(), &error)) << error;
    const std::string out = written(s);
    EXPECT_EQ(out, rqtest::readFile(expected));

    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("hmiwindow.xml"), out);
    HmiWindowSection again;
    ASSERT_TRUE(readFile(again, dir.file("hmiwindow.xml")));
    EXPECT_EQ(written(again), out);
}

const char* const kGoldenCases[] = {"drops", "empty", "windows"};

INSTANTIATE_TEST_SUITE_P(Cases, HmiWindowGolden, ::testing::ValuesIn(kGoldenCases));

TEST(HmiWindowGolden, EveryCaseDirectoryIsInTheTable) {
    std::set<std::string> table(std::begin(kGoldenCases), std::end(kGoldenCases));
    for (const auto& name : rqtest::caseNames("hmiwindow"))
        EXPECT_TRUE(table.count(name)) << name;
}

// ---- model, writer, reader

TEST(HmiWindowSection, NewAndClearedSectionWritesTheEmptyList) {
    HmiWindowSection s;
    EXPECT_EQ(written(s), kEmptyFile);
    s.windows.push_back({"w", "t", "w.xml", 1, "1"});
    s.clear();
    EXPECT_EQ(written(s), kEmptyFile);
    using Counts = std::vector<std::pair<std::string, std::size_t>>;
    EXPECT_EQ(s.counts(), (Counts{{"windows", 0}}));
}

TEST(HmiWindowSection, AnyNonZeroStartupFlagIsWrittenAsOne) {
    HmiWindowSection s;
    s.windows.push_back({"a", "A", "a.xml", 5, "0"});
    s.windows.push_back({"b", "", "b.xml", 0, ""});
    EXPECT_EQ(written(s), rqtest::crlf("<?xml version=\"1.0\" ?>\n<hmiwindow>\n"
                                       "\t<window name=\"a\" caption=\"A\" filename=\"a.xml\" "
                                       "display_on_startup=\"1\" enable=\"0\" />\n"
                                       "\t<window name=\"b\" caption=\"\" filename=\"b.xml\" "
                                       "display_on_startup=\"0\" enable=\"\" />\n"
                                       "</hmiwindow>\n"));
    EXPECT_EQ(s.findWindow("b"), 1);
    EXPECT_EQ(s.findWindow("B"), -1);
}

TEST(HmiWindowReader, KeepsAVeryLongValueWhole) {
    HmiWindowSection s;
    const std::string longValue(1 << 20, 'c');
    s.windows.push_back({"w", longValue, "w.xml", 1, "1"});
    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("hmiwindow.xml"), written(s));
    HmiWindowSection again;
    ASSERT_TRUE(readFile(again, dir.file("hmiwindow.xml")));
    ASSERT_EQ(again.windows.size(), 1u);
    EXPECT_EQ(again.windows[0].caption, longValue);
}

TEST(HmiWindowReader, BadFilesFailCleanly) {
    struct Bad {
        const char* what;
        std::string bytes;
        bool missing;
    };
    const Bad cases[] = {
        {"missing file", "", true},
        {"empty file", "", false},
        {"malformed", "<hmiwindow><window name=\"a\"></hmiwindow>", false},
        {"wrong root", "<windows/>", false},
        {"root in other case", "<HmiWindow/>", false},
        {"bytes neither UTF-8 nor GB2312", "<hmiwindow><window name=\"\xff\xfe\"/></hmiwindow>",
         false},
    };
    for (const auto& c : cases) {
        rqtest::TempDir dir;
        if (!c.missing)
            rqtest::writeFile(dir.file("hmiwindow.xml"), c.bytes);
        HmiWindowSection s;
        s.windows.push_back({"old", "", "old.xml", 0, "1"});
        std::string error;
        EXPECT_FALSE(readFile(s, dir.file("hmiwindow.xml"), &error)) << c.what;
        EXPECT_FALSE(error.empty()) << c.what;
        EXPECT_TRUE(s.windows.empty()) << c.what;
    }
}

// ---- check

class FakeCheck : public CheckContext {
public:
    bool hasRealtimeData(std::string_view, std::string_view) const override { return false; }
};

TEST(HmiWindowCheck, ReportsDuplicatesReservedFilesAndRawSpecials) {
    HmiWindowSection s;
    s.windows.push_back({"main", "Main", "main.xml", 1, "1"});
    s.windows.push_back({"Main", "case differs", "main2.xml", 0, "1"});
    s.windows.push_back({"main", "again", "main3.xml", 0, "1"});
    s.windows.push_back({"r", "R&D", "rtdb.xml", 0, "1"});
    s.windows.push_back({"p", "", "rqrun.xml", 0, "1"}); // the project file is not reserved
    FakeCheck ctx;
    s.check(ctx);
    const std::vector<std::string> prefixes = {
        "hmiwindow.xml: duplicate window \"main\"",
        "hmiwindow.xml: window \"r\" caption: ",
        "hmiwindow.xml: window \"r\" filename \"rtdb.xml\" is reserved",
    };
    ASSERT_EQ(ctx.findings().size(), prefixes.size());
    for (std::size_t i = 0; i < prefixes.size(); ++i)
        EXPECT_EQ(ctx.findings()[i].rfind(prefixes[i], 0), 0u) << ctx.findings()[i];
}

} // namespace

#include "sections/param/ParamSection.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <set>

using namespace rq;
namespace fs = std::filesystem;

namespace {

std::string written(const ParamSection& s) {
    std::string out;
    s.write(out);
    return out;
}

bool readFile(ParamSection& s, const std::string& path, std::string* error = nullptr) {
    rqtest::RecordingSink sink;
    ReadContext ctx{sink, nullptr, nullptr, {}};
    bool ok = s.read(path, ctx);
    EXPECT_TRUE(sink.entries.empty());
    if (error)
        *error = ctx.error;
    return ok;
}

const std::string kEmptyFile = rqtest::crlf("<?xml version=\"1.0\" ?>\n<params>\n</params>\n");

// ---- golden files

struct GoldenCase {
    const char* name;
    bool reopens; // false when the written file holds a raw special character
};

class ParamGolden : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(ParamGolden, ReadWriteGivesExpectedBytes) {
    const GoldenCase c = GetParam();
    fs::path input = rqtest::dataPath("param", c.name, "input.xml");
    fs::path expected = rqtest::dataPath("param", c.name, "expected.xml");
    if (!fs::exists(expected))
        expected = input;

    ParamSection s;
    std::string error;
    ASSERT_TRUE(readFile(s, input.string(), &error)) << error;
    const std::string out = written(s);
    EXPECT_EQ(out, rqtest::readFile(expected));

    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("param.xml"), out);
    ParamSection again;
    ASSERT_EQ(readFile(again, dir.file("param.xml")), c.reopens);
    if (c.reopens) {
        EXPECT_EQ(written(again), out);
    }
}

const GoldenCase kGoldenCases[] = {
    {"bare", true}, {"drops", false}, {"empty", true}, {"items", true}};

INSTANTIATE_TEST_SUITE_P(Cases, ParamGolden, ::testing::ValuesIn(kGoldenCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(ParamGolden, EveryCaseDirectoryIsInTheTable) {
    std::set<std::string> table;
    for (const auto& c : kGoldenCases)
        table.insert(c.name);
    for (const auto& name : rqtest::caseNames("param"))
        EXPECT_TRUE(table.count(name)) << name;
}

// ---- model and reader

TEST(ParamSection, NewAndClearedSectionWritesTheEmptyList) {
    ParamSection s;
    EXPECT_EQ(written(s), kEmptyFile);
    s.items.push_back({"db", "d", "1"});
    s.clear();
    EXPECT_EQ(written(s), kEmptyFile);
    using Counts = std::vector<std::pair<std::string, std::size_t>>;
    EXPECT_EQ(s.counts(), (Counts{{"data", 0}}));
}

TEST(ParamSection, FindsTheFirstRecordOfAnExactPair) {
    ParamSection s;
    s.items = {{"db", "a", "1"}, {"db", "b", "2"}, {"db", "a", "3"}};
    EXPECT_EQ(s.findItem("db", "a"), 0);
    EXPECT_EQ(s.findItem("db", "b"), 1);
    EXPECT_EQ(s.findItem("DB", "a"), -1);
    EXPECT_EQ(s.findItem("db.a", ""), -1);
}

TEST(ParamReader, KeepsAVeryLongValueWhole) {
    ParamSection s;
    const std::string longValue(1 << 20, '7');
    s.items.push_back({"db", "d", longValue});
    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("param.xml"), written(s));
    ParamSection again;
    ASSERT_TRUE(readFile(again, dir.file("param.xml")));
    ASSERT_EQ(again.items.size(), 1u);
    EXPECT_EQ(again.items[0].value, longValue);
}

// Beyond what the parser accepts in one value, the read fails as a whole: never a
// cut value, never a half-filled list.
TEST(ParamReader, AValueBeyondTheParsersLimitIsWholeOrFailsWithAReason) {
    ParamSection s;
    const std::string hugeValue(11'000'000, 'h');
    s.items.push_back({"db", "first", "1"});
    s.items.push_back({"db", "huge", hugeValue});
    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("param.xml"), written(s));
    ParamSection again;
    std::string error;
    if (readFile(again, dir.file("param.xml"), &error)) {
        ASSERT_EQ(again.items.size(), 2u);
        EXPECT_EQ(again.items[1].value, hugeValue);
    } else {
        EXPECT_FALSE(error.empty());
        EXPECT_TRUE(again.items.empty());
    }
}

TEST(ParamReader, BadFilesFailCleanly) {
    struct Bad {
        const char* what;
        std::string bytes;
        bool missing;
    };
    const Bad cases[] = {
        {"missing file", "", true},
        {"empty file", "", false},
        {"malformed", "<params><data dbname=\"a\" dataname=\"b\"></params>", false},
        {"wrong root", "<param/>", false},
        {"root in other case", "<Params/>", false},
        {"bytes neither UTF-8 nor GB2312",
         "<params><data dbname=\"\xff\xfe\" dataname=\"b\"/></params>", false},
        {"two roots", "<params/><params/>", false},
    };
    for (const auto& c : cases) {
        rqtest::TempDir dir;
        if (!c.missing)
            rqtest::writeFile(dir.file("param.xml"), c.bytes);
        ParamSection s;
        s.items.push_back({"old", "d", "1"});
        std::string error;
        EXPECT_FALSE(readFile(s, dir.file("param.xml"), &error)) << c.what;
        EXPECT_FALSE(error.empty()) << c.what;
        EXPECT_TRUE(s.items.empty()) << c.what;
    }
}

// ---- check

class FakeCheck : public CheckContext {
public:
    std::set<std::pair<std::string, std::string>> known;
    bool hasRealtimeData(std::string_view db, std::string_view data) const override {
        return known.count({std::string(db), std::string(data)}) > 0;
    }
};

TEST(ParamCheck, ReportsRepeatedPairsUnknownDataAndRawSpecials) {
    ParamSection s;
    s.items = {
        {"plant", "a", "1"},      {"plant", "b", "x<y"}, {"plant", "a", "2"}, // same pair again
        {"plant.a", "", "3"}, // joins like plant + a.?, but is another pair
        {"plant", "missing", ""},
    };
    FakeCheck ctx;
    ctx.known = {{"plant", "a"}, {"plant", "b"}, {"plant.a", ""}};
    s.check(ctx);
    const std::vector<std::string> prefixes = {
        "param.xml: data \"plant.b\" value: ",
        "param.xml: duplicate data \"plant.a\"",
        "param.xml: data \"plant.missing\": no database holds the real-time data",
    };
    ASSERT_EQ(ctx.findings().size(), prefixes.size());
    for (std::size_t i = 0; i < prefixes.size(); ++i)
        EXPECT_EQ(ctx.findings()[i].rfind(prefixes[i], 0), 0u) << ctx.findings()[i];
}

} // namespace

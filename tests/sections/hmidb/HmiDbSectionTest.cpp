#include "sections/hmidb/HmiDbSection.h"
#include "core/TextEncoding.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <set>

using namespace rq;
namespace fs = std::filesystem;

namespace {

std::string written(const HmiDbSection& s) {
    std::string out;
    s.write(out);
    return out;
}

// Reads `path` into `s`; the reader never shows a message.
bool readFile(HmiDbSection& s, const std::string& path, std::string* error = nullptr) {
    rqtest::RecordingSink sink;
    ReadContext ctx{sink, nullptr, nullptr, {}};
    bool ok = s.read(path, ctx);
    EXPECT_TRUE(sink.entries.empty());
    if (error)
        *error = ctx.error;
    return ok;
}

const std::string kEmptyFile = rqtest::crlf("<?xml version=\"1.0\" ?>\n"
                                            "<hmidb name=\"hmi\" period_unit=\"ms\">\n"
                                            "\t<datagroup name=\"io\">\n"
                                            "\t</datagroup>\n"
                                            "\t<datagroup name=\"memory\">\n"
                                            "\t</datagroup>\n"
                                            "</hmidb>\n");

// ---- golden files: input.xml read and written again gives expected.xml (or the
// input itself); the written file reads back to the same bytes unless it holds a
// raw special character.

struct GoldenCase {
    const char* name;
    bool reopens;
};

class HmiDbGolden : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(HmiDbGolden, ReadWriteGivesExpectedBytes) {
    const GoldenCase c = GetParam();
    fs::path input = rqtest::dataPath("hmidb", c.name, "input.xml");
    fs::path expected = rqtest::dataPath("hmidb", c.name, "expected.xml");
    if (!fs::exists(expected))
        expected = input;

    HmiDbSection s;
    std::string error;
    ASSERT_TRUE(readFile(s, input.string(), &error)) << error;
    const std::string out = written(s);
    EXPECT_EQ(out, rqtest::readFile(expected));

    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("hmidb.xml"), out);
    HmiDbSection again;
    ASSERT_EQ(readFile(again, dir.file("hmidb.xml")), c.reopens);
    if (c.reopens) {
        EXPECT_EQ(written(again), out);
    }
}

const GoldenCase kGoldenCases[] = {
    {"bare", true}, {"drops", true}, {"empty", true}, {"entities", false}, {"nested", true},
};

INSTANTIATE_TEST_SUITE_P(Cases, HmiDbGolden, ::testing::ValuesIn(kGoldenCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(HmiDbGolden, EveryCaseDirectoryIsInTheTable) {
    std::set<std::string> table;
    for (const auto& c : kGoldenCases)
        table.insert(c.name);
    for (const auto& name : rqtest::caseNames("hmidb"))
        EXPECT_TRUE(table.count(name)) << name;
}

// ---- model and writer

TEST(HmiDbSection, NewSectionWritesTheTwoFixedGroupsOnly) {
    HmiDbSection s;
    EXPECT_EQ(written(s), kEmptyFile);
    EXPECT_EQ(s.io.name, "io");
    EXPECT_EQ(s.memory.name, "memory");
    auto counts = s.counts();
    ASSERT_EQ(counts.size(), 3u);
    for (const auto& [what, n] : counts)
        EXPECT_EQ(n, 0u) << what;
}

TEST(HmiDbSection, ClearDropsContentAndKeepsFixedGroups) {
    HmiDbSection s;
    s.io.groups.push_back({"g", {{"deep", {}, {{"x", "db", "d", 1}}}}, {}});
    s.memory.items.push_back({"m", "long", "4", "0"});
    s.io.name = "renamed";
    s.clear();
    EXPECT_EQ(written(s), kEmptyFile);
}

TEST(HmiDbSection, WritesFixedNamesAndSignedPeriods) {
    HmiDbSection s;
    s.io.name = "not written";
    s.io.items.push_back({"a", "db", "d", -2147483647 - 1});
    s.io.items.push_back({"b", "db", "d", 2147483647});
    s.io.items.push_back({"", "", "", 0});
    const std::string out = written(s);
    EXPECT_NE(out.find("\t<datagroup name=\"io\">\r\n"), std::string::npos);
    EXPECT_NE(out.find("\t\t<data name=\"a\" dbname=\"db\" dataname=\"d\" "
                       "period=\"-2147483648\" />\r\n"),
              std::string::npos);
    EXPECT_NE(out.find("period=\"2147483647\" />\r\n"), std::string::npos);
    EXPECT_NE(out.find("\t\t<data name=\"\" dbname=\"\" dataname=\"\" period=\"0\" />\r\n"),
              std::string::npos);
}

TEST(HmiDbSection, CountsNestedGroupsAndItemsOfBothKinds) {
    HmiDbSection s;
    HmiIoGroup inner{"inner", {}, {{"x", "db", "d", 1}, {"y", "db", "d", 1}}};
    s.io.groups.push_back({"outer", {inner, inner}, {{"z", "db", "d", 1}}});
    s.memory.groups.push_back({"m", {}, {{"m", "long", "4", "0"}}});
    s.memory.items.push_back({"n", "long", "4", "0"});
    using Counts = std::vector<std::pair<std::string, std::size_t>>;
    EXPECT_EQ(s.counts(), (Counts{{"groups", 4}, {"io_data", 5}, {"memory_data", 2}}));
}

// ---- reader

TEST(HmiDbReader, TakesValuesWithoutConversionAndKeepsDuplicates) {
    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("hmidb.xml"),
                      "<?xml version=\"1.0\" ?>\n<hmidb><datagroup name=\"io\">"
                      "<data name=\"n\" dbname=\"库\" dataname=\"a b\" period=\"0x10\"/>"
                      "<data name=\"n\" dbname=\"库\" dataname=\"a b\" period=\"-3\"/>"
                      "</datagroup></hmidb>");
    HmiDbSection s;
    ASSERT_TRUE(readFile(s, dir.file("hmidb.xml")));
    ASSERT_EQ(s.io.items.size(), 2u);
    EXPECT_EQ(s.io.items[0].dbname, "库"); // UTF-8 as the parser gives it
    EXPECT_EQ(s.io.items[0].dataname, "a b");
    EXPECT_EQ(s.io.items[0].period, 0); // decimal only: "0x10" stops at the x
    EXPECT_EQ(s.io.items[1].period, -3);
}

TEST(HmiDbReader, ReadsBackWhatSaveWroteInTheDeviceCodePage) {
    HmiDbSection s;
    s.io.groups.push_back({"温度组", {}, {{"温度", "车间", "温度1", 250}}});
    s.memory.items.push_back({"名称", "string", "16", "初始"});
    const std::string out = written(s);
    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("hmidb.xml"), toDeviceXml(out));
    HmiDbSection again;
    std::string error;
    ASSERT_TRUE(readFile(again, dir.file("hmidb.xml"), &error)) << error;
    EXPECT_EQ(written(again), out);
}

TEST(HmiDbReader, KeepsAVeryLongValueWhole) {
    HmiDbSection s;
    const std::string longValue(1 << 20, 'v');
    s.memory.items.push_back({"big", "string", "1048576", longValue});
    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("hmidb.xml"), written(s));
    HmiDbSection again;
    ASSERT_TRUE(readFile(again, dir.file("hmidb.xml")));
    ASSERT_EQ(again.memory.items.size(), 1u);
    EXPECT_EQ(again.memory.items[0].init, longValue);
}

// Every failure leaves the empty form of a new project and a reason.
TEST(HmiDbReader, BadFilesFailCleanly) {
    struct Bad {
        const char* what;
        std::string bytes; // nothing written when empty and `missing`
        bool missing;
    };
    const Bad cases[] = {
        {"missing file", "", true},
        {"empty file", "", false},
        {"malformed", "<hmidb><datagroup name=\"io\"></hmidb>", false},
        {"wrong root", "<hmidbs/>", false},
        {"root in other case", "<HMIDB/>", false},
        {"bytes neither UTF-8 nor GB2312", "<hmidb><datagroup name=\"\xff\xfe\"/></hmidb>", false},
        {"raw ampersand", "<hmidb><datagroup name=\"io\"><data name=\"a&b\"/></datagroup></hmidb>",
         false},
    };
    for (const auto& c : cases) {
        rqtest::TempDir dir;
        if (!c.missing)
            rqtest::writeFile(dir.file("hmidb.xml"), c.bytes);
        HmiDbSection s;
        s.io.items.push_back({"old", "db", "d", 1});
        std::string error;
        EXPECT_FALSE(readFile(s, dir.file("hmidb.xml"), &error)) << c.what;
        EXPECT_FALSE(error.empty()) << c.what;
        EXPECT_EQ(written(s), kEmptyFile) << c.what;
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

TEST(HmiDbCheck, ReportsRawSpecialsAndUnknownReferencesButNotDuplicateNames) {
    HmiDbSection s;
    s.io.items.push_back({"ok", "plant", "temp", 500});
    s.io.items.push_back({"ok", "plant", "temp", 500}); // repeats are allowed here
    s.io.items.push_back({"unbound", "", "", 500});     // no reference at all
    s.io.groups.push_back({"a<b", {}, {{"lost", "plant", "nothere", 500}}});
    s.memory.groups.push_back({"g", {}, {{"m", "string", "4", "say \"hi\""}}});
    s.memory.items.push_back({"x&y", "long", "4", "0"});
    s.memory.items.push_back({"t", "Long", "4", "0"}); // keywords are exact
    FakeCheck ctx;
    ctx.known.insert({"plant", "temp"});
    s.check(ctx);
    const std::vector<std::string> prefixes = {
        "hmidb.xml: datagroup \"a<b\" name: ",
        "hmidb.xml: data \"lost\": no database holds the real-time data \"plant.nothere\"",
        "hmidb.xml: data \"m\" init: ",
        "hmidb.xml: data \"x&y\" name: ",
        "hmidb.xml: data \"t\" type: \"Long\" is not a data type keyword",
    };
    ASSERT_EQ(ctx.findings().size(), prefixes.size());
    for (std::size_t i = 0; i < prefixes.size(); ++i)
        EXPECT_EQ(ctx.findings()[i].rfind(prefixes[i], 0), 0u) << ctx.findings()[i];
}

} // namespace

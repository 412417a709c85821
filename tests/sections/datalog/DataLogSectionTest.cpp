#include "sections/datalog/DataLogSection.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <set>

using namespace rq;
namespace fs = std::filesystem;

namespace {

std::string written(const DataLogSection& s) {
    std::string out;
    s.write(out);
    return out;
}

bool readFile(DataLogSection& s, const std::string& path, std::string* error = nullptr) {
    rqtest::RecordingSink sink;
    ReadContext ctx{sink, nullptr, nullptr, {}};
    bool ok = s.read(path, ctx);
    EXPECT_TRUE(sink.entries.empty());
    if (error)
        *error = ctx.error;
    return ok;
}

const std::string kEmptyFile = rqtest::crlf("<?xml version=\"1.0\" ?>\n<datalog>\n</datalog>\n");

DataLog variablesLog(std::string name, std::vector<DataRef> data) {
    DataLog log;
    log.name = std::move(name);
    log.data = std::move(data);
    return log;
}

DataLog databaseLog(std::string name, std::string db) {
    DataLog log;
    log.kind = DataLogKind::Database;
    log.name = std::move(name);
    log.dbname = std::move(db);
    return log;
}

// ---- golden files

class DataLogGolden : public ::testing::TestWithParam<const char*> {};

TEST_P(DataLogGolden, ReadWriteGivesExpectedBytesAndReadsBack) {
    const char* name = GetParam();
    fs::path input = rqtest::dataPath("datalog", name, "input.xml");
    fs::path expected = rqtest::dataPath("datalog", name, "expected.xml");
    if (!fs::exists(expected))
        expected = input;

    DataLogSection s;
    std::string error;
    ASSERT_TRUE(readFile(s, input.string(), &error)) << error;
    const std::string out = written(s);
    EXPECT_EQ(out, rqtest::readFile(expected));

    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("datalog.xml"), out);
    DataLogSection again;
    ASSERT_TRUE(readFile(again, dir.file("datalog.xml")));
    EXPECT_EQ(written(again), out);
}

const char* const kGoldenCases[] = {"drops", "empty", "logs"};

INSTANTIATE_TEST_SUITE_P(Cases, DataLogGolden, ::testing::ValuesIn(kGoldenCases));

TEST(DataLogGolden, EveryCaseDirectoryIsInTheTable) {
    std::set<std::string> table(std::begin(kGoldenCases), std::end(kGoldenCases));
    for (const auto& name : rqtest::caseNames("datalog"))
        EXPECT_TRUE(table.count(name)) << name;
}

// ---- model and writer

TEST(DataLogSection, NewAndClearedSectionWritesTheEmptyList) {
    DataLogSection s;
    EXPECT_EQ(written(s), kEmptyFile);
    s.logs.push_back(databaseLog("l", "db"));
    s.clear();
    EXPECT_EQ(written(s), kEmptyFile);
}

TEST(DataLogSection, NewLogsCarryTheDialogDefaultsAndTheirKindsLayout) {
    DataLogSection s;
    s.logs.push_back(databaseLog("all", "plant"));
    s.logs.push_back(variablesLog("some", {{"plant", "t1"}}));
    s.logs.push_back(variablesLog("none", {}));
    EXPECT_EQ(written(s),
              rqtest::crlf("<?xml version=\"1.0\" ?>\n<datalog>\n"
                           "\t<log name=\"all\" source=\"rtdb\" period=\"1000\" period_var=\"\" "
                           "control_var=\"\" size=\"100\" dbname=\"plant\" />\n"
                           "\t<log name=\"some\" source=\"rtdb_data\" period=\"1000\" "
                           "period_var=\"\" control_var=\"\" size=\"100\" >\n"
                           "\t\t<data dbname=\"plant\" dataname=\"t1\" />\n"
                           "\t</log>\n"
                           "\t<log name=\"none\" source=\"rtdb_data\" period=\"1000\" "
                           "period_var=\"\" control_var=\"\" size=\"100\" >\n"
                           "\t</log>\n"
                           "</datalog>\n"));
    using Counts = std::vector<std::pair<std::string, std::size_t>>;
    EXPECT_EQ(s.counts(), (Counts{{"logs", 3}, {"data", 1}}));
    EXPECT_EQ(s.findLog("none"), 2);
    EXPECT_EQ(s.findLog("None"), -1);
}

TEST(DataLogSection, KindDecidesWhatIsWrittenNotTheFieldsHeld) {
    DataLog all = databaseLog("all", "plant");
    all.data.push_back({"x", "y"}); // not written for a whole-database log
    DataLog some = variablesLog("some", {});
    some.dbname = "ignored"; // not written for a log of chosen variables
    DataLogSection s;
    s.logs = {all, some};
    const std::string out = written(s);
    EXPECT_EQ(out.find("\"x\""), std::string::npos);
    EXPECT_EQ(out.find("ignored"), std::string::npos);
}

// ---- reader

TEST(DataLogReader, KeepsAVeryLongValueWhole) {
    DataLogSection s;
    const std::string longName(1 << 20, 'd');
    s.logs.push_back(variablesLog("big", {{"plant", longName}}));
    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("datalog.xml"), written(s));
    DataLogSection again;
    ASSERT_TRUE(readFile(again, dir.file("datalog.xml")));
    ASSERT_EQ(again.logs.size(), 1u);
    ASSERT_EQ(again.logs[0].data.size(), 1u);
    EXPECT_EQ(again.logs[0].data[0].dataname, longName);
}

TEST(DataLogReader, BadFilesFailCleanly) {
    struct Bad {
        const char* what;
        std::string bytes;
        bool missing;
    };
    const Bad cases[] = {
        {"missing file", "", true},
        {"empty file", "", false},
        {"malformed", "<datalog><log name=\"a\" source=\"rtdb\"></datalog>", false},
        {"wrong root", "<datalogs/>", false},
        {"root in other case", "<DataLog/>", false},
        {"bytes neither UTF-8 nor GB2312",
         "<datalog><log name=\"\xff\xfe\" source=\"rtdb\"/></datalog>", false},
    };
    for (const auto& c : cases) {
        rqtest::TempDir dir;
        if (!c.missing)
            rqtest::writeFile(dir.file("datalog.xml"), c.bytes);
        DataLogSection s;
        s.logs.push_back(databaseLog("old", "db"));
        std::string error;
        EXPECT_FALSE(readFile(s, dir.file("datalog.xml"), &error)) << c.what;
        EXPECT_FALSE(error.empty()) << c.what;
        EXPECT_TRUE(s.logs.empty()) << c.what;
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

TEST(DataLogCheck, ReportsDuplicateLogsAndVariablesUnknownDataAndRawSpecials) {
    DataLogSection s;
    s.logs.push_back(variablesLog("a", {{"plant", "t1"}, {"plant", "t1"}, {"plant", "gone"}}));
    s.logs.push_back(variablesLog("b", {{"plant", "t1"}})); // same data in another log is fine
    s.logs.back().control_var = "plant.t1";
    s.logs.back().period_var = "anything"; // typed, not looked up
    s.logs.push_back(databaseLog("a", "plant"));
    DataLog odd = databaseLog("c", "x&y");
    odd.period = "1000\"";
    odd.control_var = "plant.off";
    s.logs.push_back(odd);
    FakeCheck ctx;
    ctx.known = {{"plant", "t1"}};
    s.check(ctx);
    const std::vector<std::string> prefixes = {
        "datalog.xml: log \"a\" duplicate data \"plant.t1\"",
        "datalog.xml: log \"a\" data \"plant.gone\": no database holds the real-time data",
        "datalog.xml: duplicate log \"a\"",
        "datalog.xml: log \"c\" period: ",
        "datalog.xml: log \"c\" control_var: no database holds the real-time data \"plant.off\"",
        "datalog.xml: log \"c\" dbname: ",
    };
    ASSERT_EQ(ctx.findings().size(), prefixes.size());
    for (std::size_t i = 0; i < prefixes.size(); ++i)
        EXPECT_EQ(ctx.findings()[i].rfind(prefixes[i], 0), 0u) << ctx.findings()[i];
}

} // namespace

#include "sections/datalog/DataLogSection.h"
#include "support/SectionTestKit.h"

using namespace rq;
using rqtest::written;

namespace {

DataLog makeLog(DataLogKind kind, std::string name, std::string db = {},
                std::vector<DataRef> data = {}) {
    DataLog log;
    log.kind = kind;
    log.name = std::move(name);
    log.dbname = std::move(db);
    log.data = std::move(data);
    return log;
}
constexpr auto kAll = DataLogKind::Database;
constexpr auto kSome = DataLogKind::Variables;

TEST(DataLogFile, GoldenFiles) {
    const auto cases = rqtest::caseNames("datalog");
    EXPECT_EQ(cases.size(), 4u);
    for (const auto& c : cases) {
        SCOPED_TRACE(c);
        rqtest::expectGolden<DataLogSection>("datalog", c);
    }
}

// New logs carry the dialog's defaults; the kind alone decides what is written.
TEST(DataLogFile, KindDecidesTheLayout) {
    DataLogSection s;
    s.logs = {makeLog(kAll, "all", "plant", {{"x", "y"}}),
              makeLog(kSome, "some", "ignored", {{"plant", "t1"}}), makeLog(kSome, "none")};
    EXPECT_EQ(written(s), rqtest::crlf("<?xml version=\"1.0\" ?>\n<datalog>\n"
                                       "\t<log name=\"all\" source=\"rtdb\" period=\"1000\" "
                                       "period_var=\"\" control_var=\"\" size=\"100\" "
                                       "dbname=\"plant\" />\n"
                                       "\t<log name=\"some\" source=\"rtdb_data\" period=\"1000\" "
                                       "period_var=\"\" control_var=\"\" size=\"100\" >\n"
                                       "\t\t<data dbname=\"plant\" dataname=\"t1\" />\n"
                                       "\t</log>\n"
                                       "\t<log name=\"none\" source=\"rtdb_data\" period=\"1000\" "
                                       "period_var=\"\" control_var=\"\" size=\"100\" >\n"
                                       "\t</log>\n"
                                       "</datalog>\n"));
    using Counts = std::vector<std::pair<std::string, std::size_t>>;
    EXPECT_EQ(s.counts(), (Counts{{"logs", 3}, {"data", 2}}));
    EXPECT_EQ(s.findLog("none"), 2);
    EXPECT_EQ(s.findLog("None"), -1);
}

TEST(DataLogFile, BadFilesFailCleanly) {
    rqtest::expectLateOutcomesHeldBack<DataLogSection>(
        "<datalog>",
        "<log/><log name=\"a\" source=\"x\"/><log name=\"b\" source=\"rtdb_data\"><data "
        "dbname=\"d\"/></log>",
        "</datalog>");

    DataLogSection filled;
    filled.logs.push_back(makeLog(kAll, "old", "db"));
    rqtest::expectBadFilesFail(filled, "<datalogs/>", "<DataLog/>",
                               "<datalog><log name=\"a\" source=\"rtdb\"></datalog>",
                               "<datalog><log name=\"\xff\xfe\" source=\"rtdb\"/></datalog>");
}

TEST(DataLogCheck, ReportsRepeatedLogsAndVariablesUnknownDataAndRawSpecials) {
    DataLogSection s;
    s.logs = {makeLog(kSome, "a", {}, {{"plant", "t1"}, {"plant", "t1"}, {"plant", "gone"}}),
              makeLog(kSome, "b", {}, {{"plant", "t1"}}), // the same data in another log
              makeLog(kAll, "a", "plant"), makeLog(kAll, "c", "x&y")};
    s.logs[1].control_var = "plant.t1";
    s.logs[1].period_var = "typed"; // not looked up
    s.logs[3].period = "1000\"";
    s.logs[3].control_var = "plant.off";
    rqtest::FakeCheck ctx{{"plant", "t1"}};
    s.check(ctx);
    ctx.expectFindings({
        "datalog.xml: log \"a\" duplicate data \"plant.t1\"",
        "datalog.xml: log \"a\" data \"plant.gone\": no database holds the real-time data",
        "datalog.xml: duplicate log \"a\"",
        "datalog.xml: log \"c\" period: ",
        "datalog.xml: log \"c\" control_var: no database holds the real-time data \"plant.off\"",
        "datalog.xml: log \"c\" dbname: ",
    });
}

} // namespace

// history.xml: golden files (both roots, the older layout, only the value of the data's
// kind written), new record defaults, bad input and the checks.

#include "sections/history/HistorySection.h"
#include "support/SectionTestKit.h"

#include <gtest/gtest.h>

using namespace rq;
using rqtest::written;

namespace {

HistoryData var(const std::string& db, const std::string& name, const std::string& type) {
    HistoryData d;
    d.dbname = db;
    d.dataname = name;
    d.type = type;
    d.periodvalue = "P";
    d.changevalue = "C";
    d.trigvarname = "T";
    return d;
}

} // namespace

TEST(HistoryGolden, ReadWriteReadGivesTheExpectedBytes) {
    for (const std::string& c : rqtest::caseNames("history")) {
        SCOPED_TRACE(c);
        rqtest::expectGolden<HistorySection>("history", c);
    }
}

TEST(HistoryModel, NewRecordDefaultsKindNamesAndCounts) {
    HistorySection s;
    s.records().emplace_back();
    EXPECT_EQ(written(s), rqtest::crlf("<?xml version=\"1.0\" ?>\n<rqhistory>\n"
                                       "\t<historydb name=\"\" period=\"1000\" path=\"flash\" "
                                       "remaindays=\"1\" indexperiod=\"600\">\n\t\t<logdata>\n"
                                       "\t\t</logdata>\n\t</historydb>\n</rqhistory>\n"));
    EXPECT_EQ(historyKindShown("vartrigger"), "Variable trigger record");
    EXPECT_EQ(historyKindShown("Period"), "");
    ASSERT_TRUE(rqtest::readBytes(
        s, rqtest::readFile(rqtest::dataPath("history", "records", "input.xml"))));
    EXPECT_EQ(s.counts(),
              (std::vector<std::pair<std::string, std::size_t>>{{"records", 3}, {"data", 7}}));
    s.clear();
    EXPECT_EQ(written(s), rqtest::crlf("<?xml version=\"1.0\" ?>\n<rqhistory>\n</rqhistory>\n"));
}

TEST(HistoryReader, BadInputAndLongValues) {
    rqtest::expectLateOutcomesHeldBack<HistorySection>(
        "<history>",
        "<historydb name=\"h\"><logdata><data dataname=\"x\"/><data "
        "dbname=\"d\"/></logdata></historydb><config name=\"c\"/>",
        "</history>");

    for (const std::string bytes :
         {"<rqhistory><historydb name=\"a\"></rqhistory>", "<RQHISTORY></RQHISTORY>", "<alarm/>",
          "<?xml version=\"1.0\" ?>", "<rqhistory><historydb name=\"a&b\"/></rqhistory>"}) {
        HistorySection s;
        s.records().emplace_back().name = "old";
        std::string error;
        EXPECT_FALSE(rqtest::readBytes(s, bytes, &error)) << bytes;
        EXPECT_FALSE(error.empty()) << bytes;
        EXPECT_TRUE(s.records().empty()) << bytes;
    }
    HistorySection big, back;
    HistoryData d = var("db", "v", "period");
    d.description.assign(1 << 20, 'd');
    big.records().emplace_back().data.push_back(d);
    ASSERT_TRUE(rqtest::readBytes(back, written(big)));
    EXPECT_EQ(back.records()[0].data[0].description, d.description);
}

TEST(HistoryCheck, ReportsDuplicatesReferencesAndRawValues) {
    HistorySection s;
    s.records().resize(2);
    s.records()[0].name = s.records()[1].name = "h";
    HistoryRecord& r = s.records()[0];
    r.data.push_back(var("db", "ok", "period"));
    r.data.push_back(var("db", "ok", "change"));  // the same variable again
    r.data.push_back(var("db.ok", "", "period")); // not the same: dropped on reading
    r.data.push_back(var("db", "missing", "vartrigger"));
    r.data.back().trigvarname = "db.notrig";
    r.data.push_back(var("db", "ok2", "period"));
    r.data.back().trigvarname = "db.unused"; // not written for this kind: not checked
    r.data.back().description = "a<b";
    s.records()[1].data.push_back(var("db", "ok", "period")); // another record: fine
    rqtest::FakeCheck ctx{{"db", "ok"}, {"db", "ok2"}};
    s.check(ctx);
    std::string all;
    for (const auto& f : ctx.findings())
        all += f + "\n";
    for (const char* part :
         {"history.xml: duplicate history record \"h\"",
          "history.xml: duplicate data \"db.ok\" in history record \"h\"",
          "\"db.ok.\" has no database or data name", "db.missing", "db.notrig", "description"})
        EXPECT_NE(all.find(part), std::string::npos) << part << "\n" << all;
    EXPECT_EQ(all.find("db.unused"), std::string::npos) << all;
    // duplicate record, duplicate data, the dropped data (also as an unknown reference),
    // two unknown references, one raw value; "db.ok" in the second record is no duplicate
    EXPECT_EQ(ctx.findings().size(), 7u) << all;
}

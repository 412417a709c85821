// history.xml: golden files (both roots, the older layout), the writer's kind
// attributes, bad input and the checks.

#include "sections/history/HistorySection.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <set>

using namespace rq;
using rqtest::crlf;
using rqtest::RecordingSink;
using rqtest::TempDir;

namespace {

ReadContext makeCtx(MessageSink& sink) {
    return ReadContext{sink, nullptr, nullptr, {}};
}

std::string written(const HistorySection& s) {
    std::string out;
    s.write(out);
    return out;
}

bool readText(HistorySection& s, const std::string& bytes, std::string* error = nullptr) {
    TempDir dir;
    rqtest::writeFile(dir.path() / "history.xml", bytes);
    RecordingSink sink;
    ReadContext ctx = makeCtx(sink);
    const bool ok = s.read(dir.file("history.xml"), ctx);
    if (error)
        *error = ctx.error;
    EXPECT_TRUE(sink.entries.empty());
    return ok;
}

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

class FakeCheck : public CheckContext {
public:
    std::set<std::pair<std::string, std::string>> known;
    bool hasRealtimeData(std::string_view db, std::string_view data) const override {
        return known.count({std::string(db), std::string(data)}) > 0;
    }
};

} // namespace

class HistoryGolden : public testing::TestWithParam<std::string> {};

TEST_P(HistoryGolden, ReadWriteReadGivesTheExpectedBytes) {
    const std::string c = GetParam();
    HistorySection s;
    RecordingSink sink;
    ReadContext ctx = makeCtx(sink);
    ASSERT_TRUE(s.read(rqtest::dataPath("history", c, "input.xml").string(), ctx)) << ctx.error;
    const std::string expected = rqtest::readFile(rqtest::dataPath("history", c, "expected.xml"));
    EXPECT_EQ(written(s), expected);
    EXPECT_TRUE(sink.entries.empty());

    HistorySection again;
    ASSERT_TRUE(readText(again, expected));
    EXPECT_EQ(written(again), expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, HistoryGolden, testing::ValuesIn(rqtest::caseNames("history")));

TEST(HistoryModel, NewRecordDefaultsAndCounts) {
    HistoryRecord r;
    EXPECT_EQ(r.name, "");
    EXPECT_EQ(r.period, "1000");
    EXPECT_EQ(r.path, "flash");
    EXPECT_EQ(r.remaindays, "1");
    EXPECT_EQ(r.indexperiod, "600");
    EXPECT_EQ(historyKindShown("vartrigger"), "Variable trigger record");
    EXPECT_EQ(historyKindShown("Period"), "");

    HistorySection s;
    ASSERT_TRUE(readText(s, rqtest::readFile(rqtest::dataPath("history", "records", "input.xml"))));
    EXPECT_EQ(s.counts(),
              (std::vector<std::pair<std::string, std::size_t>>{{"records", 3}, {"data", 5}}));
    s.clear();
    EXPECT_EQ(written(s), crlf("<?xml version=\"1.0\" ?>\n<rqhistory>\n</rqhistory>\n"));
}

// Only the value attribute of the variable's kind is written, whatever the record holds.
TEST(HistoryWriter, WritesTheValueOfTheKindOnly) {
    struct Row {
        const char* type;
        const char* line;
    } rows[] = {
        {"period", "type=\"period\" periodvalue=\"P\" queryvarname=\"Q\" description=\"D\"/>"},
        {"change", "type=\"change\" changevalue=\"C\" queryvarname=\"Q\" description=\"D\"/>"},
        {"vartrigger",
         "type=\"vartrigger\" trigvarname=\"T\" queryvarname=\"Q\" description=\"D\"/>"},
        {"", "type=\"\" queryvarname=\"Q\" description=\"D\"/>"},
        {"Change", "type=\"Change\" queryvarname=\"Q\" description=\"D\"/>"},
    };
    for (const Row& row : rows) {
        HistorySection s;
        HistoryRecord& r = s.records().emplace_back();
        r.name = "h";
        HistoryData d = var("db", "v", row.type);
        d.queryvarname = "Q";
        d.description = "D";
        r.data.push_back(d);
        EXPECT_EQ(written(s),
                  crlf(std::string("<?xml version=\"1.0\" ?>\n<rqhistory>\n"
                                   "\t<historydb name=\"h\" period=\"1000\" path=\"flash\" "
                                   "remaindays=\"1\" indexperiod=\"600\">\n\t\t<logdata>\n"
                                   "\t\t\t<data dbname=\"db\" dataname=\"v\" ") +
                       row.line + "\n\t\t</logdata>\n\t</historydb>\n</rqhistory>\n"))
            << row.type;
    }
}

TEST(HistoryReader, BadInputFailsCleanly) {
    struct Row {
        const char* what;
        std::string bytes;
    } rows[] = {
        {"malformed", "<rqhistory><historydb name=\"a\"></rqhistory>"},
        {"wrong root", "<RQHISTORY></RQHISTORY>"},
        {"other root", "<alarm/>"},
        {"no root", "<?xml version=\"1.0\" ?>"},
        {"raw ampersand", "<rqhistory><historydb name=\"a&b\"/></rqhistory>"},
    };
    for (const Row& row : rows) {
        HistorySection s;
        s.records().emplace_back().name = "old";
        std::string error;
        EXPECT_FALSE(readText(s, row.bytes, &error)) << row.what;
        EXPECT_FALSE(error.empty()) << row.what;
        EXPECT_TRUE(s.records().empty()) << row.what;
    }
}

TEST(HistoryReader, DeviceCodePageBytesAndLongValues) {
    HistorySection s;
    // GB2312 bytes without a declaration: "历史" (C0FA CAB7).
    ASSERT_TRUE(readText(s, "<rqhistory><historydb name=\"\xC0\xFA\xCA\xB7\"/></rqhistory>"));
    ASSERT_EQ(s.records().size(), 1u);
    EXPECT_EQ(s.records()[0].name, "\xE5\x8E\x86\xE5\x8F\xB2");

    HistorySection big;
    HistoryRecord& r = big.records().emplace_back();
    HistoryData d = var("db", "v", "period");
    d.description.assign(1 << 20, 'd');
    r.data.push_back(d);
    HistorySection back;
    ASSERT_TRUE(readText(back, written(big)));
    EXPECT_EQ(back.records()[0].data[0].description, d.description);
}

TEST(HistoryCheck, ReportsDuplicatesReferencesAndRawValues) {
    HistorySection s;
    for (const char* name : {"h", "h"}) {
        HistoryRecord& r = s.records().emplace_back();
        r.name = name;
    }
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

    FakeCheck ctx;
    ctx.known = {{"db", "ok"}, {"db", "ok2"}};
    s.check(ctx);
    std::string all;
    for (const auto& f : ctx.findings())
        all += f + "\n";
    EXPECT_NE(all.find("history.xml: duplicate history record \"h\""), std::string::npos) << all;
    EXPECT_NE(all.find("history.xml: duplicate data \"db.ok\" in history record \"h\""),
              std::string::npos)
        << all;
    EXPECT_NE(all.find("\"db.ok.\" has no database or data name"), std::string::npos) << all;
    EXPECT_NE(all.find("db.missing"), std::string::npos) << all;
    EXPECT_NE(all.find("db.notrig"), std::string::npos) << all;
    EXPECT_EQ(all.find("db.unused"), std::string::npos) << all;
    EXPECT_NE(all.find("description"), std::string::npos) << all;
    // duplicate record, duplicate data, the dropped data (also as an unknown reference),
    // two unknown references, one raw value; "db.ok" in the second record is no duplicate
    EXPECT_EQ(ctx.findings().size(), 7u) << all;
}

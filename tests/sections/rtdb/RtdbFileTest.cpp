// rtdb.xml: golden files, round trips, the reader's defaults, drops and messages,
// bad input, counts, checks and the system database.

#include "sections/rtdb/RtdbSection.h"
#include "support/SectionTestKit.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using rq::DataItem;
using rq::RtdbSection;
using rqtest::written;

TEST(RtdbGolden, ReadWriteReadGivesExactBytes) {
    auto cases = rqtest::caseNames("rtdb");
    ASSERT_GE(cases.size(), 3u);
    for (const auto& c : cases) {
        SCOPED_TRACE(c);
        rqtest::expectGolden<RtdbSection>("rtdb", c);
    }
}

TEST(RtdbWriter, EmptySectionAndSyncFlag) {
    RtdbSection s;
    EXPECT_EQ(written(s), rqtest::crlf("<?xml version=\"1.0\" ?>\n<rtdbs>\n</rtdbs>\n"));
    s.root().addDatabase("A");
    s.root().addDatabase("B", false).addGroup("g").addItem(DataItem::makeAlias("x", "y"));
    EXPECT_EQ(written(s), rqtest::crlf("<?xml version=\"1.0\" ?>\n<rtdbs>\n"
                                       "<rtdb name=\"A\" sync=\"1\" >\n</rtdb>\n"
                                       "<rtdb name=\"B\" sync=\"0\" >\n"
                                       "\t<datagroup name=\"g\">\n"
                                       "\t\t<datalias aliasname=\"x\" name=\"y\" />\n"
                                       "\t</datagroup>\n</rtdb>\n</rtdbs>\n"));
}

TEST(RtdbReader, BadInputFailsCleanlyAndLeavesTheSectionEmpty) {
    const std::string longName(1 << 20, 'n');
    struct Case {
        const char* what;
        std::string bytes;
    } cases[] = {
        {"wrong root", "<?xml version=\"1.0\" ?><RTDBS><rtdb name=\"A\"/></RTDBS>"},
        {"malformed", "<?xml version=\"1.0\" ?><rtdbs><rtdb name=\"A\"></rtdbs>"},
        {"empty file", ""},
        {"not xml", "rtdbs"},
        {"unescaped quote written by the tool",
         "<?xml version=\"1.0\" ?>\r\n<rtdbs>\r\n<rtdb name=\"a\"b\" sync=\"1\" >\r\n</rtdb>\r\n"
         "</rtdbs>\r\n"},
        {"bytes of no code page", "<rtdbs><rtdb name=\"\xff\xfe\xff\"/></rtdbs>"},
        {"truncated", "<rtdbs><rtdb name=\"" + longName},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        RtdbSection s;
        s.root().addDatabase("stale");
        rqtest::RecordingSink sink;
        rq::ReadContext ctx{sink, nullptr, nullptr, {}};
        rqtest::TempDir dir;
        rqtest::writeFile(dir.file("rtdb.xml"), c.bytes);
        EXPECT_FALSE(s.read(dir.file("rtdb.xml"), ctx));
        EXPECT_FALSE(ctx.error.empty());
        EXPECT_EQ(s.databaseCount(), 0u);
        EXPECT_TRUE(sink.entries.empty());
    }
    RtdbSection s;
    rqtest::RecordingSink sink;
    rq::ReadContext ctx{sink, nullptr, nullptr, {}};
    EXPECT_FALSE(s.read("/nonexistent/rtdb.xml", ctx));
    EXPECT_FALSE(ctx.error.empty());
}

TEST(RtdbReader, LongValuesRoundTrip) {
    RtdbSection s;
    const std::string longText(1 << 20, 'v');
    s.root().addDatabase("A").addItem(
        DataItem::makeData("x", "string", "1048576", longText, longText));
    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("rtdb.xml"), written(s));
    RtdbSection back;
    ASSERT_TRUE(rqtest::readSection(back, dir.file("rtdb.xml")));
    EXPECT_EQ(back.database(0).item(0), s.database(0).item(0));
}

TEST(RtdbReader, ReferencesInValuesAreDecodedAndWrittenRaw) {
    const std::string file =
        "<rtdbs><rtdb name=\"a&amp;b\"><data name=\"x\" type=\"char\" "
        "description=\"1 &lt; 2 &#x41;&#20013; &quot;q&quot;\" init=\"&apos;\"/>"
        "<datalias aliasname=\"y&#38;\" name=\"x\"/></rtdb></rtdbs>";
    rqtest::RecordingSink sink;
    rq::ReadContext ctx{sink, nullptr, nullptr, {}};
    RtdbSection s;
    ASSERT_TRUE(s.readMemory(file, "rtdb.xml", ctx)) << ctx.error;
    ASSERT_EQ(s.databaseCount(), 1u);
    EXPECT_EQ(s.database(0).name(), "a&b");
    EXPECT_EQ(s.database(0).item(0), DataItem::makeData("x", "char", "1", "'", "1 < 2 A中 \"q\""));
    EXPECT_EQ(s.database(0).item(1), DataItem::makeAlias("y&", "x"));
    EXPECT_NE(written(s).find("<rtdb name=\"a&b\" sync=\"1\" >"), std::string::npos);
}

// The file is read while the records are built: a file that turns out malformed at
// its end shows no message and keeps no record or drop; one that turns out to be
// in the device code page is read twice but shows its messages once.
TEST(RtdbReader, LateFailuresShowNothingAndRetriesShowOnce) {
    const std::string dup = "<rtdb name=\"a\"/><rtdb name=\"a\"/><rtdb/>";
    struct Case {
        std::string bytes;
        bool ok;
    } cases[] = {
        {"<rtdbs>" + dup + "<rtdb name=\"b\"><data name=\"x\" type=\"int\"/></rtdb>", false},
        {"<rtdbs>" + dup + "</rtdbs><extra/>", false},
        {"<rtdbs>" + dup + "<rtdb name=\"\xce\xc2\"/></rtdbs>", true}, // GB2312
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.bytes);
        rqtest::RecordingSink sink;
        rq::ReadContext ctx{sink, nullptr, nullptr, {}};
        RtdbSection s;
        s.root().addDatabase("old");
        EXPECT_EQ(s.readMemory(c.bytes, "rtdb.xml", ctx), c.ok);
        EXPECT_EQ(sink.texts(), c.ok ? std::vector<std::string>{"The database already exist!"}
                                     : std::vector<std::string>{});
        EXPECT_EQ(ctx.dropped.size(), c.ok ? 2u : 0u);
        EXPECT_EQ(s.databaseCount(), c.ok ? 2u : 0u);
        EXPECT_EQ(ctx.error.empty(), c.ok) << ctx.error;
    }
}

TEST(RtdbSection, CountsAndHasData) {
    RtdbSection s;
    ASSERT_TRUE(
        rqtest::readSection(s, rqtest::dataPath("rtdb", "canonical", "expected.xml").string()));
    using C = std::vector<std::pair<std::string, std::size_t>>;
    EXPECT_EQ(s.counts(), (C{{"databases", 2}, {"groups", 3}, {"data", 5}, {"aliases", 2}}));

    struct Ref {
        const char* db;
        const char* data;
        bool found;
    } refs[] = {
        {"plant", "Level1", true}, // data two groups deep
        {"plant", "P1", true},     // alias
        {"plant", "Counter", true},    {"local", "Counter", true},
        {"plant", "tanks", false},  // a group is no data
        {"local", "Level1", false}, // names belong to their database
        {"PLANT", "Level1", false}, // exact case
        {"nowhere", "Counter", false}, {"plant", "", false},
    };
    for (const auto& r : refs)
        EXPECT_EQ(s.hasData(r.db, r.data), r.found) << r.db << "." << r.data;

    s.clear();
    EXPECT_EQ(s.databaseCount(), 0u);
    EXPECT_FALSE(s.hasData("plant", "Level1"));
}

class ProjectCheck : public rq::CheckContext {
public:
    bool hasRealtimeData(std::string_view, std::string_view) const override { return true; }
};

TEST(RtdbSection, CheckFindsRawValuesDuplicatesAndLostAliases) {
    RtdbSection clean;
    ASSERT_TRUE(
        rqtest::readSection(clean, rqtest::dataPath("rtdb", "canonical", "expected.xml").string()));
    ProjectCheck none;
    clean.check(none);
    EXPECT_TRUE(none.findings().empty()) << none.findings().front();

    RtdbSection s;
    auto& a = s.root().addDatabase("A&B");
    auto& g = a.addGroup("dup");
    g.addItem(DataItem::makeData("dup", "char", "1", "0", "a \"quoted\" text"));
    g.addItem(DataItem::makeData("notype", "", "1", "<", ""));
    a.addItem(DataItem::makeAlias("al", "missing"));
    a.addItem(DataItem::makeAlias("ok", "notype"));
    s.root().addDatabase("A&B");
    ProjectCheck ctx2;
    s.check(ctx2);
    auto has = [&](const std::string& part) {
        for (const auto& f : ctx2.findings())
            if (f.find(part) != std::string::npos)
                return true;
        return false;
    };
    EXPECT_TRUE(has("rtdb.xml: database \"A&B\" name"));
    EXPECT_TRUE(has("rtdb.xml: duplicate database \"A&B\""));
    EXPECT_TRUE(has("data \"dup\" description"));
    EXPECT_TRUE(has("data \"notype\" init"));
    EXPECT_TRUE(has("data \"notype\" has no type"));
    EXPECT_TRUE(has("duplicate name \"dup\" in database \"A&B\""));
    EXPECT_TRUE(has("alias \"al\": target \"missing\" is not in the database"));
    EXPECT_FALSE(has("alias \"ok\""));
    // Two database names (one finding each), the duplicate database, the
    // description, the init, the missing type, the duplicate name, the lost alias.
    EXPECT_EQ(ctx2.findings().size(), 8u);
}

TEST(RtdbSection, SystemDatabaseFromTheProgramDirectory) {
    rqtest::RecordingSink sink;
    rq::ReadContext ctx{sink, nullptr, nullptr, {}};
    auto sys = rq::loadSystemDatabase(rqtest::programDir(), ctx);
    ASSERT_TRUE(sys) << ctx.error;
    EXPECT_TRUE(sys->hasData("system", "Logic_True"));

    rqtest::TempDir empty;
    rq::ReadContext ctx2{sink, nullptr, nullptr, {}};
    EXPECT_FALSE(rq::loadSystemDatabase(empty.str(), ctx2));
    EXPECT_FALSE(ctx2.error.empty());
}

} // namespace

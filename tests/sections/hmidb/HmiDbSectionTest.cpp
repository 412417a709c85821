#include "sections/hmidb/HmiDbSection.h"
#include "core/TextEncoding.h"
#include "support/SectionTestKit.h"

using namespace rq;
using rqtest::written;

namespace {

TEST(HmiDbFile, GoldenFiles) {
    const auto cases = rqtest::caseNames("hmidb");
    EXPECT_EQ(cases.size(), 6u);
    for (const auto& c : cases) {
        SCOPED_TRACE(c);
        // "entities": a value read from "&amp;" is written back as a raw "&".
        rqtest::expectGolden<HmiDbSection>("hmidb", c, c != "entities");
    }
}

TEST(HmiDbFile, ClearedSectionWritesTheFixedGroupsUnderTheirNames) {
    HmiDbSection s;
    s.io.groups.push_back({"g", {{"deep", {}, {{"x", "db", "d", 1}}}}, {}});
    s.memory.items.push_back({"m", "long", "4", "0"});
    s.clear();
    s.io.name = "renamed"; // the fixed groups are written as io and memory whatever
    EXPECT_EQ(written(s), rqtest::readFile(rqtest::dataPath("hmidb", "empty", "input.xml")));
}

TEST(HmiDbFile, CountsNestedGroupsAndItemsOfBothKinds) {
    HmiDbSection s;
    HmiIoGroup inner{"inner", {}, {{"x", "db", "d", 1}, {"y", "db", "d", 1}}};
    s.io.groups.push_back({"outer", {inner, inner}, {{"z", "db", "d", 1}}});
    s.memory.groups.push_back({"m", {}, {{"m", "long", "4", "0"}}});
    s.memory.items.push_back({"n", "long", "4", "0"});
    using Counts = std::vector<std::pair<std::string, std::size_t>>;
    EXPECT_EQ(s.counts(), (Counts{{"groups", 4}, {"io_data", 5}, {"memory_data", 2}}));
}

// Save converts to the device code page; the reader takes the parser's text as is.
TEST(HmiDbFile, ReadsBackWhatSaveWroteInTheDeviceCodePage) {
    HmiDbSection s;
    s.io.groups.push_back({"温度组", {}, {{"温度", "车间", "温度1", 250}}});
    s.memory.items.push_back({"名称", "string", "16", std::string(1 << 20, 'v')});
    const std::string out = written(s);
    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("hmidb.xml"), toDeviceXml(out));
    HmiDbSection again;
    std::string error;
    ASSERT_TRUE(rqtest::readSection(again, dir.file("hmidb.xml"), &error)) << error;
    EXPECT_EQ(written(again), out);
}

TEST(HmiDbFile, BadFilesFailCleanly) {
    rqtest::expectLateOutcomesHeldBack<HmiDbSection>(
        "<hmidb>",
        "<datagroup name=\"other\"/><datagroup name=\"io\"><data name=\"a\"/></datagroup>",
        "</hmidb>");

    HmiDbSection filled;
    filled.io.items.push_back({"old", "db", "d", 1});
    rqtest::expectBadFilesFail(filled, "<hmidbs/>", "<HMIDB/>",
                               "<hmidb><datagroup name=\"io\"></hmidb>",
                               "<hmidb><datagroup name=\"\xff\xfe\"/></hmidb>");
}

TEST(HmiDbCheck, ReportsRawSpecialsUnknownDataAndTypesButNotRepeatedNames) {
    HmiDbSection s;
    s.io.items = {{"ok", "plant", "temp", 500}, {"ok", "plant", "temp", 500}, {"free", "", "", 1}};
    s.io.groups.push_back({"a<b", {}, {{"lost", "plant", "nothere", 500}}});
    s.memory.groups.push_back({"g", {}, {{"m", "string", "4", "say \"hi\""}}});
    s.memory.items = {{"x&y", "long", "4", "0"}, {"t", "Long", "4", "0"}};
    rqtest::FakeCheck ctx{{"plant", "temp"}};
    s.check(ctx);
    ctx.expectFindings({
        "hmidb.xml: datagroup \"a<b\" name: ",
        "hmidb.xml: data \"lost\": no database holds the real-time data \"plant.nothere\"",
        "hmidb.xml: data \"m\" init: ",
        "hmidb.xml: data \"x&y\" name: ",
        "hmidb.xml: data \"t\" type: \"Long\" is not a data type keyword",
    });
}

} // namespace

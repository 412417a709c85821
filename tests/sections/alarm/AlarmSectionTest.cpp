// alarm.xml: golden files (every slot tag in slot order), the group duplicate test,
// bad input and the checks.

#include "sections/alarm/AlarmSection.h"
#include "support/SectionTestKit.h"

#include <gtest/gtest.h>

using namespace rq;
using rqtest::RecordingSink;
using rqtest::written;

namespace {

bool readText(AlarmSection& s, const std::string& bytes, RecordingSink& sink,
              std::string* error = nullptr) {
    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("alarm.xml"), bytes);
    ReadContext ctx{sink, nullptr, nullptr, {}};
    const bool ok = s.read(dir.file("alarm.xml"), ctx);
    if (error)
        *error = ctx.error;
    return ok;
}

AlarmDataItem item(const std::string& db, const std::string& name) {
    AlarmDataItem d;
    d.dbname = db;
    d.dataname = name;
    return d;
}

} // namespace

TEST(AlarmGolden, ReadWriteReadGivesTheExpectedBytesAndMessages) {
    for (const std::string& c : rqtest::caseNames("alarm")) {
        SCOPED_TRACE(c);
        rqtest::expectGolden<AlarmSection>("alarm", c);
    }
    EXPECT_EQ(alarmSlotOfTag(kAlarmSlotTags[kAlarmLowLow]), kAlarmLowLow);
    EXPECT_EQ(alarmSlotOfTag("high"), -1);
}

TEST(AlarmModel, NewProjectAndGroupDuplicateTest) {
    AlarmSection s;
    EXPECT_EQ(written(s), rqtest::crlf("<?xml version=\"1.0\" ?>\n<alarm>\n"
                                       "\t<alarmlog size=\"1000\" />\n</alarm>\n"));
    RecordingSink sink;
    ASSERT_NE(s.addGroup("g", sink), nullptr);
    ASSERT_NE(s.addGroup("G", sink), nullptr);
    EXPECT_TRUE(sink.entries.empty());
    EXPECT_EQ(s.addGroup("g", sink), nullptr);
    EXPECT_EQ(sink.texts(), std::vector<std::string>{"The alarm group already exist!"});
    EXPECT_EQ(sink.entries[0].icon, MessageIcon::Stop);
    s.groups()[0].data.push_back(item("db", "a"));
    s.groups()[1].data = {item("db", "b"), item("db", "c")};
    EXPECT_EQ(s.counts(),
              (std::vector<std::pair<std::string, std::size_t>>{{"groups", 2}, {"data", 3}}));
    s.logSize() = "50";
    s.clear();
    EXPECT_TRUE(s.groups().empty());
    EXPECT_EQ(s.logSize(), AlarmSection::kDefaultLogSize);
}

TEST(AlarmReader, BadInputFailsCleanlyAndLongValues) {
    rqtest::expectLateOutcomesHeldBack<AlarmSection>(
        "<alarm>",
        "<alarmgroup name=\"g\"/><alarmgroup name=\"g\"/><alarmgroup name=\"h\"><data dbname=\"d\" "
        "dataname=\"x\"><Low/><Low info=\"2\"/></data></alarmgroup>",
        "</alarm>");

    for (const std::string bytes : {"<alarm><alarmgroup name=\"a\" ></alarm>", "<Alarm/>", "",
                                    "<alarm><alarmgroup name=\"a<b\" /></alarm>"}) {
        AlarmSection s;
        RecordingSink sink;
        s.addGroup("old", sink);
        s.logSize() = "7";
        std::string error;
        EXPECT_FALSE(readText(s, bytes, sink, &error)) << bytes;
        EXPECT_FALSE(error.empty()) << bytes;
        EXPECT_TRUE(s.groups().empty()) << bytes;
        EXPECT_EQ(s.logSize(), AlarmSection::kDefaultLogSize) << bytes;
    }
    AlarmSection big, back;
    RecordingSink sink;
    AlarmDataItem d = item("db", "v");
    d.slots[kAlarmOpen] = {true, "", "", std::string(1 << 20, 'i'), ""};
    big.addGroup("g", sink)->data.push_back(d);
    ASSERT_TRUE(readText(back, written(big), sink));
    EXPECT_EQ(back.groups()[0].data[0].slots[kAlarmOpen].info, d.slots[kAlarmOpen].info);
}

TEST(AlarmCheck, ReportsDuplicatesReferencesAndRawValues) {
    AlarmSection s;
    RecordingSink sink;
    AlarmGroup* g = s.addGroup("g", sink);
    g->data.push_back(item("db", "ok"));
    g->data.push_back(item("db", "ok")); // only the editor refuses it
    g->data.push_back(item("db", "missing"));
    g->data.back().status_var = "db.nostatus";
    g->data.back().slots[kAlarmHigh] = {true, "", "90", "a&b", ""};
    g->data.back().slots[kAlarmLow] = {false, "", "", "x<y", ""}; // not written, not checked
    s.groups().emplace_back().name = "g";
    s.addGroup("h", sink)->data.push_back(item("db", "ok"));
    rqtest::FakeCheck ctx{{"db", "ok"}};
    s.check(ctx);
    std::string all;
    for (const auto& f : ctx.findings())
        all += f + "\n";
    for (const char* part : {"alarm.xml: duplicate alarm group \"g\"",
                             "alarm.xml: duplicate data \"db.ok\" in alarm group \"g\"",
                             "\"db.missing\"", "db.nostatus", "High info"})
        EXPECT_NE(all.find(part), std::string::npos) << part << "\n" << all;
    EXPECT_EQ(all.find("Low info"), std::string::npos) << all;
    EXPECT_EQ(ctx.findings().size(), 5u) << all;
}

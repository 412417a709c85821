// alarm.xml: golden files, the group duplicate test, the slot order of the writer,
// bad input and the checks.

#include "sections/alarm/AlarmSection.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

using namespace rq;
using rqtest::crlf;
using rqtest::RecordingSink;
using rqtest::TempDir;

namespace {

ReadContext makeCtx(MessageSink& sink) {
    return ReadContext{sink, nullptr, nullptr, {}};
}

std::string written(const AlarmSection& s) {
    std::string out;
    s.write(out);
    return out;
}

bool readText(AlarmSection& s, const std::string& bytes, RecordingSink& sink,
              std::string* error = nullptr) {
    TempDir dir;
    rqtest::writeFile(dir.path() / "alarm.xml", bytes);
    ReadContext ctx = makeCtx(sink);
    const bool ok = s.read(dir.file("alarm.xml"), ctx);
    if (error)
        *error = ctx.error;
    return ok;
}

class FakeCheck : public CheckContext {
public:
    std::set<std::pair<std::string, std::string>> known;
    bool hasRealtimeData(std::string_view db, std::string_view data) const override {
        return known.count({std::string(db), std::string(data)}) > 0;
    }
};

AlarmDataItem item(const std::string& db, const std::string& name) {
    AlarmDataItem d;
    d.dbname = db;
    d.dataname = name;
    return d;
}

} // namespace

class AlarmGolden : public testing::TestWithParam<std::string> {};

TEST_P(AlarmGolden, ReadWriteReadGivesTheExpectedBytes) {
    const std::string c = GetParam();
    AlarmSection s;
    RecordingSink sink;
    ReadContext ctx = makeCtx(sink);
    ASSERT_TRUE(s.read(rqtest::dataPath("alarm", c, "input.xml").string(), ctx)) << ctx.error;
    const std::string expected = rqtest::readFile(rqtest::dataPath("alarm", c, "expected.xml"));
    EXPECT_EQ(written(s), expected);

    std::vector<std::string> want;
    const auto messages = rqtest::dataPath("alarm", c, "messages.txt");
    if (std::filesystem::exists(messages)) {
        std::istringstream in(rqtest::readFile(messages));
        for (std::string l; std::getline(in, l);)
            want.push_back(l);
    }
    EXPECT_EQ(sink.texts(), want);
    for (const auto& e : sink.entries)
        EXPECT_EQ(e.icon, MessageIcon::Stop);

    AlarmSection again;
    RecordingSink quiet;
    ASSERT_TRUE(readText(again, expected, quiet));
    EXPECT_EQ(written(again), expected);
    EXPECT_TRUE(quiet.entries.empty());
}

INSTANTIATE_TEST_SUITE_P(Cases, AlarmGolden, testing::ValuesIn(rqtest::caseNames("alarm")));

TEST(AlarmModel, NewProjectAndGroupDuplicateTest) {
    AlarmSection s;
    EXPECT_EQ(written(s),
              crlf("<?xml version=\"1.0\" ?>\n<alarm>\n\t<alarmlog size=\"1000\" />\n</alarm>\n"));
    RecordingSink sink;
    ASSERT_NE(s.addGroup("g", sink), nullptr);
    ASSERT_NE(s.addGroup("G", sink), nullptr);
    EXPECT_TRUE(sink.entries.empty());
    EXPECT_EQ(s.addGroup("g", sink), nullptr);
    EXPECT_EQ(sink.texts(), std::vector<std::string>{"The alarm group already exist!"});
    EXPECT_EQ(sink.entries[0].icon, MessageIcon::Stop);
    EXPECT_EQ(s.groups().size(), 2u);
    s.groups()[0].data.push_back(item("db", "a"));
    s.groups()[1].data.push_back(item("db", "b"));
    s.groups()[1].data.push_back(item("db", "c"));
    EXPECT_EQ(s.counts(),
              (std::vector<std::pair<std::string, std::size_t>>{{"groups", 2}, {"data", 3}}));
    s.logSize() = "50";
    s.clear();
    EXPECT_TRUE(s.groups().empty());
    EXPECT_EQ(s.logSize(), AlarmSection::kDefaultLogSize);
}

// Set slots are written in slot order, each with its own tag; unset slots not at all.
TEST(AlarmWriter, EachSlotWritesItsTag) {
    for (int slot = 0; slot < kAlarmSlotCount; ++slot) {
        AlarmSection s;
        RecordingSink sink;
        AlarmGroup* g = s.addGroup("g", sink);
        AlarmDataItem d = item("db", "v");
        d.slots[slot] = {true, "E", "V", "I", "R"};
        g->data.push_back(d);
        EXPECT_EQ(written(s), crlf(std::string("<?xml version=\"1.0\" ?>\n<alarm>\n"
                                               "\t<alarmlog size=\"1000\" />\n"
                                               "\t<alarmgroup name=\"g\" >\n"
                                               "\t\t<data dbname=\"db\" dataname=\"v\" "
                                               "priority=\"\" status_var=\"\">\n\t\t\t<") +
                                   kAlarmSlotTags[slot] +
                                   " enable_var=\"E\" value_var=\"V\" info=\"I\" "
                                   "restore_info=\"R\" />\n\t\t</data>\n\t</alarmgroup>\n"
                                   "</alarm>\n"))
            << kAlarmSlotTags[slot];
        EXPECT_EQ(alarmSlotOfTag(kAlarmSlotTags[slot]), slot);
    }
    EXPECT_EQ(alarmSlotOfTag("high"), -1);
}

TEST(AlarmReader, BadInputFailsCleanly) {
    struct Row {
        const char* what;
        std::string bytes;
    } rows[] = {
        {"malformed", "<alarm><alarmgroup name=\"a\" ></alarm>"},
        {"wrong root", "<Alarm/>"},
        {"no root", ""},
        {"raw less-than", "<alarm><alarmgroup name=\"a<b\" /></alarm>"},
    };
    for (const Row& row : rows) {
        AlarmSection s;
        RecordingSink sink;
        s.addGroup("old", sink);
        s.logSize() = "7";
        std::string error;
        EXPECT_FALSE(readText(s, row.bytes, sink, &error)) << row.what;
        EXPECT_FALSE(error.empty()) << row.what;
        EXPECT_TRUE(s.groups().empty()) << row.what;
        EXPECT_EQ(s.logSize(), AlarmSection::kDefaultLogSize) << row.what;
    }
}

TEST(AlarmReader, DeviceCodePageBytesAndLongValues) {
    AlarmSection s;
    RecordingSink sink;
    // GB2312 "报警" (B1A8 BEAF) in a file without declaration.
    ASSERT_TRUE(readText(s, "<alarm><alarmgroup name=\"\xB1\xA8\xBE\xAF\" /></alarm>", sink));
    ASSERT_EQ(s.groups().size(), 1u);
    EXPECT_EQ(s.groups()[0].name, "\xE6\x8A\xA5\xE8\xAD\xA6");

    AlarmSection big;
    AlarmDataItem d = item("db", "v");
    d.slots[kAlarmOpen] = {true, "", "", std::string(1 << 20, 'i'), ""};
    big.addGroup("g", sink)->data.push_back(d);
    AlarmSection back;
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

    FakeCheck ctx;
    ctx.known = {{"db", "ok"}};
    s.check(ctx);
    std::string all;
    for (const auto& f : ctx.findings())
        all += f + "\n";
    EXPECT_NE(all.find("alarm.xml: duplicate alarm group \"g\""), std::string::npos) << all;
    EXPECT_NE(all.find("alarm.xml: duplicate data \"db.ok\" in alarm group \"g\""),
              std::string::npos)
        << all;
    EXPECT_NE(all.find("\"db.missing\""), std::string::npos) << all;
    EXPECT_NE(all.find("db.nostatus"), std::string::npos) << all;
    EXPECT_NE(all.find("High info"), std::string::npos) << all;
    EXPECT_EQ(all.find("Low info"), std::string::npos) << all;
    EXPECT_EQ(ctx.findings().size(), 5u) << all;
}

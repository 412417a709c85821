#include "sections/redundancy/RedundancySection.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace rq;

namespace {

bool readPath(RedundancySection& s, const std::string& path, std::string* error = nullptr) {
    rqtest::RecordingSink sink;
    ReadContext ctx{sink, nullptr, nullptr, {}};
    bool ok = s.read(path, ctx);
    if (error)
        *error = ctx.error;
    EXPECT_TRUE(sink.entries.empty());
    return ok;
}

bool readText(RedundancySection& s, const std::string& bytes, std::string* error = nullptr) {
    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("redundancy.xml"), bytes);
    return readPath(s, dir.file("redundancy.xml"), error);
}

std::string written(const RedundancySection& s) {
    std::string out;
    s.write(out);
    return out;
}

class NoData : public CheckContext {
public:
    bool hasRealtimeData(std::string_view, std::string_view) const override { return false; }
};

} // namespace

TEST(RedundancyRoles, KeywordsByPosition) {
    const char* keywords[] = {"", "master", "slave", "client"};
    for (int i = 0; i < RedundancyRoles::kCount; ++i) {
        EXPECT_EQ(RedundancyRoles::keywordAt(i), keywords[i]);
        EXPECT_EQ(RedundancyRoles::indexOf(keywords[i]), i);
    }
    EXPECT_EQ(RedundancyRoles::keywordAt(-1), "");
    EXPECT_EQ(RedundancyRoles::keywordAt(4), "");
    EXPECT_EQ(RedundancyRoles::indexOf("Master"), -1);
}

TEST(RedundancyWriter, FileFromTheModel) {
    struct Row {
        const char* what;
        RedundancyConfig config;
        std::string expected;
    };
    RedundancyConfig roleOnly;
    roleOnly.type = "master";
    RedundancyConfig noRole;
    noRole.period = "1";
    noRole.linkMasterIp[0] = "a";
    noRole.linkSlaveIp[0] = "b";
    RedundancyConfig pairs = roleOnly;
    pairs.type = "slave";
    pairs.slavePort = "";
    pairs.linkMasterIp = {"m1", "m2", "", "m4"};
    pairs.linkSlaveIp = {"", "s2", "s3", "s4"};
    const Row rows[] = {
        {"defaults with a role", roleOnly,
         "<?xml version=\"1.0\" ?>\n<redundancy>\n"
         "\t<config type=\"master\" period=\"500\" clock_sync_count=\"10\" />\n"
         "\t<datalink type=\"tcp\" timeout=\"500\" >\n"
         "\t\t<master enable=\"1\" port=\"9000\" />\n"
         "\t\t<slave enable=\"1\" port=\"9001\" />\n"
         "\t</datalink>\n</redundancy>\n"},
        {"no role: three lines whatever else is set", noRole,
         "<?xml version=\"1.0\" ?>\n<redundancy>\n</redundancy>\n"},
        {"only complete pairs, empty slave port disabled", pairs,
         "<?xml version=\"1.0\" ?>\n<redundancy>\n"
         "\t<config type=\"slave\" period=\"500\" clock_sync_count=\"10\" />\n"
         "\t<datalink type=\"tcp\" timeout=\"500\" >\n"
         "\t\t<master enable=\"1\" port=\"9000\" />\n"
         "\t\t<slave enable=\"0\" port=\"\" />\n"
         "\t\t<link master_ip=\"m2\" slave_ip=\"s2\" />\n"
         "\t\t<link master_ip=\"m4\" slave_ip=\"s4\" />\n"
         "\t</datalink>\n</redundancy>\n"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.what);
        RedundancySection s;
        s.config() = r.config;
        EXPECT_EQ(written(s), rqtest::crlf(r.expected));
    }
}

TEST(RedundancyGolden, EveryCaseReadsWritesAndReadsBack) {
    auto cases = rqtest::caseNames("redundancy");
    ASSERT_GE(cases.size(), 4u);
    for (const std::string& c : cases) {
        SCOPED_TRACE(c);
        auto input = rqtest::dataPath("redundancy", c, "input.xml");
        auto expectedPath = rqtest::dataPath("redundancy", c, "expected.xml");
        std::string expected =
            rqtest::readFile(std::filesystem::exists(expectedPath) ? expectedPath : input);
        RedundancySection s;
        ASSERT_TRUE(readPath(s, input.string()));
        std::string once = written(s);
        EXPECT_EQ(once, expected);
        RedundancySection again;
        ASSERT_TRUE(readText(again, once));
        EXPECT_EQ(again.config(), s.config());
    }
}

TEST(RedundancyReader, DefaultsAndDrops) {
    RedundancySection s;
    s.config().type = "master";
    s.config().timeout = "1";
    s.config().linkMasterIp[3] = "x";
    s.config().linkSlaveIp[3] = "y";
    ASSERT_TRUE(readPath(s, rqtest::dataPath("redundancy", "no_role", "input.xml").string()));
    EXPECT_EQ(s.config(), RedundancyConfig{}); // reset before reading

    ASSERT_TRUE(readText(s, "<redundancy><config type=\"slave\"/>"
                            "<datalink type=\"udp\" timeout=\"1\"><master port=\"1\"/>"
                            "<link master_ip=\"a\" slave_ip=\"b\"/></datalink>"
                            "<datalink type=\"TCP\" timeout=\"2\"/></redundancy>"));
    RedundancyConfig expected;
    expected.type = "slave";
    expected.period = "";
    expected.clockSyncCount = "";
    EXPECT_EQ(s.config(), expected); // neither link type is "tcp"

    ASSERT_TRUE(readPath(s, rqtest::dataPath("redundancy", "reader_drops", "input.xml").string()));
    const RedundancyConfig& c = s.config();
    EXPECT_EQ(c.masterPort, "7000"); // enable is not read
    EXPECT_EQ(c.slavePort, "9001");  // no slave element: default kept
    EXPECT_EQ(c.timeout, "");        // absent attribute replaces the default
    EXPECT_EQ(c.linkMasterIp, (std::array<std::string, 4>{"a1", "a2", "a3", "a4"}));
    EXPECT_EQ(c.linkSlaveIp, (std::array<std::string, 4>{"b1", "b2", "b3", "b4"}));
    EXPECT_EQ(s.counts(),
              (std::vector<std::pair<std::string, std::size_t>>{{"config", 1}, {"links", 4}}));
}

TEST(RedundancyReader, BadInputFailsCleanlyAndLeavesDefaults) {
    const std::string rows[] = {
        "<redundancy><config type=\"master\"></redundancy>",
        "<?xml version=\"1.0\" ?>\r\n<Redundancy>\r\n</Redundancy>\r\n",
        "",
        "<redundancy><config type=\"\xff\xfe\"/></redundancy>",
    };
    for (const std::string& bytes : rows) {
        SCOPED_TRACE(bytes);
        RedundancySection s;
        s.config().type = "client";
        std::string error;
        EXPECT_FALSE(readText(s, bytes, &error));
        EXPECT_FALSE(error.empty());
        EXPECT_EQ(s.config(), RedundancyConfig{});
    }
}

TEST(RedundancyReader, LongValuesAndDeviceCodePage) {
    RedundancySection s;
    s.config().type = "master";
    s.config().linkMasterIp[0] = std::string(1 << 20, '1');
    s.config().linkSlaveIp[0] = "b";
    RedundancySection back;
    ASSERT_TRUE(readText(back, written(s)));
    EXPECT_EQ(back.config(), s.config());

    ASSERT_TRUE(readText(back, "<redundancy><config type=\"\xd6\xf7\"/></redundancy>"));
    EXPECT_EQ(back.config().type, "\u4e3b");
}

TEST(RedundancyCheck, RawValuesOnlyWhenWritten) {
    RedundancySection s;
    s.config().period = "<5";
    NoData quiet;
    s.check(quiet);
    EXPECT_TRUE(quiet.findings().empty()); // no role: only the root is written

    s.config().type = "master";
    s.config().linkMasterIp[2] = "1.2.3.4\"";
    s.config().linkSlaveIp[2] = "5.6.7.8";
    NoData ctx;
    s.check(ctx);
    ASSERT_EQ(ctx.findings().size(), 2u) << ::testing::PrintToString(ctx.findings());
    EXPECT_EQ(ctx.findings()[0].rfind("redundancy.xml: config period: ", 0), 0u);
    EXPECT_EQ(ctx.findings()[1].rfind("redundancy.xml: link 3 master_ip: ", 0), 0u);
}

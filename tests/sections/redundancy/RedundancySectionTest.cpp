#include "sections/redundancy/RedundancySection.h"
#include "support/SectionTestKit.h"

#include <gtest/gtest.h>

using namespace rq;
using rqtest::readSection;
using rqtest::written;

TEST(RedundancyRoles, KeywordsByPositionCaseSensitive) {
    const char* keywords[] = {"", "master", "slave", "client"};
    for (int i = 0; i < RedundancyRoles::kCount; ++i)
        EXPECT_EQ(RedundancyRoles::indexOf(RedundancyRoles::keywordAt(i)), i) << keywords[i];
    EXPECT_EQ(RedundancyRoles::keywordAt(2), "slave");
    EXPECT_EQ(RedundancyRoles::keywordAt(4), "");
    EXPECT_EQ(RedundancyRoles::indexOf("Master"), -1);
}

TEST(RedundancyWriter, FileFromTheModel) {
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
    const std::string head = "<?xml version=\"1.0\" ?>\n<redundancy>\n";
    const std::pair<RedundancyConfig, std::string> rows[] = {
        {roleOnly, head +
                       "\t<config type=\"master\" period=\"500\" clock_sync_count=\"10\" />\n"
                       "\t<datalink type=\"tcp\" timeout=\"500\" >\n"
                       "\t\t<master enable=\"1\" port=\"9000\" />\n"
                       "\t\t<slave enable=\"1\" port=\"9001\" />\n\t</datalink>\n</redundancy>\n"},
        {noRole, head + "</redundancy>\n"}, // no role: three lines whatever else is set
        {pairs,
         head + "\t<config type=\"slave\" period=\"500\" clock_sync_count=\"10\" />\n"
                "\t<datalink type=\"tcp\" timeout=\"500\" >\n"
                "\t\t<master enable=\"1\" port=\"9000\" />\n"
                "\t\t<slave enable=\"0\" port=\"\" />\n"
                "\t\t<link master_ip=\"m2\" slave_ip=\"s2\" />\n"
                "\t\t<link master_ip=\"m4\" slave_ip=\"s4\" />\n\t</datalink>\n</redundancy>\n"},
    };
    for (const auto& [config, expected] : rows) {
        RedundancySection s;
        s.config() = config;
        EXPECT_EQ(written(s), rqtest::crlf(expected));
    }
}

TEST(RedundancyReader, GoldenCasesResetAndCounts) {
    for (const std::string& c : rqtest::caseNames("redundancy")) {
        SCOPED_TRACE(c);
        rqtest::expectGolden<RedundancySection>("redundancy", c);
    }
    RedundancySection s;
    s.config().type = "master";
    s.config().linkMasterIp[3] = "x";
    s.config().linkSlaveIp[3] = "y";
    ASSERT_TRUE(readSection(s, rqtest::dataPath("redundancy", "no_role", "input.xml").string()));
    EXPECT_EQ(s.config(), RedundancyConfig{}); // reset before reading
    ASSERT_TRUE(
        readSection(s, rqtest::dataPath("redundancy", "reader_drops", "input.xml").string()));
    EXPECT_EQ(s.counts(),
              (std::vector<std::pair<std::string, std::size_t>>{{"config", 1}, {"links", 4}}));
}

TEST(RedundancyReader, BadFilesFailAndLongValues) {
    rqtest::expectLateOutcomesHeldBack<RedundancySection>(
        "<redundancy>",
        "<datalink type=\"udp\"/><config type=\"master\"/><datalink type=\"tcp\"><link "
        "master_ip=\"a\"/></datalink>",
        "</redundancy>");

    RedundancySection filled, back;
    filled.config().type = "client";
    rqtest::expectBadFilesFail(filled, "<config/>", "<Redundancy>\r\n</Redundancy>\r\n",
                               "<redundancy><config type=\"master\"></redundancy>",
                               "<redundancy><config type=\"\xff\xfe\"/></redundancy>");
    filled.config().linkMasterIp[0] = std::string(1 << 20, '1');
    filled.config().linkSlaveIp[0] = "b";
    ASSERT_TRUE(rqtest::readBytes(back, written(filled)));
    EXPECT_EQ(back.config(), filled.config());
}

TEST(RedundancyCheck, RawValuesOnlyWhenWritten) {
    RedundancySection s;
    s.config().period = "<5";
    rqtest::FakeCheck quiet;
    s.check(quiet);
    quiet.expectFindings({}); // no role: only the root is written
    s.config().type = "master";
    s.config().linkMasterIp[2] = "1.2.3.4\"";
    s.config().linkSlaveIp[2] = "5.6.7.8";
    rqtest::FakeCheck ctx;
    s.check(ctx);
    ctx.expectFindings({"redundancy.xml: config period: ", "redundancy.xml: link 3 master_ip: "});
}

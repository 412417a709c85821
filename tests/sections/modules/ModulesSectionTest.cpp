#include "sections/modules/ModulesSection.h"
#include "support/SectionTestKit.h"

#include <gtest/gtest.h>

using namespace rq;
using rqtest::readSection;
using rqtest::written;

TEST(ModulesSection, GoldenCasesAndTheModelOfTheMainCase) {
    for (const std::string& c : rqtest::caseNames("modules")) {
        SCOPED_TRACE(c);
        rqtest::expectGolden<ModulesSection>("modules", c);
    }
    ModulesSection model;
    model.modules().push_back({"pump", "-DPUMP=1 -DTAG=\"p\"",
                               "\"%PRJ_DIR%/pump.c\" \"/src/a b.c\" ", "a<b && c>d 'x'", true});
    model.modules().push_back({"\u6ce8\u6c34", "", "\"w.c\" ", "", false});
    const auto golden = rqtest::dataPath("modules", "modules", "input.xml");
    EXPECT_EQ(written(model), rqtest::readFile(golden));
    ModulesSection s;
    ASSERT_TRUE(readSection(s, golden.string()));
    EXPECT_EQ(s.modules(), model.modules());
    EXPECT_EQ(s.counts(), (std::vector<std::pair<std::string, std::size_t>>{{"modules", 2}}));
}

TEST(ModulesSection, EscapesEverythingButTheName) {
    ModulesSection s;
    s.modules().push_back({"a&b", "a&lt;b", "\"<'>&", "&amp;", true});
    EXPECT_EQ(written(s), rqtest::crlf("<?xml version=\"1.0\" ?>\n<modules>\n"
                                       "\t<module name=\"a&b\" defines=\"a&amp;lt;b\" "
                                       "srcfiles=\"&quot;&lt;&apos;&gt;&amp;\" "
                                       "params=\"&amp;amp;\" enable=\"1\"/>\n</modules>\n"));
    ModulesSection back; // the raw name keeps the file from reading back, as on the device
    EXPECT_FALSE(rqtest::readBytes(back, written(s)));
}

TEST(ModulesSection, OnlyExactlyOneEnables) {
    const std::pair<const char*, bool> enables[] = {
        {"enable=\"1\"", true},  {"enable=\"0\"", false},  {"enable=\"yes\"", false},
        {"enable=\"\"", false},  {"enable=\"01\"", false}, {"enable=\"1 \"", false},
        {"defines=\"x\"", false}};
    for (const auto& [attrs, enabled] : enables) {
        ModulesSection s;
        ASSERT_TRUE(rqtest::readBytes(s, std::string("<modules><module name=\"m\" ") + attrs +
                                             "/></modules>"));
        ASSERT_EQ(s.modules().size(), 1u);
        EXPECT_EQ(s.modules()[0].enable, enabled) << attrs;
    }
}

TEST(ModulesSection, BadFilesFail) {
    rqtest::expectLateOutcomesHeldBack<ModulesSection>("<modules>", "<module/><module name=\"m\"/>",
                                                       "</modules>");

    ModulesSection filled;
    filled.modules().push_back({"old", "", "", "", true});
    rqtest::expectBadFilesFail(filled, "<module/>", "<Modules>\r\n</Modules>\r\n",
                               "<modules><module name=\"a\"></modules>",
                               "<modules><module name=\"\xff\xfe\"/></modules>");
}

TEST(ModulesSection, LongValues) {
    ModulesSection s, back;
    std::string sources;
    for (int i = 0; sources.size() < (1u << 20); ++i)
        sources += "\"/very/long/path/" + std::to_string(i) + "&<>.c\" ";
    s.modules().push_back({"big", "-D'A'", sources, std::string(100000, '"'), true});
    ASSERT_TRUE(rqtest::readBytes(back, written(s)));
    EXPECT_EQ(back.modules(), s.modules());
}

TEST(ModulesSection, CheckReportsOnlyTheUnescapedName) {
    ModulesSection s;
    s.modules().push_back({"ok", "<&\"", "\"a.c\" ", "<", true});
    s.modules().push_back({"bad\"name", "", "", "", false});
    rqtest::FakeCheck ctx;
    s.check(ctx);
    ctx.expectFindings({"modules.xml: module \"bad\"name\" name: "});
}

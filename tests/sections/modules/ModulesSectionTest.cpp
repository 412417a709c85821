#include "sections/modules/ModulesSection.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace rq;

namespace {

bool readPath(ModulesSection& s, const std::string& path, std::string* error = nullptr) {
    rqtest::RecordingSink sink;
    ReadContext ctx{sink, nullptr, nullptr, {}};
    bool ok = s.read(path, ctx);
    if (error)
        *error = ctx.error;
    EXPECT_TRUE(sink.entries.empty());
    return ok;
}

bool readText(ModulesSection& s, const std::string& bytes, std::string* error = nullptr) {
    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("modules.xml"), bytes);
    return readPath(s, dir.file("modules.xml"), error);
}

std::string written(const ModulesSection& s) {
    std::string out;
    s.write(out);
    return out;
}

std::string oneModule(const std::string& attrs) {
    return "<modules><module name=\"m\" " + attrs + "/></modules>";
}

class NoData : public CheckContext {
public:
    bool hasRealtimeData(std::string_view, std::string_view) const override { return false; }
};

} // namespace

TEST(ModulesWriter, ModelBuiltInCodeGivesTheGoldenBytes) {
    ModulesSection s;
    s.modules().push_back({"pump", "-DPUMP=1 -DTAG=\"p\"", "\"%PRJ_DIR%/pump.c\" \"/src/a b.c\" ",
                           "a<b && c>d 'x'", true});
    s.modules().push_back({"\u6ce8\u6c34", "", "\"w.c\" ", "", false});
    EXPECT_EQ(written(s), rqtest::readFile(rqtest::dataPath("modules", "modules", "input.xml")));
}

TEST(ModulesWriter, EscapesDefinesSourcesAndParamsButNotTheName) {
    ModulesSection s;
    s.modules().push_back({"a&b", "a&lt;b", "\"<'>&", "&amp;", true});
    EXPECT_EQ(written(s), rqtest::crlf("<?xml version=\"1.0\" ?>\n<modules>\n"
                                       "\t<module name=\"a&b\" defines=\"a&amp;lt;b\" "
                                       "srcfiles=\"&quot;&lt;&apos;&gt;&amp;\" "
                                       "params=\"&amp;amp;\" enable=\"1\"/>\n</modules>\n"));
    // The raw name keeps the file from reading back, as on the device.
    ModulesSection back;
    EXPECT_FALSE(readText(back, written(s)));
}

TEST(ModulesGolden, EveryCaseReadsWritesAndReadsBack) {
    auto cases = rqtest::caseNames("modules");
    ASSERT_GE(cases.size(), 3u);
    for (const std::string& c : cases) {
        SCOPED_TRACE(c);
        auto input = rqtest::dataPath("modules", c, "input.xml");
        auto expectedPath = rqtest::dataPath("modules", c, "expected.xml");
        std::string expected =
            rqtest::readFile(std::filesystem::exists(expectedPath) ? expectedPath : input);
        ModulesSection s;
        ASSERT_TRUE(readPath(s, input.string()));
        std::string once = written(s);
        EXPECT_EQ(once, expected);
        ModulesSection again;
        ASSERT_TRUE(readText(again, once));
        EXPECT_EQ(again.modules(), s.modules());
    }
}

TEST(ModulesReader, FieldsDefaultsAndEnable) {
    ModulesSection s;
    ASSERT_TRUE(readPath(s, rqtest::dataPath("modules", "modules", "input.xml").string()));
    ASSERT_EQ(s.modules().size(), 2u);
    EXPECT_EQ(s.modules()[0].defines, "-DPUMP=1 -DTAG=\"p\"");
    EXPECT_EQ(s.modules()[0].srcfiles, "\"%PRJ_DIR%/pump.c\" \"/src/a b.c\" ");
    EXPECT_EQ(s.modules()[0].params, "a<b && c>d 'x'");
    EXPECT_EQ(s.counts(), (std::vector<std::pair<std::string, std::size_t>>{{"modules", 2}}));

    const std::pair<const char*, bool> enables[] = {
        {"enable=\"1\"", true},   {"enable=\"0\"", false},  {"enable=\"yes\"", false},
        {"enable=\"\"", false},   {"enable=\"01\"", false}, {"enable=\"1 \"", false},
        {"defines=\"x\"", false}, // absent
    };
    for (const auto& [attrs, enabled] : enables) {
        SCOPED_TRACE(attrs);
        ASSERT_TRUE(readText(s, oneModule(attrs)));
        ASSERT_EQ(s.modules().size(), 1u);
        EXPECT_EQ(s.modules()[0].enable, enabled);
    }
}

TEST(ModulesReader, BadInputFailsCleanly) {
    const std::string rows[] = {
        "<modules><module name=\"a\"></modules>",
        "<?xml version=\"1.0\" ?>\r\n<Modules>\r\n</Modules>\r\n",
        "",
        "<modules><module name=\"\xff\xfe\"/></modules>",
        "<modules><module name=\"a\" defines=\"a&b\"/></modules>",
    };
    for (const std::string& bytes : rows) {
        SCOPED_TRACE(bytes);
        ModulesSection s;
        s.modules().push_back({"old", "", "", "", true});
        std::string error;
        EXPECT_FALSE(readText(s, bytes, &error));
        EXPECT_FALSE(error.empty());
        EXPECT_TRUE(s.modules().empty());
    }
}

TEST(ModulesReader, LongValuesAndDeviceCodePage) {
    ModulesSection s;
    std::string sources;
    for (int i = 0; sources.size() < (1u << 20); ++i)
        sources += "\"/very/long/path/" + std::to_string(i) + "&<>.c\" ";
    s.modules().push_back({"big", "-D'A'", sources, std::string(100000, '"'), true});
    ModulesSection back;
    ASSERT_TRUE(readText(back, written(s)));
    EXPECT_EQ(back.modules(), s.modules());

    ASSERT_TRUE(readText(back, "<modules><module name=\"\xd6\xf7\" enable=\"1\"/></modules>"));
    ASSERT_EQ(back.modules().size(), 1u);
    EXPECT_EQ(back.modules()[0].name, "\u4e3b");
}

TEST(ModulesCheck, OnlyTheUnescapedNameIsReported) {
    ModulesSection s;
    s.modules().push_back({"ok", "<&\"", "\"a.c\" ", "<", true});
    s.modules().push_back({"bad\"name", "", "", "", false});
    NoData ctx;
    s.check(ctx);
    ASSERT_EQ(ctx.findings().size(), 1u) << ::testing::PrintToString(ctx.findings());
    EXPECT_EQ(ctx.findings()[0].rfind("modules.xml: module \"bad\"name\" name: ", 0), 0u);
}

#include "sections/fbd/FbdSection.h"
#include "sections/fbd/FbdClassCatalog.h"
#include "support/SectionTestKit.h"

#include <gtest/gtest.h>

using namespace rq;
using rqtest::written;

namespace {

struct ReadResult {
    bool ok;
    std::string error;
    std::vector<std::string> messages;
};

ReadResult readFile(FbdSection& s, const std::string& path) {
    rqtest::RecordingSink sink;
    ReadContext ctx{sink, nullptr, nullptr, {}};
    bool ok = s.read(path, ctx);
    return {ok, ctx.error, sink.texts()};
}

ReadResult readText(FbdSection& s, const std::string& bytes) {
    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("fbd.xml"), bytes);
    return readFile(s, dir.file("fbd.xml"));
}

} // namespace

TEST(FbdClassCatalog, LookupsAgreeForEveryClass) {
    auto classes = FbdClassCatalog::classes();
    ASSERT_EQ(classes.size(), 9u);
    std::string keywords;
    for (const FbdBlockClass& c : classes) {
        SCOPED_TRACE(c.keyword);
        keywords += std::string(c.keyword) + " ";
        EXPECT_EQ(FbdClassCatalog::findByDisplay(c.display), &c);
        EXPECT_EQ(FbdClassCatalog::findByKeyword(c.keyword), &c);
        EXPECT_EQ(FbdClassCatalog::paramName(c, -1), "");
        EXPECT_EQ(FbdClassCatalog::paramName(c, c.paramCount()), "");
        EXPECT_EQ(FbdClassCatalog::memberKeywordAt(c, c.memberKindCount()), "");
        for (int i = 0; i < c.memberKindCount(); ++i) {
            std::string key = FbdClassCatalog::memberKeywordAt(c, i);
            EXPECT_EQ(FbdClassCatalog::memberKeyword(c, FbdClassCatalog::memberDisplayAt(c, i)),
                      key);
            EXPECT_EQ(FbdClassCatalog::memberIndexOfKeyword(c, key), i);
        }
    }
    EXPECT_EQ(keywords, "arithm compare convert linear logic pid model diff integral ");
    EXPECT_EQ(FbdClassCatalog::findByKeyword("PID"), nullptr); // case-sensitive
    EXPECT_EQ(FbdClassCatalog::findByDisplay("pid"), nullptr);

    EXPECT_FALSE(FbdClassCatalog::findByKeyword("pid")->hasMemberKinds());
    const FbdBlockClass& compare = *FbdClassCatalog::findByDisplay("Compare");
    const FbdBlockClass& logic = *FbdClassCatalog::findByDisplay("Logic");
    EXPECT_EQ(FbdClassCatalog::memberKeyword(compare, ">="), "Compare_More_E");
    EXPECT_EQ(FbdClassCatalog::memberKeyword(logic, "Add"), "");
    EXPECT_EQ(FbdClassCatalog::memberIndexOfKeyword(logic, "Arithm_Add"), -1);
}

TEST(FbdWriter, ModelBuiltInCodeGivesTheGoldenBytes) {
    FbdSection s;
    s.blocks().push_back({"add1",
                          "arithm",
                          {"plant", "run"},
                          "Arithm_Add",
                          {{"IN1", "plant", "a"}, {"IN2", "plant", "b"}, {"OUT", "plant", "sum"}}});
    s.blocks().push_back({"gate", "logic", {}, "", {{"IN1", "plant", "x"}, {"IN2", "", ""}}});
    s.blocks().push_back({"\u6e29\u5ea6PID",
                          "pid",
                          {},
                          "",
                          {{"SP", "loop", "sp"}, {"PV", "loop", "pv"}, {"MV", "loop", "mv"}}});
    s.blocks().push_back({"cmp", "compare", {}, "Compare_Not_Equal", {}});
    EXPECT_EQ(written(s), rqtest::readFile(rqtest::dataPath("fbd", "blocks", "input.xml")));
}

TEST(FbdWriter, EnableAndTypeLines) {
    const std::string en = "\t\t<param name=\"EN\" dbname=\"system\" varname=\"Logic_True\" />\n";
    const std::pair<FbdItem, std::string> rows[] = {
        {{"b", "diff", {}, "", {}}, en},            // empty enabling reference
        {{"b", "diff", {"plant", ""}, "", {}}, en}, // only a database name
        {{"b", "diff", {"", "run"}, "", {}}, en},   // only a data name
        {{"b", "logic", {"p", "on"}, "", {}},
         "\t\t<param name=\"EN\" dbname=\"p\" varname=\"on\" />\n"},
        {{"b", "convert", {}, "Arithm_Add", {}}, en}, // member kind on a class without kinds
        {{"b", "lowpass", {}, "Fast", {}}, en},       // member kind of an unknown class
        {{"b", "logic", {}, "Logic_Not", {{"IN1", "p", "x"}}},
         en + "\t\t<param name=\"TYPE\" dbname=\"system\" varname=\"Logic_Not\" />\n"
              "\t\t<param name=\"IN1\" dbname=\"p\" varname=\"x\" />\n"},
        {{"a&b", "arithm", {}, "", {{"IN1", "d<", "\"v\""}}}, // written as they stand
         en + "\t\t<param name=\"IN1\" dbname=\"d<\" varname=\"\"v\"\" />\n"},
    };
    for (const auto& [item, lines] : rows) {
        FbdSection s;
        s.blocks().push_back(item);
        EXPECT_EQ(written(s), rqtest::crlf("<?xml version=\"1.0\" ?>\n<fblocks>\n\t<fbd name=\"" +
                                           item.name + "\" blockname=\"" + item.blockname +
                                           "\" >\n" + lines + "\t</fbd>\n</fblocks>\n"))
            << item.blockname << " " << item.memberKind;
    }
}

TEST(FbdGolden, EveryCaseReadsWritesAndReadsBack) {
    for (const std::string& c : rqtest::caseNames("fbd")) {
        SCOPED_TRACE(c);
        rqtest::expectGolden<FbdSection>("fbd", c);
    }
}

TEST(FbdReader, WhatTheWriterCannotShow) {
    FbdSection s;
    auto r = readFile(s, rqtest::dataPath("fbd", "blocks", "input.xml").string());
    ASSERT_TRUE(r.ok) << r.error;
    ASSERT_EQ(s.blocks().size(), 4u);
    EXPECT_TRUE(s.blocks()[1].enable.empty()); // system/Logic_True reads as no reference
    EXPECT_EQ(s.counts(),
              (std::vector<std::pair<std::string, std::size_t>>{{"blocks", 4}, {"params", 8}}));

    FbdSection drops;
    ASSERT_TRUE(readFile(drops, rqtest::dataPath("fbd", "reader_drops", "input.xml").string()).ok);
    ASSERT_EQ(drops.blocks().size(), 4u);
    EXPECT_EQ(drops.blocks()[0].memberKind, ""); // TYPE of a class without member kinds
    EXPECT_EQ(drops.blocks()[0].params.at(0).varname, "Arithm_Add"); // ... stays a binding
    EXPECT_EQ(drops.blocks()[1].enable, (DataRef{"plant", "first"}));
    EXPECT_EQ(drops.blocks()[1].memberKind, "Logic_Or");
    EXPECT_EQ(drops.blocks()[2].blockname, "lowpass"); // unknown class kept as written
    EXPECT_EQ(drops.blocks()[3].enable, (DataRef{"plant", ""}));
}

TEST(FbdReader, ExtraEnableAndTypeLinesSurviveAResave) {
    // Only the first "EN" and the first keyword "TYPE" of a class with member kinds
    // are the writer's own lines; every other one is a binding kept in its place.
    const std::string file =
        rqtest::crlf("<?xml version=\"1.0\" ?>\n<fblocks>\n"
                     "\t<fbd name=\"a\" blockname=\"arithm\" >\n"
                     "\t\t<param name=\"EN\" dbname=\"p\" varname=\"on\" />\n"
                     "\t\t<param name=\"TYPE\" dbname=\"system\" varname=\"Arithm_Add\" />\n"
                     "\t\t<param name=\"EN\" dbname=\"p\" varname=\"again\" />\n"
                     "\t\t<param name=\"TYPE\" dbname=\"system\" varname=\"Arithm_Sub\" />\n"
                     "\t\t<param name=\"IN1\" dbname=\"p\" varname=\"x\" />\n"
                     "\t</fbd>\n"
                     "\t<fbd name=\"c\" blockname=\"convert\" >\n"
                     "\t\t<param name=\"EN\" dbname=\"system\" varname=\"Logic_True\" />\n"
                     "\t\t<param name=\"EN\" dbname=\"system\" varname=\"Logic_True\" />\n"
                     "\t\t<param name=\"TYPE\" dbname=\"system\" varname=\"Arithm_Add\" />\n"
                     "\t</fbd>\n"
                     "\t<fbd name=\"u\" blockname=\"lowpass\" >\n"
                     "\t\t<param name=\"EN\" dbname=\"system\" varname=\"Logic_True\" />\n"
                     "\t\t<param name=\"TYPE\" dbname=\"system\" varname=\"Fast\" />\n"
                     "\t</fbd>\n"
                     "\t<fbd name=\"l\" blockname=\"logic\" >\n"
                     "\t\t<param name=\"EN\" dbname=\"system\" varname=\"Logic_True\" />\n"
                     "\t\t<param name=\"TYPE\" dbname=\"system\" varname=\"\" />\n"
                     "\t</fbd>\n</fblocks>\n");
    FbdSection s;
    ASSERT_TRUE(readText(s, file).ok);
    EXPECT_EQ(written(s), file);
    ASSERT_EQ(s.blocks().size(), 4u);
    EXPECT_EQ(s.blocks()[0].enable, (DataRef{"p", "on"}));
    EXPECT_EQ(s.blocks()[0].memberKind, "Arithm_Add");
    EXPECT_EQ(s.blocks()[0].params.size(), 3u);
    EXPECT_TRUE(s.blocks()[1].enable.empty());
    EXPECT_EQ(s.blocks()[1].params.size(), 2u);
    EXPECT_EQ(s.blocks()[3].memberKind, "");
}

TEST(FbdReader, DuplicateBlockNameIsRefusedWithTheEditorsMessage) {
    FbdSection s;
    s.blocks().push_back({"stale", "diff", {}, "", {}});
    auto r = readText(s, "<fblocks>"
                         "<fbd name=\"a\" blockname=\"diff\"><param name=\"IN\" dbname=\"d\" "
                         "varname=\"first\"/></fbd>"
                         "<fbd name=\"A\" blockname=\"diff\"/>"
                         "<fbd name=\"a\" blockname=\"pid\"><param name=\"SP\" dbname=\"d\" "
                         "varname=\"second\"/></fbd>"
                         "<fbd name=\"a\" blockname=\"model\"/>"
                         "</fblocks>");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.messages, (std::vector<std::string>(2, "The Function block already exist!")));
    ASSERT_EQ(s.blocks().size(), 2u); // the old content is replaced
    EXPECT_EQ(s.blocks()[0].blockname, "diff");
    EXPECT_EQ(s.blocks()[0].params.at(0).varname, "first");
    EXPECT_EQ(s.blocks()[1].name, "A"); // names compare case-sensitively
}

TEST(FbdSection, AddRefusesADuplicateWithTheMessage) {
    FbdSection s;
    rqtest::RecordingSink sink;
    EXPECT_TRUE(s.add({"b", "diff", {}, "", {}}, sink));
    EXPECT_FALSE(s.add({"b", "pid", {}, "", {}}, sink));
    EXPECT_TRUE(s.add({"B", "pid", {}, "", {}}, sink));
    EXPECT_EQ(sink.texts(), std::vector<std::string>{"The Function block already exist!"});
    ASSERT_EQ(sink.entries.size(), 1u);
    EXPECT_EQ(sink.entries[0].icon, MessageIcon::Stop);
    EXPECT_EQ(s.blocks().size(), 2u);
    EXPECT_EQ(s.blocks()[0].blockname, "diff");
}

TEST(FbdReader, BadInputFailsCleanly) {
    rqtest::expectLateOutcomesHeldBack<FbdSection>(
        "<fblocks>", "<fbd name=\"a\" blockname=\"logic\"><param/></fbd><fbd name=\"a\"/>",
        "</fblocks>");

    FbdSection filled;
    filled.blocks().push_back({"old", "diff", {}, "", {}});
    rqtest::expectBadFilesFail(
        filled, "<fbd/>", "<FBLOCKS>\r\n</FBLOCKS>\r\n", "<fblocks><fbd name=a/></fblocks>",
        "<fblocks><fbd name=\"\xff\xfe\xff\" blockname=\"diff\"/></fblocks>");
}

TEST(FbdReader, VeryLongValues) {
    FbdSection s;
    std::string longName(1 << 20, 'n');
    s.blocks().push_back({longName, "diff", {"db", std::string(100000, 'v')}, "", {}});
    FbdSection back;
    ASSERT_TRUE(readText(back, written(s)).ok);
    ASSERT_EQ(back.blocks().size(), 1u);
    EXPECT_EQ(back.blocks()[0].name, longName);
    EXPECT_EQ(back.blocks()[0].enable.dataname.size(), 100000u);
}

TEST(FbdCheck, ReportsRawValuesMissingDataAndDuplicates) {
    FbdSection s;
    s.blocks().push_back(
        {"ok", "arithm", {"plant", "run"}, "Arithm_Add", {{"IN1", "plant", "a"}, {"IN2", "", ""}}});
    s.blocks().push_back({"b<1", "diff", {}, "", {{"IN", "plant", "gone"}}});
    s.blocks().push_back({"ok", "diff", {"plant", "nope"}, "", {}});
    rqtest::FakeCheck ctx{{"plant", "run"}, {"plant", "a"}};
    s.check(ctx);
    const auto& f = ctx.findings();
    ASSERT_EQ(f.size(), 4u) << ::testing::PrintToString(f);
    EXPECT_EQ(f[0].rfind("fbd.xml: fbd \"b<1\" name: ", 0), 0u) << f[0];
    EXPECT_NE(f[1].find("\"plant.gone\""), std::string::npos) << f[1];
    EXPECT_EQ(f[2], "fbd.xml: duplicate block \"ok\"");
    EXPECT_NE(f[3].find("\"plant.nope\""), std::string::npos) << f[3];
}

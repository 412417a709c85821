#include "sections/param/ParamSection.h"
#include "support/SectionTestKit.h"

using namespace rq;
using rqtest::written;

namespace {

TEST(ParamFile, GoldenFiles) {
    const auto cases = rqtest::caseNames("param");
    EXPECT_EQ(cases.size(), 5u);
    for (const auto& c : cases) {
        SCOPED_TRACE(c);
        // "drops" ends with a value read from entities and written back raw.
        rqtest::expectGolden<ParamSection>("param", c, c != "drops");
    }
}

// Up to the parser's limit a value comes back whole; beyond it the read fails as a
// whole: never a cut value, never a half-filled list.
TEST(ParamFile, LongValuesAreWholeOrFailTheRead) {
    for (std::size_t length : {std::size_t(1) << 20, std::size_t(11'000'000)}) {
        ParamSection s;
        s.items = {{"db", "first", "1"}, {"db", "long", std::string(length, 'h')}};
        rqtest::TempDir dir;
        rqtest::writeFile(dir.file("param.xml"), written(s));
        ParamSection again;
        std::string error;
        if (rqtest::readSection(again, dir.file("param.xml"), &error)) {
            ASSERT_EQ(again.items.size(), 2u);
            EXPECT_EQ(again.items[1].value.size(), length);
        } else {
            EXPECT_GT(length, 10'000'000u);
            EXPECT_FALSE(error.empty());
            EXPECT_TRUE(again.items.empty());
        }
    }
}

TEST(ParamFile, BadFilesFailCleanly) {
    rqtest::expectLateOutcomesHeldBack<ParamSection>(
        "<params>", "<data/><data dbname=\"d\"/><data dbname=\"d\" dataname=\"x\"/>", "</params>");

    ParamSection filled;
    filled.items.push_back({"old", "d", "1"});
    rqtest::expectBadFilesFail(filled, "<param/>", "<Params/>",
                               "<params><data dbname=\"a\" dataname=\"b\"></params>",
                               "<params><data dbname=\"\xff\xfe\" dataname=\"b\"/></params>");
}

TEST(ParamCheck, ReportsRepeatedPairsUnknownDataAndRawSpecials) {
    ParamSection s;
    s.items = {
        {"plant", "a", "1"},      {"plant", "b", "x<y"}, {"plant", "a", "2"},
        {"plant.a", "", "3"}, // another pair, although it joins to the same text
        {"plant", "missing", ""},
    };
    rqtest::FakeCheck ctx{{"plant", "a"}, {"plant", "b"}, {"plant.a", ""}};
    s.check(ctx);
    ctx.expectFindings({
        "param.xml: data \"plant.b\" value: ",
        "param.xml: duplicate data \"plant.a\"",
        "param.xml: data \"plant.missing\": no database holds the real-time data",
    });
}

} // namespace

#include "sections/hmiwindow/HmiWindowSection.h"
#include "support/SectionTestKit.h"

using namespace rq;
using rqtest::written;

namespace {

TEST(HmiWindowFile, GoldenFiles) {
    const auto cases = rqtest::caseNames("hmiwindow");
    EXPECT_EQ(cases.size(), 4u);
    for (const auto& c : cases) {
        SCOPED_TRACE(c);
        rqtest::expectGolden<HmiWindowSection>("hmiwindow", c);
    }
}

TEST(HmiWindowFile, AnyNonZeroStartupFlagIsWrittenAsOne) {
    HmiWindowSection s;
    s.windows = {{"a", "A", "a.xml", 5, "0"}, {"b", "", "b.xml", 0, ""}};
    EXPECT_EQ(written(s), rqtest::crlf("<?xml version=\"1.0\" ?>\n<hmiwindow>\n"
                                       "\t<window name=\"a\" caption=\"A\" filename=\"a.xml\" "
                                       "display_on_startup=\"1\" enable=\"0\" />\n"
                                       "\t<window name=\"b\" caption=\"\" filename=\"b.xml\" "
                                       "display_on_startup=\"0\" enable=\"\" />\n"
                                       "</hmiwindow>\n"));
    EXPECT_EQ(s.findWindow("b"), 1);
    EXPECT_EQ(s.findWindow("B"), -1);
}

TEST(HmiWindowFile, BadFilesFailCleanly) {
    rqtest::expectLateOutcomesHeldBack<HmiWindowSection>(
        "<hmiwindow>", "<window name=\"a\"/><window/>", "</hmiwindow>");

    HmiWindowSection filled;
    filled.windows.push_back({"old", "", "old.xml", 0, "1"});
    rqtest::expectBadFilesFail(filled, "<windows/>", "<HmiWindow/>",
                               "<hmiwindow><window name=\"a\"></hmiwindow>",
                               "<hmiwindow><window name=\"\xff\xfe\"/></hmiwindow>");
}

TEST(HmiWindowCheck, ReportsRepeatedNamesReservedFilesAndRawSpecials) {
    HmiWindowSection s;
    s.windows = {
        {"main", "Main", "main.xml", 1, "1"},   {"Main", "case differs", "main2.xml", 0, "1"},
        {"main", "again", "main3.xml", 0, "1"}, {"r", "R&D", "rtdb.xml", 0, "1"},
        {"p", "", "rqrun.xml", 0, "1"}, // the project file is not reserved
    };
    rqtest::FakeCheck ctx;
    s.check(ctx);
    ctx.expectFindings({
        "hmiwindow.xml: duplicate window \"main\"",
        "hmiwindow.xml: window \"r\" caption: ",
        "hmiwindow.xml: window \"r\" filename \"rtdb.xml\" is reserved",
    });
}

} // namespace

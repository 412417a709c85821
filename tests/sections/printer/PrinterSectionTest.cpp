#include "sections/printer/PrinterSection.h"
#include "sections/printer/PrinterCatalog.h"
#include "support/SectionTestKit.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace rq;
using rqtest::readSection;
using rqtest::written;

TEST(PrinterSection, GoldenCasesAndTheNewProjectDefaults) {
    for (const char* c : {"custom", "defaults", "reader_drops", "odd_nodes"}) {
        SCOPED_TRACE(c);
        rqtest::expectGolden<PrinterSection>("printer", c);
    }
    PrinterSection s;
    s.config().scaling = "bad"; // clear() must bring back every default
    s.clear();
    EXPECT_EQ(written(s), rqtest::readFile(rqtest::dataPath("printer", "defaults", "input.xml")));
}

TEST(PrinterSection, KeepsItsValuesWhenTheFileFailsOrHasNoConfig) {
    rqtest::expectLateOutcomesHeldBack<PrinterSection>(
        "<printer>", "<config paper=\"A4\"/><config paper=\"B5\"/>", "</printer>");

    const PrinterConfig before{"keep", "me", "as", "I", "am", "!"};
    const std::pair<std::string, bool> rows[] = {
        {"<printer><other printer_name=\"x\"/></printer>", true},
        {"<printers><config printer_name=\"x\"/></printers>", false},
        {"<printer><config printer_name=\"x\"></printer>", false},
        {"", false},
        {"<printer><config paper=\"\xff\xff\"/></printer>", false},
    };
    for (const auto& [bytes, ok] : rows) {
        PrinterSection s;
        s.config() = before;
        std::string error;
        EXPECT_EQ(rqtest::readBytes(s, bytes, &error), ok) << bytes;
        EXPECT_EQ(error.empty(), ok) << bytes;
        EXPECT_EQ(s.config(), before) << bytes;
    }
}

TEST(PrinterSection, LongValueAndCheck) {
    PrinterSection s, back;
    s.config().paper = std::string(1 << 20, 'p');
    ASSERT_TRUE(rqtest::readBytes(back, written(s)));
    EXPECT_EQ(back.config(), s.config());

    rqtest::FakeCheck clean, ctx;
    s.check(clean);
    clean.expectFindings({});
    s.config().leftMargin = "1&2";
    s.check(ctx);
    ctx.expectFindings({"printer.xml: config left_margin: "});
}

TEST(PrinterCatalog, ListsInFileOrderOnlyFromTheirOwnElements) {
    PrinterCatalog cat, gb;
    std::string error;
    ASSERT_TRUE(cat.load(rqtest::dataPath("printer", "catalog", "printerconf.xml"), &error))
        << error;
    ASSERT_EQ(cat.printers.size(), 4u);
    EXPECT_EQ(cat.printers[1].name, "Two");
    EXPECT_EQ(cat.printers[3].driver, "d3"); // a second <printers> adds to the list
    ASSERT_EQ(cat.papers.size(), 2u);
    EXPECT_EQ(cat.papers[0].description, "first paper");
    EXPECT_EQ(cat.papers[1].description, "");
    ASSERT_EQ(cat.resolutions.size(), 1u);
    EXPECT_EQ(cat.indexOfDriver("d1"), 0);   // first match
    EXPECT_EQ(cat.indexOfDriver("One"), -1); // by driver, not by name
    EXPECT_EQ(cat.indexOfDriver("skipped"), -1);
    EXPECT_EQ(cat.indexOfResolution("r1"), 0);
    EXPECT_EQ(cat.indexOfPaper("P2"), 1);
    EXPECT_EQ(cat.indexOfPaper("p2"), -1);
    ASSERT_TRUE(gb.load(rqtest::dataPath("printer", "catalog", "gb2312.xml"), &error)) << error;
    ASSERT_EQ(gb.papers.size(), 1u);
    EXPECT_EQ(gb.papers[0].description, "\u7eb8\u5f20");
}

TEST(PrinterCatalog, MissingOrBadFileGivesEmptyLists) {
    rqtest::TempDir dir;
    const char* rows[] = {nullptr, "<printers><printer name=\"a\" driver=\"b\"/></printers>",
                          "<printerconf><printers><printer name=\"a\"></printerconf>"};
    for (const char* bytes : rows) {
        const std::string path = dir.file(bytes ? std::to_string(std::strlen(bytes)) : "none");
        if (bytes)
            rqtest::writeFile(path, bytes);
        PrinterCatalog cat;
        cat.printers.push_back({"old", "old"});
        std::string error;
        EXPECT_FALSE(cat.load(path, &error));
        EXPECT_FALSE(error.empty());
        EXPECT_TRUE(cat.printers.empty() && cat.resolutions.empty() && cat.papers.empty());
    }
}

TEST(PrinterCatalog, DeliveredCatalogOffersTheNewProjectsChoices) {
    PrinterCatalog cat;
    std::string error;
    ASSERT_TRUE(cat.loadFromProgramDirectory(&error)) << error;
    const PrinterConfig fresh;
    EXPECT_GE(cat.indexOfDriver(fresh.printerName), 0);
    EXPECT_GE(cat.indexOfResolution(fresh.resolution), 0);
    EXPECT_GE(cat.indexOfPaper(fresh.paper), 0);
    EXPECT_GE(cat.printers.size(), 2u);
    for (const auto& p : cat.printers)
        EXPECT_FALSE(p.name.empty() || p.driver.empty());
    for (const auto& r : cat.resolutions)
        EXPECT_FALSE(r.name.empty() || r.description.empty());
    for (const auto& p : cat.papers)
        EXPECT_FALSE(p.name.empty() || p.description.empty());
}

#include "sections/printer/PrinterSection.h"
#include "core/FileUtil.h"
#include "sections/printer/PrinterCatalog.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace rq;

namespace {

bool readPath(PrinterSection& s, const std::string& path, std::string* error = nullptr) {
    rqtest::RecordingSink sink;
    ReadContext ctx{sink, nullptr, nullptr, {}};
    bool ok = s.read(path, ctx);
    if (error)
        *error = ctx.error;
    EXPECT_TRUE(sink.entries.empty());
    return ok;
}

bool readText(PrinterSection& s, const std::string& bytes, std::string* error = nullptr) {
    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("printer.xml"), bytes);
    return readPath(s, dir.file("printer.xml"), error);
}

std::string written(const PrinterSection& s) {
    std::string out;
    s.write(out);
    return out;
}

class NoData : public CheckContext {
public:
    bool hasRealtimeData(std::string_view, std::string_view) const override { return false; }
};

} // namespace

TEST(PrinterWriter, NewProjectAndFieldOrder) {
    PrinterSection s;
    s.config().scaling = "bad"; // clear() must bring back every default
    s.clear();
    EXPECT_EQ(written(s), rqtest::crlf("<?xml version=\"1.0\" ?>\n<printer>\n"
                                       "\t<config printer_name=\"escp2-me1\" resolution=\"360sw\" "
                                       "paper=\"A4\" top_margin=\"1.0\" left_margin=\"1.0\" "
                                       "scaling=\"1.0\"/>\n</printer>\n"));
    s.config() = {"P", "R", "S", "T", "L", "M"};
    EXPECT_EQ(written(s), rqtest::crlf("<?xml version=\"1.0\" ?>\n<printer>\n"
                                       "\t<config printer_name=\"P\" resolution=\"R\" paper=\"S\" "
                                       "top_margin=\"T\" left_margin=\"L\" scaling=\"M\"/>\n"
                                       "</printer>\n"));
}

TEST(PrinterGolden, EveryCaseReadsWritesAndReadsBack) {
    int seen = 0;
    for (const std::string& c : rqtest::caseNames("printer")) {
        auto input = rqtest::dataPath("printer", c, "input.xml");
        if (!std::filesystem::exists(input))
            continue; // catalog files
        SCOPED_TRACE(c);
        ++seen;
        auto expectedPath = rqtest::dataPath("printer", c, "expected.xml");
        std::string expected =
            rqtest::readFile(std::filesystem::exists(expectedPath) ? expectedPath : input);
        PrinterSection s;
        s.config() = {"x", "x", "x", "x", "x", "x"};
        ASSERT_TRUE(readPath(s, input.string()));
        std::string once = written(s);
        EXPECT_EQ(once, expected);
        PrinterSection again;
        ASSERT_TRUE(readText(again, once));
        EXPECT_EQ(again.config(), s.config());
    }
    EXPECT_GE(seen, 3);
}

TEST(PrinterReader, KeepsItsValuesWhenTheFileFailsOrHasNoConfig) {
    const PrinterConfig before{"keep", "me", "as", "I", "am", "!"};
    struct Row {
        const char* what;
        std::string bytes;
        bool ok;
    };
    const Row rows[] = {
        {"no config element", "<printer><other printer_name=\"x\"/></printer>", true},
        {"wrong root", "<printers><config printer_name=\"x\"/></printers>", false},
        {"not well-formed", "<printer><config printer_name=\"x\"></printer>", false},
        {"empty file", "", false},
        {"bytes of no code page", "<printer><config paper=\"\xff\xff\"/></printer>", false},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.what);
        PrinterSection s;
        s.config() = before;
        std::string error;
        EXPECT_EQ(readText(s, r.bytes, &error), r.ok);
        EXPECT_EQ(error.empty(), r.ok);
        EXPECT_EQ(s.config(), before);
    }
}

TEST(PrinterReader, LongValueAndDeviceCodePage) {
    PrinterSection s;
    s.config().paper = std::string(1 << 20, 'p');
    PrinterSection back;
    ASSERT_TRUE(readText(back, written(s)));
    EXPECT_EQ(back.config(), s.config());

    ASSERT_TRUE(readText(back, "<printer><config paper=\"\xd5\xc5\"/></printer>"));
    EXPECT_EQ(back.config().paper, "\u5f20");
    EXPECT_EQ(back.config().printerName, "");
}

TEST(PrinterCheck, ReportsRawValues) {
    PrinterSection s;
    NoData clean;
    s.check(clean);
    EXPECT_TRUE(clean.findings().empty());
    s.config().leftMargin = "1&2";
    NoData ctx;
    s.check(ctx);
    ASSERT_EQ(ctx.findings().size(), 1u);
    EXPECT_EQ(ctx.findings()[0].rfind("printer.xml: config left_margin: ", 0), 0u);
}

// ---- printer catalog ------------------------------------------------------------

TEST(PrinterCatalog, ListsInFileOrderOnlyFromTheirOwnElements) {
    PrinterCatalog cat;
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

    PrinterCatalog gb;
    ASSERT_TRUE(gb.load(rqtest::dataPath("printer", "catalog", "gb2312.xml"), &error)) << error;
    ASSERT_EQ(gb.papers.size(), 1u);
    EXPECT_EQ(gb.papers[0].description, "\u7eb8\u5f20");
}

TEST(PrinterCatalog, MissingOrBadFileGivesEmptyLists) {
    rqtest::TempDir dir;
    const std::pair<const char*, const char*> rows[] = {
        {"missing", nullptr},
        {"wrong root", "<printers><printer name=\"a\" driver=\"b\"/></printers>"},
        {"not well-formed", "<printerconf><printers><printer name=\"a\"></printerconf>"},
    };
    for (const auto& [what, bytes] : rows) {
        SCOPED_TRACE(what);
        std::string path = dir.file(std::string(what) + ".xml");
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
    ASSERT_FALSE(rqtest::programDir().empty());
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

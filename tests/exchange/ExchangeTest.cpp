// The CSV codec, and the round trip of every table-like section of the example
// project through export and import: unchanged, changed, added, refused and
// removed rows, the bytes written and the undo of the import.

#include "core/Csv.h"
#include "core/FileUtil.h"
#include "exchange/ProjectExchange.h"
#include "exchange/TableMerge.h"
#include "project/Project.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

using namespace rq;
namespace fs = std::filesystem;

TEST(Csv, ParsesQuotesLineEndsAndRefusesMalformedText) {
    std::vector<CsvRecord> r;
    std::string error;
    ASSERT_TRUE(parseCsv("\xEF\xBB\xBF"
                         "a,b\r\n\"x,\"\"y\"\"\",\"two\r\nlines\"\n\n,last",
                         &r, &error))
        << error;
    ASSERT_EQ(r.size(), 3u);
    EXPECT_EQ(r[1].fields, (CsvRow{"x,\"y\"", "two\r\nlines"}));
    EXPECT_EQ(r[2].line, 5u); // after the record of two lines and a blank line
    EXPECT_EQ(r[2].fields, (CsvRow{"", "last"}));

    const struct {
        const char* text;
        const char* error;
    } bad[] = {
        {"a,b\nx\"y,z\n", "line 2: a quote inside a field that does not start with one"},
        {"a\n\"x\"y\n", "line 2: text after the closing quote of a field"},
        {"a\n\"open\nstill", "line 2: a quoted field does not end"},
        {"a\n\xC3\x28\n", "line 2: the text is not UTF-8"},
    };
    for (const auto& b : bad) {
        EXPECT_FALSE(parseCsv(b.text, &r, &error)) << b.text;
        EXPECT_EQ(error, b.error);
        EXPECT_TRUE(r.empty());
    }

    const CsvRow tricky = {"", "plain", "a,b", "say \"hi\"", "cr\rlf\n", " blank "};
    std::string out;
    appendCsvRecord(out, tricky);
    EXPECT_EQ(out, ",plain,\"a,b\",\"say \"\"hi\"\"\",\"cr\rlf\n\", blank \r\n");
    ASSERT_TRUE(parseCsv(out, &r, &error));
    EXPECT_EQ(r.at(0).fields, tricky);
}

namespace {

struct Demo {
    rqtest::TempDir dir;
    Catalogs catalogs;
    rqtest::RecordingSink sink;
    Project project{catalogs, sink};
    std::string path;
    Demo() {
        fs::copy(fs::path(std::getenv("RQ_SOURCE_DIR")) / "data/examples/demo", dir.path() / "demo",
                 fs::copy_options::recursive);
        catalogs.loadFrom(rqtest::programDir());
        path = dir.file("demo");
        std::string error;
        EXPECT_TRUE(project.doc.open(path, &error)) << error;
    }
    std::string file(const std::string& section) {
        return rqtest::readFile(fs::path(path) / (section + ".xml"));
    }
};

// Replaces the first `from` of the text by `to`.
std::string patched(std::string text, const std::string& from, const std::string& to) {
    std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

} // namespace

TEST(SectionTables, DemoRoundTripsAndMergesLikeTheDialogs) {
    const struct {
        const char* section;
        std::size_t rows;
        const char *from, *to; // one change in the export ("" for none)
        const char* added;     // a row to add
        const char* refused;   // a row the dialog refuses, and its message
        const char* message;
    } cases[] = {
        {"rtdb", 21, "Tank1_Temp,float,4,20,", "Tank1_Temp,float,4,25,",
         "plant,pumps,Pump2_Run,bit,1,0,,pump 2 running", "hmi,,Title,string,,x,,",
         "data length error!"},
        {"rtdb", 21, "", "", "hmi,,Alias2,,,,Page,", "plant,,tanks,float,4,0,,",
         "The data already exist!"},
        {"hmidb", 7, "Plant_Status,1000", "Plant_Status,2000", "memory/trend,scale,,,,float,4,1",
         "io,speed,plant,Pump1_Speed,0,,,", "period value error!"},
        {"device", 7, "40001", "40005",
         "bus1,tankio,coil,00011,plant.Tank2_High,,Circularly reading,0,1",
         "bus1,tankio,,00012,plant.Flags,,read,0,1", "Please choose data type!"},
        {"param", 2, "Page,1", "Page,2", "plant,Pump1_Speed,100", ",,5", "Please choose data!"},
        {"datalog", 2, "", "", "levels,plant,Tank1_Temp", "levels,plant,Tank1_Level",
         "The data already exist!"},
        {"history", 4, "level 1", "level one", "archive,plant,Tank2_Level,change,,0.1,,,level 2",
         "trend,plant,Pump1_Run,vartrigger,,,,,", "Please input trigger variable name!"},
        {"alarm", 3, "Tank1_High,2", "Tank1_High,3",
         "pumps,plant,Pump1_Speed,1,,,speed high,1500,speed ok,,,,,,,,,,,,,,,,,,",
         "pumps,plant,\"say \"\"x\"\"\",1,,,,,,,,,,,,,,,,,,,,,,,", nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.section);
        Demo demo;
        const int index = tableSectionIndex(c.section);
        const std::string original = demo.file(c.section);
        const std::string exported = exportTable(*makeSectionTable(demo.project, c.section));

        // The export imported back changes nothing.
        ImportResult same = importSection(demo.project, c.section, exported, {});
        ASSERT_TRUE(same.merge.ok()) << same.merge.error;
        EXPECT_EQ(same.merge.unchanged, c.rows);
        EXPECT_EQ(same.merge.added + same.merge.changed + same.merge.refused.size(), 0u);
        EXPECT_FALSE(same.written);

        // A change, a new row and a refused one: nothing is written until the
        // refused row is skipped.
        std::string edited = *c.from ? patched(exported, c.from, c.to) : exported;
        edited += std::string(c.added) + "\r\n" + c.refused + "\r\n";
        const std::size_t refusedLine = 3 + c.rows;
        ImportResult refused = importSection(demo.project, c.section, edited, {});
        ASSERT_EQ(refused.merge.refused.size(), 1u);
        EXPECT_EQ(refused.merge.refused[0].line, refusedLine);
        if (c.message)
            EXPECT_EQ(refused.merge.refused[0].reason, c.message);
        else
            EXPECT_NE(refused.merge.refused[0].reason.find("'\"'"), std::string::npos)
                << refused.merge.refused[0].reason;
        EXPECT_FALSE(refused.written);
        EXPECT_EQ(demo.file(c.section), original);

        ImportOptions skip;
        skip.skipInvalid = true;
        ImportResult applied = importSection(demo.project, c.section, edited, skip);
        ASSERT_TRUE(applied.error.empty()) << applied.error;
        EXPECT_TRUE(applied.written);
        const std::string written = demo.project.doc.sectionText(index);
        EXPECT_EQ(applied.merge.added, 1u);
        EXPECT_EQ(applied.merge.changed, *c.from ? 1u : 0u);
        // Unchanged rows keep their place, the new row comes last in its list.
        const std::string again = exportTable(*makeSectionTable(demo.project, c.section));
        EXPECT_EQ(patched(again, std::string(c.added) + "\r\n", ""),
                  *c.from ? patched(exported, c.from, c.to) : exported);
        EXPECT_EQ(importSection(demo.project, c.section, again, {}).merge.unchanged, c.rows + 1);

        // Undo gives the file's bytes back, redo the written ones, as often as
        // asked; --replace removes what the file lacks.
        for (int round = 0; round < 2; ++round) {
            applied.merge.step->undo();
            EXPECT_EQ(demo.project.doc.sectionText(index), original);
            applied.merge.step->redo();
            EXPECT_EQ(demo.project.doc.sectionText(index), written);
        }
        applied.merge.step->undo();
        ImportOptions replace;
        replace.replace = true;
        replace.dryRun = true;
        std::string lacking = exported;
        lacking.erase(lacking.find("\r\n") + 2,
                      lacking.find("\r\n", lacking.find("\r\n") + 2) - lacking.find("\r\n"));
        EXPECT_EQ(importSection(demo.project, c.section, lacking, replace).merge.removed, 1u);
    }
}

TEST(SectionTables, RefusesWrongHeadersAndRowsThatNameNoList) {
    Demo demo;
    const struct {
        const char* section;
        const char* text;
        const char* error; // of the file, or of its only row
    } cases[] = {
        {"param", "database,data name\r\n", "line 1: column \"initial value\" is missing"},
        {"param", "database,data name,value\r\n",
         "line 1: unknown column \"value\" (the columns are database,data name,initial value)"},
        {"param", "", "the file has no header line (database,data name,initial value)"},
        // A new row naming the data of a row added before it.
        {"param",
         "database,data name,initial value\r\nplant,Tank2_Level,1\r\nplant,Tank2_Level,2\r\n",
         "The data already exist!"},
        {"param", "initial value,database,data name\r\n5,plant\r\n",
         "2 fields where the header has 3"},
        // A fault of the file comes first, wherever it is, and nothing is merged.
        {"param", "database,data name,value\r\nx\"y,1,2\r\n",
         "line 2: a quote inside a field that does not start with one"},
        {"param", "database,data name,initial value\r\nplant,Pump1_Speed,7\r\n\"open",
         "line 3: a quoted field does not end"},
        {"rtdb",
         "database,group path,name,type,length,initial value,alias,description\r\n"
         "plant,tanks/tank3,X,float,4,0,,\r\n",
         "there is no data group \"tanks/tank3\" in database \"plant\""},
        {"device",
         "link,device,data type,data address,real-time data,status variable,mode,group,"
         "enable\r\nbus1,tankio,coil,1,plant.Flags,,sometimes,0,1\r\n",
         "unknown mode \"sometimes\""},
        {"hmidb",
         "group,name,database,data name,refresh period,type,length,initial value\r\n"
         "io/none,x,plant,Page,500,,,\r\n",
         "there is no data group \"io/none\""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        ImportResult r = importSection(demo.project, c.section, c.text, {});
        const std::string got =
            r.merge.ok() && !r.merge.refused.empty() ? r.merge.refused[0].reason : r.merge.error;
        EXPECT_EQ(got, c.error);
        EXPECT_FALSE(r.written);
        if (!r.merge.ok()) {
            EXPECT_FALSE(r.merge.changes());
        }
    }
}

namespace {

// A table of (key, value) rows whose keys may repeat; records what the merge
// hands to take() and drop().
class PairTable : public TableExchange {
public:
    explicit PairTable(std::vector<CsvRow> rows) : rows_(std::move(rows)) {}
    std::vector<std::string> columns() const override { return {"key", "value"}; }
    std::vector<std::size_t> keyColumns() const override { return {0}; }
    std::vector<CsvRow> rows() override { return rows_; }
    std::optional<std::string> take(const CsvRow& row, std::size_t existing,
                                    bool* unchanged) override {
        *unchanged = false;
        taken.push_back(row[1] + "->" +
                        (existing == kNewRow ? std::string("new") : std::to_string(existing)));
        return std::nullopt;
    }
    void drop(std::size_t existing) override { dropped.push_back(existing); }
    std::unique_ptr<EditCommand> step(const std::string&) override { return nullptr; }

    std::vector<std::string> taken;
    std::vector<std::size_t> dropped;

private:
    std::vector<CsvRow> rows_;
};

} // namespace

TEST(SectionTables, RepeatedKeysPairUpInOrderWhateverTheFileOrder) {
    // The n-th row of a key in the file stands for the n-th row of that key in
    // the section; one more is new. Rows a file moved are still found.
    PairTable table({{"A", "1"}, {"B", "1"}, {"A", "2"}, {"C", "1"}, {"D", "1"}});
    const TableMerge merge =
        mergeTable(table, "value,key\r\n1,B\r\n1,A\r\n9,A\r\n5,A\r\n1,C\r\n", true, "Import");
    ASSERT_TRUE(merge.ok()) << merge.error;
    EXPECT_EQ(table.taken, (std::vector<std::string>{"9->2", "5->new"}));
    EXPECT_EQ(merge.unchanged, 3u);
    EXPECT_EQ(table.dropped, (std::vector<std::size_t>{4}));
}

TEST(SectionTables, GroupNamesHoldingTheSeparatorAreFound) {
    // Group "a/b" beside group "a" holding "c": each way of reading a path is tried.
    Demo demo;
    DataNode& plant = *demo.project.rtdb.findDatabase("plant");
    plant.addGroup("a").addGroup("c").addItem(DataItem::makeData("InC", "bit", "1", "0", ""));
    plant.addGroup("a/b").addItem(DataItem::makeData("InAB", "bit", "1", "0", ""));
    std::string edited = exportTable(*makeSectionTable(demo.project, "rtdb"));
    edited = patched(edited, "plant,a/b,InAB,bit,1,0,", "plant,a/b,InAB,bit,1,1,");
    edited = patched(edited, "plant,a/c,InC,", "plant,a/b,InC,");
    const TableMerge merge = mergeSectionText(demo.project, "rtdb", edited, false);
    ASSERT_TRUE(merge.refused.empty()) << merge.refused[0].reason;
    EXPECT_EQ(merge.changed, 2u);
    merge.step->redo();
    const std::string again = exportTable(*makeSectionTable(demo.project, "rtdb"));
    EXPECT_NE(again.find("plant,a/b,InAB,bit,1,1,,\r\nplant,a/b,InC,"), std::string::npos);
}

TEST(SectionTables, ImportLeavesAFileThatASaveWouldChangeOtherwise) {
    // Another program wrote the file since the open (or wrote it in another
    // layout): the import writes nothing and the file keeps its bytes.
    Demo demo;
    const std::string exported = exportTable(*makeSectionTable(demo.project, "rtdb"));
    const std::string edited =
        patched(exported, "Tank1_Temp,float,4,20,", "Tank1_Temp,float,4,25,");
    const fs::path rtdb = fs::path(demo.path) / "rtdb.xml";
    const std::string other = demo.file("rtdb") + "\r\n";
    rqtest::writeFile(rtdb, other);
    ImportResult r = importSection(demo.project, "rtdb", edited, {});
    EXPECT_EQ(r.merge.changed, 1u);
    EXPECT_FALSE(r.written);
    EXPECT_NE(r.error.find("rtdb.xml: a save would change more than the imported rows"),
              std::string::npos)
        << r.error;
    EXPECT_EQ(demo.file("rtdb"), other);
    EXPECT_EQ(exportTable(*makeSectionTable(demo.project, "rtdb")), exported);
}

// rqpcli refs, check and rename over the example project, patched so that one item
// is named by every kind of reference.

#include "core/FileUtil.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

rqtest::ProgramRun rqpcli(const std::string& args) {
    return rqtest::runShell(rq::joinPath(rqtest::programDir(), "rqpcli") + " " + args);
}

const char* const kFiles[] = {"rqrun.xml",  "rtdb.xml",    "hmidb.xml",   "hmiwindow.xml",
                              "device.xml", "param.xml",   "datalog.xml", "history.xml",
                              "alarm.xml",  "modules.xml", "fbd.xml",     "redundancy.xml",
                              "printer.xml"};

// The demo with plant.Tank1_Level in every kind of place and one reference to an
// item that does not exist (plant.Missing).
std::string patchedDemo(const rqtest::TempDir& dir) {
    const fs::path demo = fs::path(std::getenv("RQ_SOURCE_DIR")) / "data/examples/demo";
    fs::copy(demo, dir.path() / "demo", fs::copy_options::recursive);
    const std::string L = "\"plant.Tank1_Level\"";
    const struct {
        const char* file;
        std::string from, to;
    } patches[] = {
        {"device.xml", "module\" params=\"\" status_var=\"\" control_var=\"\"",
         "module\" params=\"\" status_var=" + L + " control_var=" + L},
        {"device.xml", "Tank1_Level\" status_var=\"\"", "Tank1_Level\" status_var=" + L},
        {"device.xml", "\"plc\" period=\"500\" status_var=\"\"",
         "\"plc\" period=\"500\" status_var=" + L},
        {"param.xml", "Level_SetPoint", "Tank1_Level"},
        {"datalog.xml", "period_var=\"\" control_var=\"plant.Link_Control\"",
         "period_var=" + L + " control_var=" + L},
        {"history.xml", "queryvarname=\"\" description=\"level 1\"",
         "queryvarname=" + L + " description=\"level 1\""},
        {"history.xml", "\"plant.Pump1_Run\"", L},
        {"alarm.xml", "priority=\"1\" status_var=\"\"", "priority=\"1\" status_var=" + L},
        {"alarm.xml", "<High enable_var=\"\"", "<High enable_var=" + L},
        {"alarm.xml", "value_var=\"4.8\"", "value_var=" + L},
        {"alarm.xml", "<Low enable_var=\"\"", "<Low enable_var=\"plant.Missing\""},
        {"fbd.xml", "\"EN\" dbname=\"plant\" varname=\"Pump1_Run\"",
         "\"EN\" dbname=\"plant\" varname=\"Tank1_Level\""},
    };
    for (const auto& p : patches) {
        const fs::path file = dir.path() / "demo" / p.file;
        std::string text = rqtest::readFile(file);
        std::size_t at = text.find(p.from);
        EXPECT_NE(at, std::string::npos) << p.file << ": " << p.from;
        if (at != std::string::npos)
            rqtest::writeFile(file, text.replace(at, p.from.size(), p.to));
    }
    return dir.file("demo");
}

} // namespace

TEST(RqpcliRefs, ListsEveryKindOfUse) {
    rqtest::TempDir dir;
    const std::string demo = patchedDemo(dir);
    rqtest::ProgramRun r = rqpcli("refs " + demo + " plant.Tank1_Level");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "hmidb.xml: group \"tanks\" data \"level1\": dbname/dataname\n"
                     "device.xml: link \"bus1\" device \"tankio\": status_var\n"
                     "device.xml: link \"bus1\" device \"tankio\": control_var\n"
                     "device.xml: link \"bus1\" device \"tankio\" data 1: dataname\n"
                     "device.xml: link \"bus1\" device \"tankio\" data 1: status_var\n"
                     "device.xml: link \"plc\": status_var\n"
                     "param.xml: parameter 1: dbname/dataname\n"
                     "datalog.xml: log \"levels\": period_var\n"
                     "datalog.xml: log \"levels\": control_var\n"
                     "datalog.xml: log \"levels\" data 1: dbname/dataname\n"
                     "history.xml: record \"trend\" data 1: dbname/dataname\n"
                     "history.xml: record \"trend\" data 1: queryvarname\n"
                     "history.xml: record \"trend\" data 3: trigvarname\n"
                     "alarm.xml: group \"tanks\" data \"plant.Tank1_Level\": dbname/dataname\n"
                     "alarm.xml: group \"tanks\" data \"plant.Tank1_Level\": status_var\n"
                     "alarm.xml: group \"tanks\" data \"plant.Tank1_Level\" High: enable_var\n"
                     "alarm.xml: group \"tanks\" data \"plant.Tank1_Level\" HighHigh: value_var\n"
                     "fbd.xml: block \"level_pid\" param \"EN\": dbname/varname\n"
                     "fbd.xml: block \"level_pid\" param \"PV\": dbname/varname\n"
                     "fbd.xml: block \"level_sum\" param \"IN1\": dbname/varname\n");

    r = rqpcli("refs " + demo + " plant.Link1_Status --json");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "{\n  \"item\": \"plant.Link1_Status\",\n  \"uses\": [\n    {\n"
                     "      \"file\": \"device.xml\",\n      \"where\": \"link \\\"bus1\\\"\",\n"
                     "      \"attribute\": \"status_var\"\n    }\n  ]\n}\n");
    // An item that exists but is not used, an alias (its own item), usage errors.
    EXPECT_EQ(rqpcli("refs " + demo + " plant.Flags 2>&1").out,
              "rqpcli: plant.Flags is not used\n");
    EXPECT_EQ(rqpcli("refs " + demo + " plant.Flags").status, 1);
    EXPECT_EQ(rqpcli("refs " + demo + " plant.P1").out,
              "hmidb.xml: data \"pump1\": dbname/dataname\n");
    EXPECT_EQ(rqpcli("refs " + demo + " Tank1_Level 2>&1").status, 64);
    EXPECT_EQ(rqpcli("refs " + demo + " 2>&1").status, 64);
    EXPECT_EQ(rqpcli("refs " + dir.file("none") + " plant.P1 2>&1").status, 1);
}

TEST(RqpcliCheck, ReportsReferencesToMissingItems) {
    rqtest::TempDir dir;
    const std::string demo = patchedDemo(dir);
    rqtest::ProgramRun r = rqpcli("check " + demo);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "alarm.xml: group \"tanks\" data \"plant.Tank1_Level\" Low enable_var: no "
                     "database holds the real-time data \"plant.Missing\"\n");
}

// The item's stored initial value is not the rename's business, even one that a
// dialog would refuse now.
TEST(RqpcliRename, KeepsAStoredValueItsTypeWouldRefuse) {
    rqtest::TempDir dir;
    const std::string demo = patchedDemo(dir);
    const fs::path rtdb = fs::path(demo) / "rtdb.xml";
    std::string text = rqtest::readFile(rtdb);
    const std::string from = "\"Tank1_Level\" type=\"float\" length=\"4\" init=\"0\"";
    ASSERT_NE(text.find(from), std::string::npos);
    text.replace(text.find(from), from.size(),
                 "\"Tank1_Level\" type=\"float\" length=\"4\" init=\"1e40\"");
    rqtest::writeFile(rtdb, text);
    rqtest::ProgramRun r = rqpcli("rename " + demo + " plant.Tank1_Level Tank1_Lvl 2>&1");
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_NE(
        rqtest::readFile(rtdb).find("\"Tank1_Lvl\" type=\"float\" length=\"4\" init=\"1e40\""),
        std::string::npos);
}

TEST(RqpcliRename, ChangesOnlyTheRenamedNames) {
    rqtest::TempDir dir;
    const std::string demo = patchedDemo(dir);
    std::vector<std::string> before;
    for (const char* f : kFiles)
        before.push_back(rqtest::readFile(fs::path(demo) / f));
    const struct {
        std::string args;
        const char* message;
    } refused[] = {
        {"plant.Tank1_Level Tank1_Temp", "The data already exist!"},
        {"plant.Tank1_Level tanks", "The data already exist!"}, // a group's name
        {"plant.Tank1_Level ''", "Please input data name and initial value!"},
        {"plant.Tank1_Level 'a<b'", "Data"},
        {"plant.Nothing Other", "the project has no real-time data \"plant.Nothing\""},
    };
    for (const auto& c : refused) {
        rqtest::ProgramRun r = rqpcli("rename " + demo + " " + c.args + " 2>&1");
        EXPECT_EQ(r.status, 1) << c.args;
        EXPECT_NE(r.out.find(c.message), std::string::npos) << c.args << "\n" << r.out;
    }
    for (std::size_t i = 0; i < std::size(kFiles); ++i)
        EXPECT_EQ(rqtest::readFile(fs::path(demo) / kFiles[i]), before[i]) << kFiles[i];

    rqtest::ProgramRun r = rqpcli("rename " + demo + " plant.Tank1_Level Tank1_Lvl 2>&1");
    ASSERT_EQ(r.status, 0) << r.out;
    for (std::size_t i = 0; i < std::size(kFiles); ++i) {
        std::string expected = before[i];
        for (std::size_t at; (at = expected.find("Tank1_Level")) != std::string::npos;)
            expected.replace(at, 11, "Tank1_Lvl");
        EXPECT_EQ(rqtest::readFile(fs::path(demo) / kFiles[i]), expected) << kFiles[i];
    }
    EXPECT_EQ(rqpcli("refs " + demo + " plant.Tank1_Level").status, 1);
    EXPECT_EQ(rqpcli("refs " + demo + " plant.Tank1_Lvl").status, 0);

    // A file that a save would change in other places is left alone.
    rqtest::writeFile(fs::path(demo) / "param.xml",
                      rqtest::readFile(fs::path(demo) / "param.xml") + "\r\n");
    r = rqpcli("rename " + demo + " plant.Tank1_Lvl Tank1_Level 2>&1");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find("param.xml: a save would change more"), std::string::npos) << r.out;
    EXPECT_NE(rqtest::readFile(fs::path(demo) / "rtdb.xml").find("Tank1_Lvl"), std::string::npos);
}

// rqpcli export and import on a copy of the example project: output, counts,
// refused rows and exit status.

#include "core/FileUtil.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

struct CliRun {
    int status;
    std::string out, err;
};

// Standard output and standard error apart.
CliRun rqpcli(const std::string& args) {
    rqtest::TempDir dir;
    rqtest::ProgramRun r = rqtest::runShell(rq::joinPath(rqtest::programDir(), "rqpcli") + " " +
                                            args + " 2>" + dir.file("err"));
    return {r.status, r.out, rqtest::readFile(dir.path() / "err")};
}

} // namespace

TEST(RqpcliExchange, ExportsMergesAndRefusesWithTheDialogsMessages) {
    rqtest::TempDir dir;
    fs::copy(fs::path(std::getenv("RQ_SOURCE_DIR")) / "data/examples/demo", dir.path() / "demo",
             fs::copy_options::recursive);
    const std::string demo = dir.file("demo");
    const std::string csv = dir.file("param.csv");
    const std::string before = rqtest::readFile(fs::path(demo) / "param.xml");

    CliRun out = rqpcli("export " + demo + " param");
    EXPECT_EQ(out.status, 0);
    EXPECT_EQ(out.out, "database,data name,initial value\r\nplant,Level_SetPoint,2.5\r\n"
                       "hmi,Page,1\r\n");
    ASSERT_EQ(rqpcli("export " + demo + " param -o " + csv).status, 0);
    EXPECT_EQ(rqtest::readFile(csv), out.out);

    rqtest::writeFile(csv, out.out + "plant,Pump1_Speed,100\r\n,,5\r\n");
    CliRun dry = rqpcli("import " + demo + " param " + csv + " --dry-run");
    EXPECT_EQ(dry.status, 1);
    EXPECT_EQ(dry.out, "added: 1\nchanged: 0\nunchanged: 2\nrefused: 1\n" + csv +
                           ":5: Please choose data!\n");
    EXPECT_NE(dry.err.find("nothing is written"), std::string::npos) << dry.err;
    EXPECT_EQ(rqtest::readFile(fs::path(demo) / "param.xml"), before);

    CliRun skip = rqpcli("import " + demo + " param " + csv + " --skip-invalid --replace");
    EXPECT_EQ(skip.status, 0) << skip.err;
    EXPECT_EQ(skip.out, "added: 1\nchanged: 0\nunchanged: 2\nremoved: 0\nrefused: 1\n" + csv +
                            ":5: Please choose data!\nwritten: param.xml\n");
    EXPECT_NE(rqtest::readFile(fs::path(demo) / "param.xml").find("Pump1_Speed\" value=\"100\""),
              std::string::npos);

    EXPECT_EQ(rqpcli("import " + demo + " windows " + csv).status, 64);
    EXPECT_EQ(rqpcli("export " + demo).status, 64);
    rqtest::writeFile(csv, "database,name\r\n");
    CliRun header = rqpcli("import " + demo + " param " + csv);
    EXPECT_EQ(header.status, 1);
    EXPECT_NE(header.err.find("unknown column \"name\""), std::string::npos) << header.err;
}

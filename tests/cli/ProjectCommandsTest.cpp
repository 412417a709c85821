// rqpcli's project commands as a user runs them: exit status, the one line on
// standard error, and what ends up on disk.

#include "core/FileUtil.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using rqtest::readFile;
using rqtest::TempDir;
using rqtest::writeFile;

namespace {

// A command line after "rqpcli ", with standard error.
rqtest::ProgramRun rqpcli(const std::string& args) {
    return rqtest::runShell(rq::joinPath(rqtest::programDir(), "rqpcli") + " " + args + " 2>&1");
}

} // namespace

TEST(RqpcliNew, ChecksLikeTheProjectDialog) {
    TempDir dir;
    struct Case {
        std::string args;
        int status;
        const char* message;
    } cases[] = {
        {dir.str() + " '' --hmi-type RQ-HMI800", 1, "Please input project name!"},
        {"'' p --hmi-type RQ-HMI800", 1, "Please choose project path!"},
        {dir.str() + " p", 1, "Please HMI type!"},
        {dir.str() + " p --hmi-type NOSUCH", 1, "Please HMI type!"},
        {dir.str() + "/missing/deeper p --hmi-type RQ-HMI800", 1, "Create directory failed!"},
        {dir.str() + " p --hmi-type", 64, "needs a value"},
        {dir.str(), 64, "missing arguments"},
    };
    for (const auto& c : cases) {
        rqtest::ProgramRun r = rqpcli("new " + c.args);
        EXPECT_EQ(r.status, c.status) << c.args << "\n" << r.out;
        EXPECT_NE(r.out.find(c.message), std::string::npos) << c.args << "\n" << r.out;
    }
    EXPECT_FALSE(rq::directoryExists(dir.file("p")));

    rqtest::ProgramRun ok =
        rqpcli("new " + dir.str() + " p --hmi-type RQ-HMI800 --description 'd e' --ip 1.2.3.4");
    ASSERT_EQ(ok.status, 0) << ok.out;
    rqtest::ProgramRun info = rqpcli("info " + dir.file("p") + " --json");
    ASSERT_EQ(info.status, 0) << info.out;
    EXPECT_NE(info.out.find("\"description\": \"d e\""), std::string::npos) << info.out;
    EXPECT_NE(info.out.find("\"slave_ip\": \"1.2.3.4\""), std::string::npos) << info.out;
    EXPECT_EQ(rqpcli("new " + dir.str() + " p --hmi-type RQ-HMI800").status, 1);
    EXPECT_EQ(rqpcli("new --help").status, 0);
}

TEST(RqpcliCheck, ListsOneLinePerFinding) {
    TempDir dir;
    ASSERT_EQ(rqpcli("new " + dir.str() + " p --hmi-type RQ-HMI800").status, 0);
    std::string p = dir.file("p");
    EXPECT_EQ(rqpcli("check " + p).status, 0);
    writeFile(p + "/rtdb.xml", "<rtdbs><rtdb name=\"db\"><data name=\"a&amp;b\" type=\"short\"/>"
                               "<data name=\"x\" type=\"short\"/></rtdb></rtdbs>");
    writeFile(p + "/param.xml", "<params><data dbname=\"db\" dataname=\"x\" value=\"1\"/>"
                                "<data dbname=\"db\" dataname=\"gone\" value=\"1\"/>"
                                "<data dbname=\"system\" dataname=\"Logic_True\" value=\"1\"/>"
                                "</params>");
    rqtest::ProgramRun r = rqpcli("check " + p);
    EXPECT_EQ(r.status, 1) << r.out;
    EXPECT_NE(r.out.find("'&'"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("db.gone"), std::string::npos) << r.out;
    EXPECT_EQ(r.out.find("Logic_True"), std::string::npos) << r.out; // the system database
    EXPECT_EQ(r.out.find("\"db.x\""), std::string::npos) << r.out;

    std::string rqrun = readFile(p + "/rqrun.xml");
    rqrun.replace(rqrun.find("RQ-HMI800"), 9, "RQ-GONE");
    writeFile(p + "/rqrun.xml", rqrun);
    r = rqpcli("check " + p);
    EXPECT_NE(r.out.find("\"RQ-GONE\" is not in the HMI device catalog"), std::string::npos)
        << r.out;
}

TEST(RqpcliPassword, StoresOnlyTheScrambledForm) {
    TempDir dir;
    ASSERT_EQ(rqpcli("new " + dir.str() + " p --hmi-type RQ-HMI800").status, 0);
    std::string p = dir.file("p");
    ASSERT_EQ(rqpcli("password " + p + " --password s3cret").status, 0);
    std::string file = readFile(p + "/rqrun.xml");
    EXPECT_EQ(file.find("s3cret"), std::string::npos);
    EXPECT_NE(file.find("downloadpwd=\""), std::string::npos);
    EXPECT_NE(rqpcli("info " + p).out.find("download_password: yes"), std::string::npos);
    ASSERT_EQ(rqpcli("password " + p + " --stdin < /dev/null").status, 0);
    EXPECT_EQ(readFile(p + "/rqrun.xml").find("downloadpwd"), std::string::npos);
    EXPECT_EQ(rqpcli("password " + p).status, 64);
    EXPECT_EQ(rqpcli("password " + p + " --stdin --password x").status, 64);
    EXPECT_EQ(rqpcli("resave " + dir.file("none")).status, 1);
}

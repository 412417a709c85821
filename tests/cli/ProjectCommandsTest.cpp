// rqpcli's project commands as a user runs them: exit status, the one line on
// standard error, and what ends up on disk.

#include "core/FileUtil.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

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
    // Empty input is refused and keeps the password; only an explicit "" clears it.
    rqtest::ProgramRun empty = rqpcli("password " + p + " --stdin < /dev/null");
    EXPECT_EQ(empty.status, 1);
    EXPECT_NE(empty.out.find("--password \"\" removes it"), std::string::npos) << empty.out;
    writeFile(dir.file("newline"), "\n");
    EXPECT_EQ(rqpcli("password " + p + " --stdin < " + dir.file("newline")).status, 1);
    EXPECT_NE(readFile(p + "/rqrun.xml").find("downloadpwd"), std::string::npos);
    ASSERT_EQ(rqpcli("password " + p + " --password ''").status, 0);
    EXPECT_EQ(readFile(p + "/rqrun.xml").find("downloadpwd"), std::string::npos);
    EXPECT_EQ(rqpcli("password " + p).status, 64);
    EXPECT_EQ(rqpcli("password " + p + " --stdin --password x").status, 64);
    EXPECT_EQ(rqpcli("resave " + dir.file("none")).status, 1);
}

TEST(RqpcliNew, RefusesValuesTheProjectFileCannotStore) {
    TempDir dir;
    const std::pair<std::string, const char*> cases[] = {
        {"'Tank \"A\"'", "\"Project Name\""},
        {"'R&D'", "\"Project Name\""},
        {"p --description '<b>x</b>'", "\"Project Description\""},
        {"p --ip '1.2.3.4\"'", "\"Default Slave IP Address\""},
    };
    for (const auto& [args, field] : cases) {
        rqtest::ProgramRun r = rqpcli("new " + dir.str() + " " + args + " --hmi-type RQ-HMI800");
        EXPECT_EQ(r.status, 1) << args << "\n" << r.out;
        EXPECT_NE(r.out.find(field), std::string::npos) << r.out;
    }
    EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
}

// Damaged optional files: listed, kept, and every command says so in its status.
TEST(RqpcliProject, UnreadableFilesAreListedAndKept) {
    TempDir dir;
    ASSERT_EQ(rqpcli("new " + dir.str() + " p --hmi-type RQ-HMI800").status, 0);
    const std::string p = dir.file("p");
    const std::string device = "<devices><link name=\"bus1\"";
    writeFile(p + "/device.xml", device);
    std::filesystem::remove_all(p + "/data");
    std::filesystem::remove_all(p + "/hisdata");

    rqtest::ProgramRun info = rqpcli("info " + p);
    EXPECT_EQ(info.status, 0) << info.out;
    EXPECT_NE(info.out.find(p + "/device.xml: line 1"), std::string::npos) << info.out;
    rqtest::ProgramRun check = rqpcli("check " + p);
    EXPECT_EQ(check.status, 1);
    EXPECT_NE(check.out.find(p + "/device.xml: line 1"), std::string::npos) << check.out;
    EXPECT_FALSE(rq::directoryExists(p + "/data")); // read-only commands write nothing
    EXPECT_FALSE(rq::directoryExists(p + "/hisdata"));

    rqtest::ProgramRun resave = rqpcli("resave " + p);
    EXPECT_EQ(resave.status, 1);
    EXPECT_NE(resave.out.find("not saved: " + p + "/device.xml: left as it is"), std::string::npos)
        << resave.out;
    EXPECT_EQ(readFile(p + "/device.xml"), device);
    EXPECT_TRUE(rq::directoryExists(p + "/data"));

    // A link is written through, not replaced by a file.
    std::filesystem::remove(p + "/device.xml");
    std::filesystem::rename(p + "/param.xml", dir.file("param.xml"));
    std::filesystem::create_symlink(dir.file("param.xml"), p + "/param.xml");
    EXPECT_EQ(rqpcli("resave " + p).status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(p + "/param.xml"));
}

TEST(Rqpcli, UsageErrorsNameWhatIsMissing) {
    for (const char* args :
         {"resave ''", "info ''", "check ''", "password '' --password x", "compile ''"}) {
        rqtest::ProgramRun r = rqpcli(args);
        EXPECT_EQ(r.status, 64) << args << "\n" << r.out;
        EXPECT_NE(r.out.find("DIR must not be empty"), std::string::npos) << r.out;
    }
    rqtest::ProgramRun upload = rqpcli("upload 127.0.0.1 ''");
    EXPECT_EQ(upload.status, 64);
    EXPECT_NE(upload.out.find("TARGET must not be empty"), std::string::npos) << upload.out;
    rqtest::ProgramRun package = rqpcli("package");
    EXPECT_EQ(package.status, 64);
    EXPECT_NE(package.out.find("rqpcli package wrap SRC DST"), std::string::npos) << package.out;
    EXPECT_EQ(package.out.find("unknown command"), std::string::npos) << package.out;
    rqtest::ProgramRun device = rqpcli("device nosuch");
    EXPECT_EQ(device.status, 64);
    EXPECT_NE(device.out.find("unknown subcommand 'nosuch'"), std::string::npos) << device.out;
    EXPECT_NE(device.out.find("rqpcli device put"), std::string::npos) << device.out;
}

TEST(RqpcliProject, WhatTheReadersLeaveOutIsListedAndWarned) {
    TempDir dir;
    ASSERT_EQ(rqpcli("new " + dir.str() + " p --hmi-type RQ-HMI800").status, 0);
    const std::string p = dir.file("p");
    writeFile(p + "/device.xml", "<devices><link name=\"l\" driver=\"canbus\"/></devices>");
    rqtest::ProgramRun check = rqpcli("check " + p + " 2>/dev/null");
    EXPECT_EQ(check.status, 1);
    EXPECT_NE(check.out.find("device.xml: link \"l\": unknown kind"), std::string::npos)
        << check.out;
    rqtest::ProgramRun resave = rqpcli("resave " + p);
    EXPECT_EQ(resave.status, 1);
    EXPECT_NE(resave.out.find("warning: device.xml: link \"l\""), std::string::npos) << resave.out;
    EXPECT_EQ(rqpcli("resave " + p).status, 0); // the file no longer holds it
}

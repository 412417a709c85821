// Opening and saving whole projects: the thirteen files, required and optional,
// failures that must not lose anything, and the device code page on disk.

#include "core/FileUtil.h"
#include "core/TextEncoding.h"
#include "project/Project.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace rq;
using rqtest::readFile;
using rqtest::TempDir;
using rqtest::writeFile;
namespace fs = std::filesystem;

namespace {

struct Fixture {
    Catalogs catalogs;
    rqtest::RecordingSink sink;
    Fixture() { catalogs.loadFrom(rqtest::programDir()); }
};

// A new project saved into dir/name.
void makeProject(Fixture& f, const TempDir& dir, const std::string& name) {
    Project p(f.catalogs, f.sink);
    ASSERT_TRUE(p.doc.createDirectories(dir.str(), name));
    p.model().name = name;
    p.model().hmiType = f.catalogs.hmi.FindByName("RQ-HMI800");
    p.model().projectDirectory = dir.file(name);
    ASSERT_TRUE(p.doc.saveAll().ok());
}

} // namespace

TEST(ProjectDocument, NewProjectWritesAllFilesAndReopens) {
    Fixture f;
    TempDir dir;
    makeProject(f, dir, "p");
    for (const char* file : kSectionFiles)
        EXPECT_TRUE(fileExists(dir.file("p/") + file)) << file;
    EXPECT_TRUE(directoryExists(dir.file("p/data")));
    EXPECT_TRUE(directoryExists(dir.file("p/hisdata")));

    Project q(f.catalogs, f.sink);
    std::string error;
    ASSERT_TRUE(q.doc.open(dir.file("p") + "/", &error)) << error;
    EXPECT_EQ(q.model().projectDirectory, dir.file("p"));
    EXPECT_EQ(q.model().name, "p");
    EXPECT_FALSE(q.model().modified);
    // An existing directory is not taken over by a new project.
    EXPECT_FALSE(q.doc.createDirectories(dir.str(), "p"));
    EXPECT_EQ(f.sink.texts().back(), "Create directory failed!");
}

TEST(ProjectDocument, OpenNeedsTheFirstFourFilesOnly) {
    Fixture f;
    TempDir dir;
    makeProject(f, dir, "p");
    for (const char* optional : {"fbd.xml", "printer.xml", "device.xml"})
        fs::remove(dir.file("p/") + optional);
    fs::remove_all(dir.file("p/data"));
    Project q(f.catalogs, f.sink);
    std::string error;
    ASSERT_TRUE(q.doc.open(dir.file("p"), &error)) << error;
    EXPECT_TRUE(directoryExists(dir.file("p/data"))); // made again
    ASSERT_TRUE(q.doc.saveAll().ok());
    EXPECT_TRUE(fileExists(dir.file("p/fbd.xml")));
    EXPECT_NE(readFile(dir.file("p/printer.xml")).find("escp2-me1"), std::string::npos);

    for (const char* required : {"hmiwindow.xml", "rtdb.xml"}) {
        fs::remove(dir.file("p/") + required);
        Project r(f.catalogs, f.sink);
        EXPECT_FALSE(r.doc.open(dir.file("p"), &error));
        EXPECT_NE(error.find(required), std::string::npos) << error;
    }
    writeFile(dir.file("p/rtdb.xml"), "<rtdbs><rtdb name=\"a\"></rtdbs>");
    Project r(f.catalogs, f.sink);
    EXPECT_FALSE(r.doc.open(dir.file("p"), &error));
    EXPECT_NE(error.find("rtdb.xml: line"), std::string::npos) << error;
}

TEST(ProjectDocument, AFileThatCannotBeWrittenIsReportedAndTheRestIsWritten) {
    Fixture f;
    TempDir dir;
    makeProject(f, dir, "p");
    Project q(f.catalogs, f.sink);
    std::string error;
    ASSERT_TRUE(q.doc.open(dir.file("p"), &error)) << error;
    // param.xml becomes a directory that a file cannot replace.
    fs::remove(dir.file("p/param.xml"));
    fs::create_directory(dir.file("p/param.xml"));
    writeFile(dir.file("p/param.xml/keep"), "x");
    fs::remove(dir.file("p/printer.xml"));
    q.model().description = "changed";
    q.model().modified = true;
    SaveReport report = q.doc.saveAll();
    ASSERT_EQ(report.failures.size(), 1u);
    EXPECT_NE(report.failures[0].find("param.xml"), std::string::npos);
    EXPECT_FALSE(q.model().modified);
    EXPECT_TRUE(fileExists(dir.file("p/printer.xml"))); // written after the failure
    EXPECT_NE(readFile(dir.file("p/rqrun.xml")).find("changed"), std::string::npos);
    for (const auto& e : fs::directory_iterator(dir.file("p")))
        EXPECT_NE(e.path().filename().string()[0], '.') << "temporary file left behind";
}

TEST(ProjectDocument, TextIsStoredInTheDeviceCodePageAndReadBack) {
    Fixture f;
    TempDir dir;
    makeProject(f, dir, "p");
    const std::string chinese = "\xE6\xB5\x8B\xE8\xAF\x95"; // "test", in GB2312
    const std::string snowman = "\xE2\x98\x83";             // not in GB2312
    {
        Project q(f.catalogs, f.sink);
        std::string error;
        ASSERT_TRUE(q.doc.open(dir.file("p"), &error)) << error;
        q.model().description = chinese + snowman;
        q.model().downloadPassword = chinese;
        ASSERT_TRUE(q.doc.saveAll().ok());
    }
    std::string bytes = readFile(dir.file("p/rqrun.xml"));
    EXPECT_NE(bytes.find(*Utf8ToGb2312(chinese) + "&#x2603;"), std::string::npos);
    EXPECT_FALSE(isValidUtf8(bytes));
    Project r(f.catalogs, f.sink);
    std::string error;
    ASSERT_TRUE(r.doc.open(dir.file("p"), &error)) << error;
    EXPECT_EQ(r.model().description, chinese + snowman);
    EXPECT_EQ(r.model().downloadPassword, chinese);
}

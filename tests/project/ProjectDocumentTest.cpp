// Opening and saving whole projects: the thirteen files, required and optional,
// failures that must not lose anything, and the device code page on disk.

#include "core/FileUtil.h"
#include "core/TextEncoding.h"
#include "project/Project.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>

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

// Each test starts with a new project saved into dir/p.
class ProjectDocumentTest : public ::testing::Test {
protected:
    ProjectDocumentTest() { makeProject(f, dir, "p"); }
    Fixture f;
    TempDir dir;
};

} // namespace

TEST_F(ProjectDocumentTest, OpenNeedsTheFirstFourFilesOnly) {
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

TEST_F(ProjectDocumentTest, TextIsStoredInTheDeviceCodePageAndReadBack) {
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

// An optional file that is there but cannot be read is reported, and Save leaves it
// on disk as it is unless its section was edited and the user agrees.
TEST_F(ProjectDocumentTest, AnUnreadableOptionalFileIsReportedAndKept) {
    const std::string p = dir.file("p/");
    const std::pair<const char*, std::string> bad[] = {
        {"device.xml", ""},                                  // empty
        {"param.xml", "<params><data dbname=\"db\""},        // cut short
        {"datalog.xml", "\x89PNG\r\n\x1A\n garbage"},        // garbage
        {"history.xml", "<alarms/>"},                        // wrong root
        {"alarm.xml", "<alarms><group name=\"caf\xE9 \"/>"}, // Latin-1 bytes
    };
    for (const auto& [file, bytes] : bad)
        writeFile(p + file, bytes);
    fs::remove(p + "printer.xml");
    ASSERT_EQ(::mkfifo((p + "printer.xml").c_str(), 0644), 0);

    Project q(f.catalogs, f.sink);
    std::string error;
    ASSERT_TRUE(q.doc.open(dir.file("p"), &error)) << error;
    ASSERT_EQ(q.doc.unreadableFiles().size(), 6u);
    for (const auto& [file, bytes] : bad)
        EXPECT_TRUE(q.doc.sectionUnreadable(static_cast<int>(
            std::find(kSectionFiles.begin(), kSectionFiles.end(), std::string_view(file)) -
            kSectionFiles.begin())))
            << file;
    EXPECT_NE(q.doc.unreadableFiles().back().find(p + "printer.xml: not a regular file"),
              std::string::npos)
        << q.doc.unreadableFiles().back();
    EXPECT_FALSE(q.doc.sectionUnreadable(9)); // modules.xml read fine

    SaveReport report = q.doc.saveAll();
    EXPECT_TRUE(report.ok());
    EXPECT_EQ(report.kept.size(), 6u);
    for (const auto& [file, bytes] : bad)
        EXPECT_EQ(readFile(p + file), bytes) << file;
    EXPECT_TRUE(fs::is_fifo(p + "printer.xml"));

    // Edited since the open: asked, and replaced only on Yes.
    q.doc.markSectionEdited(4);
    q.doc.markSectionEdited(5);
    f.sink.entries.clear();
    f.sink.answers = {false, true}; // device.xml: No; param.xml: Yes
    report = q.doc.saveAll();
    ASSERT_EQ(f.sink.entries.size(), 2u);
    EXPECT_TRUE(f.sink.entries[0].question);
    EXPECT_NE(f.sink.entries[0].text.find("device.xml"), std::string::npos);
    EXPECT_EQ(readFile(p + "device.xml"), "");
    EXPECT_EQ(readFile(p + "param.xml"), q.doc.sectionText(5));
    EXPECT_FALSE(q.doc.sectionUnreadable(5));
    EXPECT_EQ(report.kept.size(), 5u);
    EXPECT_EQ(q.doc.unreadableFiles().size(), 5u);
    EXPECT_TRUE(q.model().modified); // the edits of device.xml are not on disk
}

TEST_F(ProjectDocumentTest, InspectingWritesNothingAndEditingCleansUp) {
    fs::remove_all(dir.file("p/data"));
    fs::remove_all(dir.file("p/hisdata"));
    writeFile(dir.file("p/.rtdb.xml.a1B2c3"), "half a save");
    writeFile(dir.file("p/.keep.xml.a1B2c3"), "not ours");
    std::string error;
    {
        Project q(f.catalogs, f.sink);
        ASSERT_TRUE(q.doc.open(dir.file("p"), &error, OpenPurpose::Inspect)) << error;
        EXPECT_FALSE(fs::exists(dir.file("p/data")));
        EXPECT_TRUE(fs::exists(dir.file("p/.rtdb.xml.a1B2c3")));
    }
    Project q(f.catalogs, f.sink);
    ASSERT_TRUE(q.doc.open(dir.file("p"), &error)) << error;
    EXPECT_TRUE(directoryExists(dir.file("p/data")));
    EXPECT_TRUE(directoryExists(dir.file("p/hisdata")));
    EXPECT_FALSE(fs::exists(dir.file("p/.rtdb.xml.a1B2c3")));
    EXPECT_TRUE(fs::exists(dir.file("p/.keep.xml.a1B2c3")));
}

TEST_F(ProjectDocumentTest, AFileThatWouldNotReadBackIsNeverWritten) {
    const std::string before = readFile(dir.file("p/rqrun.xml"));
    Project q(f.catalogs, f.sink);
    std::string error;
    ASSERT_TRUE(q.doc.open(dir.file("p"), &error)) << error;
    q.model().description = "<b>R&D</b>";
    q.rtdb.root().addDatabase("Tank \"A\"");
    SaveReport report = q.doc.saveAll();
    ASSERT_EQ(report.failures.size(), 2u);
    EXPECT_NE(report.failures[0].find("rqrun.xml: not saved, the file on disk is kept"),
              std::string::npos)
        << report.failures[0];
    EXPECT_NE(report.failures[1].find("rtdb.xml"), std::string::npos);
    EXPECT_EQ(readFile(dir.file("p/rqrun.xml")), before);
    Project r(f.catalogs, f.sink);
    EXPECT_TRUE(r.doc.open(dir.file("p"), &error)) << error;
}

// What each reader leaves out under its reading rules is named with its file.
TEST_F(ProjectDocumentTest, WhatTheReadersLeaveOutIsRecorded) {
    const std::string p = dir.file("p/");
    writeFile(p + "rtdb.xml", "<rtdbs><rtdb name=\"db\"/><rtdb name=\"db\"><data name=\"x\" "
                              "type=\"short\"/></rtdb><rtdb name=\"b\"><data name=\"s\" "
                              "type=\"nosuch\"/><datagroup name=\"\"/></rtdb></rtdbs>");
    writeFile(p + "hmidb.xml", "<hmidb><datagroup name=\"other\"/></hmidb>");
    writeFile(p + "device.xml", "<devices><link name=\"l\" driver=\"canbus\"/></devices>");
    writeFile(p + "param.xml", "<params><data dataname=\"x\"/></params>");
    writeFile(p + "datalog.xml", "<datalog><log name=\"g\" source=\"disk\"/></datalog>");
    writeFile(p + "history.xml", "<rqhistory><historydb name=\"h\"><logdata><data "
                                 "dataname=\"x\"/></logdata></historydb></rqhistory>");
    writeFile(p + "alarm.xml", "<alarm><alarmgroup name=\"a\"/><alarmgroup name=\"a\"/></alarm>");
    writeFile(p + "modules.xml", "<modules><module srcfiles=\"a.c\"/></modules>");
    writeFile(p + "redundancy.xml", "<redundancy><datalink type=\"udp\"/></redundancy>");
    writeFile(p + "fbd.xml", "<fblocks><fbd name=\"f\"/><fbd name=\"f\"/></fblocks>");
    writeFile(p + "printer.xml", "<printer><config/><config/></printer>");
    Project q(f.catalogs, f.sink);
    std::string error;
    ASSERT_TRUE(q.doc.open(dir.file("p"), &error)) << error;
    std::vector<std::string> lines;
    for (const DroppedRecord& d : q.doc.droppedRecords())
        lines.push_back(d.file + ": " + d.element + ": " + d.reason);
    const char* expected[] = {
        "rtdb.xml: rtdb \"db\": a second database of this name",
        "rtdb.xml: data \"s\" in \"b\": type \"nosuch\" has no fixed size",
        "rtdb.xml: datagroup in \"b\": no name",
        "hmidb.xml: datagroup \"other\"",
        "device.xml: link \"l\": unknown kind (driver \"canbus\")",
        "param.xml: data: no database name",
        "datalog.xml: log \"g\": source \"disk\"",
        "history.xml: data in historydb \"h\": no database name",
        "alarm.xml: alarmgroup \"a\": a second alarm group",
        "modules.xml: module: no name",
        "redundancy.xml: datalink: type \"udp\"",
        "fbd.xml: fbd \"f\": a second block",
        "printer.xml: config: a second configuration",
    };
    ASSERT_EQ(lines.size(), std::size(expected));
    for (std::size_t i = 0; i < lines.size(); ++i)
        EXPECT_EQ(lines[i].find(expected[i]), 0u) << lines[i];
    EXPECT_TRUE(q.doc.unreadableFiles().empty());
}

namespace {
// A step that sets the project's database list to one more database.
struct AddDb : EditCommand {
    AddDb(RtdbSection& r, std::string n)
        : EditCommand("Add " + n, 1), rtdb(r), name(std::move(n)) {}
    void redo() override { rtdb.root().addDatabase(name); }
    void undo() override { rtdb.root().removeChild(rtdb.databaseCount() - 1); }
    RtdbSection& rtdb;
    std::string name;
};
} // namespace

// The history follows the saved state: undoing back to it clears `modified`, a
// new step after undoing past it makes it unreachable, open and New clear it, and
// a change of the project's own fields keeps the project modified.
TEST_F(ProjectDocumentTest, HistoryFollowsTheSavedState) {
    Project p(f.catalogs, f.sink);
    std::string error;
    ASSERT_TRUE(p.doc.open(dir.file("p"), &error)) << error;
    UndoHistory& h = p.doc.history();
    h.push(std::make_unique<AddDb>(p.rtdb, "a"));
    EXPECT_TRUE(p.model().modified);
    EXPECT_EQ(h.undoText(), "Undo Add a");
    p.doc.undo();
    EXPECT_FALSE(p.model().modified);
    EXPECT_EQ(h.redoText(), "Redo Add a");
    p.doc.redo();
    ASSERT_TRUE(p.doc.saveAll().ok());
    h.push(std::make_unique<AddDb>(p.rtdb, "b"));
    p.doc.undo();
    EXPECT_FALSE(p.model().modified); // back at the save, which holds "a"
    p.doc.undo();
    EXPECT_TRUE(p.model().modified);
    h.push(std::make_unique<AddDb>(p.rtdb, "c")); // "b" and the saved step are gone
    EXPECT_FALSE(h.canRedo());
    p.doc.undo();
    EXPECT_TRUE(p.model().modified);
    EXPECT_EQ(p.rtdb.databaseCount(), 0u);

    p.doc.redo();
    p.model().description = "changed outside the history";
    ASSERT_TRUE(p.doc.saveAll().ok());
    p.model().description = "again";
    h.push(std::make_unique<AddDb>(p.rtdb, "d"));
    p.doc.undo();
    EXPECT_TRUE(p.model().modified);

    ASSERT_TRUE(p.doc.open(dir.file("p"), &error)) << error;
    EXPECT_FALSE(h.canUndo());
    EXPECT_EQ(h.undoText(), "Undo");
    h.push(std::make_unique<AddDb>(p.rtdb, "e"));
    p.doc.clear();
    EXPECT_FALSE(h.canUndo() || h.canRedo());
}

namespace {

// What one open shows and keeps, read with the given number of threads.
struct OpenOutcome {
    bool ok;
    std::string error;
    std::vector<std::string> messages;
    std::vector<std::string> dropped;
    std::size_t databases;
};

OpenOutcome openWith(Fixture& f, const std::string& dir, unsigned threads) {
    rqtest::RecordingSink sink;
    Project p(f.catalogs, sink);
    p.doc.setOpenThreads(threads);
    OpenOutcome o;
    o.ok = p.doc.open(dir, &o.error);
    o.messages = sink.texts();
    for (const DroppedRecord& d : p.doc.droppedRecords())
        o.dropped.push_back(d.file + ": " + d.element);
    o.databases = p.rtdb.databaseCount();
    return o;
}

// A project whose biggest file, read first in file order, shows its message last:
// the small files after it finish long before it on the other threads.
void writeMessagesInSeveralFiles(const std::string& p) {
    std::string rtdb = "<rtdbs><rtdb name=\"a\">";
    for (int i = 0; i < 20000; ++i)
        rtdb += "<data name=\"v" + std::to_string(i) + "\" type=\"float\" length=\"4\"/>";
    writeFile(p + "rtdb.xml", rtdb + "</rtdb><rtdb name=\"a\"/></rtdbs>");
    writeFile(p + "device.xml", "<devices><link name=\"l\" driver=\"tcpclient\"/><link name=\"l\" "
                                "driver=\"tcpclient\"/></devices>");
    writeFile(p + "alarm.xml", "<alarm><alarmgroup name=\"a\"/><alarmgroup name=\"a\"/></alarm>");
    writeFile(p + "fbd.xml", "<fblocks><fbd name=\"f\"/><fbd name=\"f\"/></fblocks>");
}

} // namespace

// Files read side by side give the messages, the dropped records and the error of
// the one-by-one open, in file order.
TEST_F(ProjectDocumentTest, AnOpenOnSeveralThreadsKeepsTheFileOrder) {
    const std::string p = dir.file("p/");
    writeMessagesInSeveralFiles(p);
    const OpenOutcome one = openWith(f, dir.file("p"), 1);
    ASSERT_TRUE(one.ok) << one.error;
    ASSERT_EQ(one.messages.size(), 4u);
    EXPECT_EQ(one.messages.front(), "The database already exist!");
    EXPECT_EQ(one.messages.back(), "The Function block already exist!");
    ASSERT_EQ(one.dropped.size(), 4u);
    EXPECT_EQ(one.dropped.front().rfind("rtdb.xml: ", 0), 0u);
    const OpenOutcome four = openWith(f, dir.file("p"), 4);
    EXPECT_TRUE(four.ok);
    EXPECT_EQ(four.messages, one.messages);
    EXPECT_EQ(four.dropped, one.dropped);
    EXPECT_EQ(four.databases, 1u);

    // The first required file in file order that cannot be read decides, and
    // nothing after it is shown; the document is left empty.
    writeFile(p + "hmidb.xml", "<hmidb><datagroup");
    writeFile(p + "hmiwindow.xml", "<wrong/>");
    const OpenOutcome failedOne = openWith(f, dir.file("p"), 1);
    const OpenOutcome failedFour = openWith(f, dir.file("p"), 4);
    EXPECT_FALSE(failedOne.ok);
    EXPECT_EQ(failedOne.error.find(p + "hmidb.xml: "), 0u) << failedOne.error;
    EXPECT_EQ(failedOne.messages, std::vector<std::string>{"The database already exist!"});
    EXPECT_FALSE(failedFour.ok);
    EXPECT_EQ(failedFour.error, failedOne.error);
    EXPECT_EQ(failedFour.messages, failedOne.messages);
    EXPECT_TRUE(failedFour.dropped.empty());
    EXPECT_EQ(failedFour.databases, 0u);
}

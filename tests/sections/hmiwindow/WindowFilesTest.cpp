#include "sections/hmiwindow/WindowFiles.h"
#include "core/HmiDeviceCatalog.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <unistd.h>

using namespace rq;

namespace {

TEST(WindowFiles, ReservedNamesAreExactAndCaseSensitive) {
    const std::pair<const char*, bool> cases[] = {
        {"rtdb.xml", true},    {"opcda.xml", true},  {"printer.xml", true}, {"hmiwindow.xml", true},
        {"ladder.xml", true},  {"RTDB.xml", false},  {"rtdb", false},       {"rtdb.xml ", false},
        {"./rtdb.xml", false}, {"rqrun.xml", false}, {"", false},           {"main.xml", false},
    };
    for (const auto& [name, reserved] : cases)
        EXPECT_EQ(isReservedWindowFileName(name), reserved) << name;
    EXPECT_EQ(kReservedWindowFileNames.size(), 14u);
}

TEST(WindowFiles, XmlIsAppendedOnlyWhenTheNameHoldsItNowhere) {
    const std::pair<const char*, const char*> cases[] = {
        {"main", "main.xml"},
        {"myxmlscreen", "myxmlscreen"},
        {"a.xml", "a.xml"},
        {"rtdb", "rtdb.xml"},
        {"screen.XML", "screen.XML.xml"},
        {"xml", "xml"},
        {"", ".xml"},
        {"x.xm", "x.xm.xml"},
    };
    for (const auto& [typed, result] : cases)
        EXPECT_EQ(windowFileNameWithXml(typed), result) << typed;
}

TEST(WindowFiles, TemplateForTheDefaultScreen) {
    const ScreenSize size = windowScreenSize(nullptr);
    EXPECT_EQ(windowTemplateText(size.width, size.height),
              rqtest::crlf("<?xml version=\"1.0\" ?>\n"
                           "<hmiwidget>\n"
                           "<widget name=\"window\"  class=\"window\">\n"
                           "<properties>\n"
                           "<property name=\"left\" type=\"short\" value=\"0\" />\n"
                           "<property name=\"right\" type=\"short\" value=\"1024\" />\n"
                           "<property name=\"top\" type=\"short\" value=\"0\" />\n"
                           "<property name=\"bottom\" type=\"short\" value=\"768\" />\n"
                           "<property name=\"visible\" type=\"uchar\" value=\"1\" />\n"
                           "<property name=\"noredraw\" type=\"uchar\" value=\"0\" />\n"
                           "<property name=\"style\" type=\"ulong\" value=\"0\" />\n"
                           "<property name=\"bkcolor\" type=\"ulong\" value=\"16777215\" />\n"
                           "</properties>\n"
                           "</widget>\n"
                           "</hmiwidget>\n"));
}

TEST(WindowFiles, TemplateTakesTheHmiTypesScreenSize) {
    HmiDeviceType type;
    type.screenWidth = 800;
    type.screenHeight = 480;
    const ScreenSize size = windowScreenSize(&type);
    const std::string text = windowTemplateText(size.width, size.height);
    EXPECT_NE(text.find("<property name=\"right\" type=\"short\" value=\"800\" />\r\n"),
              std::string::npos);
    EXPECT_NE(text.find("<property name=\"bottom\" type=\"short\" value=\"480\" />\r\n"),
              std::string::npos);
    EXPECT_EQ(text.find("1024"), std::string::npos);
}

TEST(WindowFiles, CreatesOnlyWhenNoFileCanBeOpened) {
    rqtest::TempDir dir;
    const std::string text = windowTemplateText(1024, 768);
    std::string error;

    EXPECT_EQ(createWindowFileIfMissing(dir.str(), "main.xml", text, &error),
              WindowFileResult::Created)
        << error;
    EXPECT_EQ(rqtest::readFile(dir.file("main.xml")), text);

    // "rtdb" passes the reserved test, becomes rtdb.xml, and the existing section
    // file is not written over.
    rqtest::writeFile(dir.file("rtdb.xml"), "section");
    EXPECT_EQ(createWindowFileIfMissing(dir.str(), windowFileNameWithXml("rtdb"), text, &error),
              WindowFileResult::Exists);
    EXPECT_EQ(rqtest::readFile(dir.file("rtdb.xml")), "section");

    // A modified window's missing file is created empty.
    EXPECT_EQ(createWindowFileIfMissing(dir.str(), "blank.xml", "", &error),
              WindowFileResult::Created);
    EXPECT_EQ(rqtest::readFile(dir.file("blank.xml")), "");
}

TEST(WindowFiles, FailsCleanlyWhereNothingCanBeWritten) {
    rqtest::TempDir dir;
    std::string error;
    EXPECT_EQ(createWindowFileIfMissing(dir.file("no-such-dir"), "w.xml", "x", &error),
              WindowFileResult::Failed);
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(std::filesystem::exists(dir.file("no-such-dir")));

    if (::geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind the super-user";
    rqtest::writeFile(dir.file("locked.xml"), "keep");
    std::filesystem::permissions(dir.file("locked.xml"), std::filesystem::perms::none);
    error.clear();
    EXPECT_EQ(createWindowFileIfMissing(dir.str(), "locked.xml", "new", &error),
              WindowFileResult::Failed);
    EXPECT_FALSE(error.empty());
    std::filesystem::permissions(dir.file("locked.xml"), std::filesystem::perms::owner_all);
    EXPECT_EQ(rqtest::readFile(dir.file("locked.xml")), "keep");
}

} // namespace

#include "sections/hmiwindow/WindowFiles.h"
#include "core/HmiDeviceCatalog.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <unistd.h>

using namespace rq;

namespace {

TEST(WindowFiles, ReservedNamesAndTheXmlRule) {
    for (const char* name : {"rtdb.xml", "hmiwindow.xml", "printer.xml"})
        EXPECT_TRUE(isReservedWindowFileName(name)) << name;
    for (const char* name : {"RTDB.xml", "rtdb", "rtdb.xml ", "./rtdb.xml", "rqrun.xml", ""})
        EXPECT_FALSE(isReservedWindowFileName(name)) << name;

    const std::pair<const char*, const char*> typed[] = {
        {"main", "main.xml"}, {"myxmlscreen", "myxmlscreen"},
        {"rtdb", "rtdb.xml"}, {"a.XML", "a.XML.xml"},
        {"xml", "xml"},       {"", ".xml"},
    };
    for (const auto& [name, result] : typed)
        EXPECT_EQ(windowFileNameWithXml(name), result) << name;
}

TEST(WindowFiles, TemplateTakesTheScreenSizeOf1024x768WithoutHmiType) {
    const auto golden = [](const char* size) {
        return rqtest::readFile(rqtest::dataPath("window_template", size, "expected.xml"));
    };
    ScreenSize size = windowScreenSize(nullptr);
    EXPECT_EQ(windowTemplateText(size.width, size.height), golden("1024x768"));
    HmiDeviceType type;
    type.screenWidth = 800;
    type.screenHeight = 480;
    size = windowScreenSize(&type);
    EXPECT_EQ(windowTemplateText(size.width, size.height), golden("800x480"));
}

TEST(WindowFiles, AFifoInTheFilesPlaceNeitherBlocksNorIsReplaced) {
    rqtest::TempDir dir;
    ASSERT_EQ(::mkfifo(dir.file("pipe.xml").c_str(), 0644), 0);
    std::string error;
    EXPECT_EQ(createWindowFileIfMissing(dir.str(), "pipe.xml", "new", &error),
              WindowFileResult::Failed);
    EXPECT_TRUE(std::filesystem::is_fifo(dir.file("pipe.xml")));
}

TEST(WindowFiles, AFileThatExistsButCannotBeOpenedIsNotReplaced) {
    if (::geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind the super-user";
    rqtest::TempDir dir;
    rqtest::writeFile(dir.file("locked.xml"), "keep");
    std::filesystem::permissions(dir.file("locked.xml"), std::filesystem::perms::none);
    std::string error;
    EXPECT_EQ(createWindowFileIfMissing(dir.str(), "locked.xml", "new", &error),
              WindowFileResult::Failed);
    std::filesystem::permissions(dir.file("locked.xml"), std::filesystem::perms::owner_all);
    EXPECT_EQ(rqtest::readFile(dir.file("locked.xml")), "keep");
}

} // namespace

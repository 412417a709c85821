#include "deploy/transfer/UpgradePackages.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace {

TEST(UpgradePackages, Dates) {
    struct Case {
        const char* text;
        int date; // 0 = invalid
    } cases[] = {
        {"20240229", 20240229}, {"20230229", 0}, {"20001229x", 20001229}, {"19000229", 0},
        {"20001301", 0},        {"20000100", 0}, {"20000431", 0},         {"2000013", 0},
        {"2000-1-1", 0},        {"00000101", 0}, {"20001231", 20001231},
    };
    for (const auto& c : cases)
        EXPECT_EQ(rq::parseYyyymmdd(c.text).value_or(0), c.date) << c.text;
}

TEST(UpgradePackages, NewestValidDateWins) {
    rqtest::TempDir dir;
    EXPECT_FALSE(rq::newestUpgradePackage(dir.str())); // no Upgrade folder
    fs::create_directories(dir.path() / "Upgrade");
    for (const char* name : {"rqupdate20240101.rqp", "xrqupdate20250601.rqp",
                             "rqupdate20251301.rqp", "update20991231.rqp", "rqupdate2026.rqp"})
        rqtest::writeFile(dir.path() / "Upgrade" / name, "x");
    auto best = rq::newestUpgradePackage(dir.str());
    ASSERT_TRUE(best);
    EXPECT_EQ(best->date, 20250601);
    EXPECT_EQ(best->path, (dir.path() / "Upgrade" / "xrqupdate20250601.rqp").string());
}

TEST(UpgradePackages, VersionFile) {
    rqtest::TempDir dir;
    const std::string file = dir.file("version");
    struct Case {
        const char* content; // nullptr = no file
        bool upToDate;
    } cases[] = {
        {nullptr, false},
        {"Movaro V1.0 x\n20240601\n", true},
        {"Movaro V1.0 x\n20240602\n", true},
        {"Movaro V1.0 x\n20240531\n", false},
        {"Movaro V1.0 x\n20241301\n", false}, // month 13
        {"Movaro V2.0 x\n20990101\n", false}, // no marker
        {"Movaro V1.0 x\n", false},
        {"Movaro V1.0\r\n20991231\r\n", true},
    };
    for (const auto& c : cases) {
        fs::remove(file);
        if (c.content)
            rqtest::writeFile(file, c.content);
        EXPECT_EQ(rq::deviceUpToDate(file, 20240601), c.upToDate)
            << (c.content ? c.content : "(none)");
    }
}

} // namespace

// Help > User Guide finds the guide beside the program in the build tree and in
// share/doc of an installed program directory.

#include "core/FileUtil.h"

#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

TEST(UserGuide, FoundInTheBuildTreeThenBesideAnInstalledProgramDirectory) {
    rqtest::TempDir root;
    const fs::path prefix = root.file("usr");
    const fs::path programDir = prefix / "lib" / "rqpdev";
    fs::create_directories(programDir);
    EXPECT_EQ(rq::userGuidePath(programDir.string()), "");

    const fs::path installed = prefix / "share" / "doc" / "rqpdev" / "guide" / "index.html";
    fs::create_directories(installed.parent_path());
    rqtest::writeFile(installed, "<html></html>");
    EXPECT_EQ(rq::userGuidePath(programDir.string()), fs::canonical(installed).string());

    // The build tree's own guide comes first.
    fs::create_directories(programDir / "guide");
    rqtest::writeFile(programDir / "guide" / "index.html", "<html></html>");
    EXPECT_EQ(rq::userGuidePath(programDir.string()),
              fs::canonical(programDir / "guide" / "index.html").string());
}

} // namespace

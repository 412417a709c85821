// The example project uses every section; opening and saving it again must give
// back every file byte for byte, and it must pass the project check.

#include "core/FileUtil.h"
#include "project/Project.h"
#include "project/ProjectCheck.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

using namespace rq;
namespace fs = std::filesystem;

TEST(DemoProject, ResavesByteForByteAndChecksClean) {
    const fs::path demo = fs::path(std::getenv("RQ_SOURCE_DIR")) / "data/examples/demo";
    rqtest::TempDir dir;
    fs::copy(demo, dir.path() / "demo", fs::copy_options::recursive);
    Catalogs catalogs;
    catalogs.loadFrom(rqtest::programDir());
    rqtest::RecordingSink sink;
    Project p(catalogs, sink);
    std::string error;
    ASSERT_TRUE(p.doc.open(dir.file("demo"), &error)) << error;
    EXPECT_TRUE(sink.entries.empty());
    for (int i = 1; i < kSectionCount; ++i)
        for (const auto& [what, n] : p.doc.section(i).counts())
            EXPECT_GT(n, 0u) << kSectionFiles[i] << " " << what << ": the demo leaves it empty";
    ASSERT_TRUE(p.doc.saveAll().ok());
    for (const char* file : kSectionFiles)
        EXPECT_EQ(rqtest::readFile(dir.path() / "demo" / file), rqtest::readFile(demo / file))
            << file;

    ReadContext ctx{sink, &catalogs.hmi, &catalogs.io, {}};
    auto system = loadSystemDatabase(catalogs.programDir, ctx);
    ASSERT_NE(system, nullptr) << ctx.error;
    EXPECT_EQ(checkProject(p, system.get()), std::vector<std::string>{});
}

// Whole-file writing: through symbolic links, under a file-size limit; and the
// check of values that the writers store unescaped.

#include "core/FileUtil.h"
#include "core/StorableValue.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace rq;
using rqtest::readFile;
using rqtest::TempDir;
using rqtest::writeFile;
namespace fs = std::filesystem;

namespace {

// Names in the directory that start with a dot: temporaries left behind.
int dotFiles(const fs::path& dir) {
    int n = 0;
    for (const auto& e : fs::directory_iterator(dir))
        n += e.path().filename().string()[0] == '.';
    return n;
}

} // namespace

TEST(WriteFileAtomic, WritesThroughASymbolicLink) {
    TempDir dir;
    fs::create_directory(dir.path() / "shared");
    writeFile(dir.path() / "shared/device.xml", "old");
    fs::create_symlink("shared/device.xml", dir.path() / "device.xml");
    std::string error;
    ASSERT_TRUE(writeFileAtomic(dir.file("device.xml"), "new", &error)) << error;
    EXPECT_TRUE(fs::is_symlink(dir.path() / "device.xml"));
    EXPECT_EQ(readFile(dir.path() / "shared/device.xml"), "new");
    EXPECT_EQ(dotFiles(dir.path()) + dotFiles(dir.path() / "shared"), 0);
}

TEST(WriteFileAtomic, AFileSizeLimitIsAnErrorNotADeath) {
    TempDir dir;
    writeFile(dir.path() / "big.xml", "old");
    pid_t pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        rlimit limit{4096, 4096};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        std::string error;
        bool written = writeFileAtomic(dir.file("big.xml"), std::string(100000, 'x'), &error);
        ::_exit(!written && error.find("too large") != std::string::npos ? 0 : 3);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(pid, &status, 0), pid);
    ASSERT_TRUE(WIFEXITED(status)) << "killed by signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(readFile(dir.path() / "big.xml"), "old");
    EXPECT_EQ(dotFiles(dir.path()), 0);
}

TEST(WriteFileAtomic, ReplacesTheFileOnlyWhenTheCheckPasses) {
    TempDir dir;
    writeFile(dir.path() / "rtdb.xml", "old");
    for (const bool passes : {false, true}) {
        std::string error, seen;
        const bool written =
            writeFileAtomic(dir.file("rtdb.xml"), "new", &error, [&](std::string* reason) {
                seen = readFile(dir.path() / "rtdb.xml"); // the old file, while writing
                *reason = "refused";
                return passes;
            });
        EXPECT_EQ(written, passes);
        EXPECT_EQ(seen, "old");
        EXPECT_EQ(error, passes ? "" : "refused");
        EXPECT_EQ(readFile(dir.path() / "rtdb.xml"), passes ? "new" : "old");
        EXPECT_EQ(dotFiles(dir.path()), 0);
    }
}

TEST(StorableValue, NamesTheFieldAndTheCharacters) {
    EXPECT_FALSE(checkStorableValue("Project Name", "Tank A (R-1) > 2").has_value());
    auto m = checkStorableValue("Project Name", "Tank \"A\" R&D");
    ASSERT_TRUE(m.has_value());
    EXPECT_NE(m->find("\"Project Name\""), std::string::npos) << *m;
    EXPECT_NE(m->find("'\"', '&'"), std::string::npos) << *m;
    EXPECT_EQ(unstorableCharactersIn("<b>"), "'<'");
}

// The reference scripts of the program directory, run as the tool runs them.
#include "core/FileUtil.h"
#include "deploy/process/ProcessRunner.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

int sh(const std::string& line) {
    return std::system(
        ("cd " + rq::shellQuote(rq::programDirectory()) + " && " + line + " 2>/dev/null").c_str());
}

TEST(ToolchainScripts, UploadRefusesUnsafeArchivesWhole) {
    struct Case {
        const char* name;
        const char* tarOptions; // how the archive is made from files a and b
        bool accepted;
    } cases[] = {
        {"plain", "a b", true},          {"dotdot", "--transform=s,^b,../b, a b", false},
        {"absolute", "-P a ABS", false}, {"link", "a link", false},
        {"fifo", "a fifo", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        rqtest::TempDir src, target;
        rqtest::writeFile(src.path() / "a", "A");
        rqtest::writeFile(src.path() / "b", "B");
        fs::create_symlink("/etc/hostname", src.path() / "link");
        ASSERT_EQ(::mkfifo((src.path() / "fifo").c_str(), 0600), 0);
        // Modes of the archive are not restored: no set-user-ID file comes out.
        fs::permissions(src.path() / "a", fs::perms(04777));
        fs::create_directories(target.path() / "upload");
        std::string options = c.tarOptions;
        if (auto at = options.find("ABS"); at != std::string::npos)
            options.replace(at, 3, (src.path() / "b").string());
        const std::string archive = (target.path() / "upload" / "rqupdate.tar.gz").string();
        ASSERT_EQ(std::system(("cd " + rq::shellQuote(src.str()) + " && tar -czf " +
                               rq::shellQuote(archive) + " " + options + " 2>/dev/null")
                                  .c_str()),
                  0);
        const int status = sh("./upload.sh " + rq::shellQuote(target.str()));
        EXPECT_EQ(status == 0, c.accepted);
        EXPECT_EQ(fs::exists(target.path() / "a"), c.accepted); // nothing half-done
        if (c.accepted) {
            EXPECT_EQ(fs::status(target.path() / "a").permissions() & fs::perms::set_uid,
                      fs::perms::none);
        }
        EXPECT_FALSE(fs::exists(target.path().parent_path() / "b") &&
                     rqtest::readFile(target.path().parent_path() / "b") == "B");
    }
}

TEST(ToolchainScripts, DownloadArchivesTheProjectWithoutWorkingFolders) {
    rqtest::TempDir project, out;
    for (const char* f : {"rqrun.xml", "data/x.bin", "src/u.c", "download/old.rqp",
                          "upload/rqupdate.rqp", "logo/logo.gz", "compile/userfunc.h"}) {
        fs::create_directories((project.path() / f).parent_path());
        rqtest::writeFile(project.path() / f, f);
    }
    ASSERT_EQ(sh("./download.sh " + rq::shellQuote(project.str())), 0);
    const fs::path archive = project.path() / "download" / "rqupdate.tar.gz";
    ASSERT_TRUE(fs::exists(archive));
    EXPECT_FALSE(fs::exists(project.path() / "download" / ".rqupdate.list"));
    ASSERT_EQ(std::system(("tar -xzf " + rq::shellQuote(archive.string()) + " -C " +
                           rq::shellQuote(out.str()))
                              .c_str()),
              0);
    EXPECT_EQ(rqtest::readFile(out.path() / "data" / "x.bin"), "data/x.bin");
    EXPECT_TRUE(fs::exists(out.path() / "rqrun.xml"));
    EXPECT_TRUE(fs::exists(out.path() / "src" / "u.c"));
    for (const char* d : {"download", "upload", "logo", "compile"})
        EXPECT_FALSE(fs::exists(out.path() / d)) << d;
}

} // namespace

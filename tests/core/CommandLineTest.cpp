#include "core/CommandLine.h"

#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

namespace {

using Args = std::vector<std::string>;

struct SplitCase {
    const char* line;
    Args args;
};

TEST(CommandLine, SplitsLikeTheWindowsRuntime) {
    const SplitCase cases[] = {
        {"", {}},
        {"   ", {}},
        {"rqrun \"/p/demo\"", {"rqrun", "/p/demo"}},
        {"rqrun \"/my dir/x\" 1 10.0.0.2 8200 200 200 ",
         {"rqrun", "/my dir/x", "1", "10.0.0.2", "8200", "200", "200"}},
        {"RQDev *\"/p\"*w.xml", {"RQDev", "*/p*w.xml"}},
        {"Ladrune *\"/a b/c\"*ladder.xml", {"Ladrune", "*/a b/c*ladder.xml"}},
        {"\"my prog\" a\tb", {"my prog", "a", "b"}},
        {"p a\\b \\\\\"c d\"", {"p", "a\\b", "\\c d"}},
        {"p \\\"x\\\"", {"p", "\"x\""}},
        {"p \"a\"\"b\"", {"p", "a\"b"}},
        {"p \"\"", {"p", ""}},
        {"p \"open", {"p", "open"}},
        {"c:\\bin\\p\\ x", {"c:\\bin\\p\\", "x"}},
    };
    for (const SplitCase& c : cases)
        EXPECT_EQ(rq::splitCommandLine(c.line), c.args) << "line: [" << c.line << "]";
}

bool waitForFile(const std::filesystem::path& p) {
    for (int i = 0; i < 500; ++i) {
        if (std::filesystem::exists(p) && std::filesystem::file_size(p) > 0)
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

TEST(CommandLine, LaunchesFromTheProgramDirectoryWithSplitArguments) {
    rqtest::TempDir dir;
    const std::string out = dir.file("out.txt");
    rqtest::writeFile(dir.path() / "echoargs",
                      "#!/bin/sh\n{ pwd; for a in \"$@\"; do echo \"[$a]\"; done; } > " + out +
                          ".tmp && mv " + out + ".tmp " + out + "\n");
    std::filesystem::permissions(dir.path() / "echoargs", std::filesystem::perms::owner_all);

    std::string error;
    ASSERT_TRUE(rq::launchDetached(dir.str(), "echoargs *\"/x y\"*f.xml 1 ", &error)) << error;
    ASSERT_TRUE(waitForFile(out));
    EXPECT_EQ(rqtest::readFile(out),
              std::filesystem::canonical(dir.path()).string() + "\n[*/x y*f.xml]\n[1]\n");
}

TEST(CommandLine, MissingOrUnrunnableProgramNamesProgramAndDirectory) {
    rqtest::TempDir dir;
    rqtest::writeFile(dir.path() / "notexec", "#!/bin/sh\n");
    std::filesystem::permissions(dir.path() / "notexec", std::filesystem::perms::owner_read);
    rqtest::writeFile(dir.path() / "badformat", "not a program");
    std::filesystem::permissions(dir.path() / "badformat", std::filesystem::perms::owner_all);

    for (const char* line : {"rqrun \"/p\"", "notexec", "badformat"}) {
        std::string error;
        EXPECT_FALSE(rq::launchDetached(dir.str(), line, &error)) << line;
        std::string program = rq::splitCommandLine(line)[0];
        EXPECT_NE(error.find("\"" + program + "\""), std::string::npos) << error;
        EXPECT_NE(error.find(dir.str()), std::string::npos) << error;
    }
    std::string error;
    EXPECT_FALSE(rq::launchDetached(dir.str(), "  ", &error));
    EXPECT_FALSE(error.empty());
}

} // namespace

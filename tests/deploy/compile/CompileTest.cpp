#include "deploy/compile/CompileCommands.h"
#include "deploy/compile/CompileSession.h"
#include "project/Project.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

TEST(CompileCommands, VariablesCarryTheFieldsWithTheProjectDirectory) {
    auto m = rq::moduleCompileCommand("/p", "mod", "-DX=1", "\"%PRJ_DIR%/a.c\" ");
    using V = std::vector<std::pair<std::string, std::string>>;
    EXPECT_EQ(m.variables, (V{{"PRJ_DIR", "/p"},
                              {"MdlName", "mod"},
                              {"CFLAGS", "-DX=1"},
                              {"LDFLAGS", " \"/p/a.c\" "}}));
    EXPECT_EQ(m.shellLine(), "export PRJ_DIR=\"/p\" MdlName=\"mod\" CFLAGS=\"-DX=1\" "
                             "LDFLAGS=' \"/p/a.c\" ' && ./RqGenMdl.sh");

    auto p = rq::projectCompileCommand("/d ir", "%PRJ_DIR%", "\"%PRJ_DIR%/w.c\" ",
                                       "\"%PRJ_DIR%/h.c\" \"%PRJ_DIR%/l.a\" ");
    EXPECT_EQ(p.variables, (V{{"PRJ_DIR", "/d ir"},
                              {"CFLAGS", "%PRJ_DIR%"}, // defines are not replaced
                              {"LDFLAGS", " \"/d ir/w.c\" "},
                              {"LDFLAGS_LINUX", " \"/d ir/h.c\" \"/d ir/l.a\" "}}));
    EXPECT_EQ(p.shellLine().substr(p.shellLine().find("&& ")), "&& ./RqGenDll.sh \"/d ir\"");
}

TEST(CompileCommands, ValuesThatWouldBreakTheShellStayOneWord) {
    rqtest::TempDir dir;
    const std::string nasty = "a&b;c $HOME `x` 'q' \"d\"\\";
    auto c = rq::moduleCompileCommand(dir.str(), nasty, nasty, nasty);
    c.script = "printf '%s|%s|%s' \"$MdlName\" \"$CFLAGS\" \"$LDFLAGS\" >" +
               rq::shellQuote(dir.file("out"));
    ASSERT_EQ(std::system(c.shellLine().c_str()), 0);
    EXPECT_EQ(rqtest::readFile(dir.file("out")), nasty + "|" + nasty + "| " + nasty);
}

TEST(CompileCommands, UserHeaderLine) {
    struct Case {
        const char* field;
        const char* text;
    } cases[] = {
        {"", ""},
        {"my.h", "#include\"my.h\"\n"},
        {"\"my.h\"", "#include\"my.h\"\n"},
        {"<stdio.h>", "#include\"<stdio.h>\"\n"},
        {"%PRJ_DIR%/inc/u.h", "#include\"/p/inc/u.h\"\n"},
        {"\"%PRJ_DIR%/u.h\"", "#include\"/p/u.h\"\n"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(rq::userFuncHeaderText(c.field, "/p"), c.text) << c.field;
}

TEST(CompileSession, ChecksComeBeforeAnyStart) {
    rq::CompileSession s;
    EXPECT_EQ(s.compileModule("", {"m", "", "\"a.c\" "}),
              "Do not choose project directory, please save project before!");
    EXPECT_EQ(s.compileModule("/p", {"", "", "\"a.c\" "}),
              "module name is empty,please input module name!");
    EXPECT_EQ(s.compileModule("/p", {"m", "", ""}),
              "source file is empty,please input source name!");
    EXPECT_TRUE(s.buttonsEnabled());
}

struct Recorder : rq::CompileSession::Listener {
    std::mutex m;
    std::vector<int> codes;
    void onCompileEvent(int code, const std::string&) override {
        std::lock_guard lock(m);
        codes.push_back(code);
    }
};

TEST(CompileSession, ModuleBuildsWithTheReferenceToolchain) {
    rqtest::TempDir dir;
    rqtest::writeFile(dir.path() / "m.c", "int m_value(void) { return MVAL; }\n");
    Recorder rec;
    rq::CompileSession s(&rec);
    ASSERT_EQ(s.compileModule(dir.str(), {"mod", "-DMVAL=3", "\"%PRJ_DIR%/m.c\" "}), std::nullopt);
    EXPECT_EQ(s.status(), "Compiling, waiting...");
    ASSERT_TRUE(s.waitFinished(60s));
    EXPECT_EQ(s.exitCode(), 0) << s.output();
    EXPECT_EQ(s.output(), rq::kDefaultCompileOutput);
    EXPECT_EQ(s.status(), "Compile complete, output information:");
    EXPECT_TRUE(s.buttonsEnabled());
    EXPECT_TRUE(fs::exists(dir.path() / "mod.so"));
    s.stop();
    std::lock_guard lock(rec.m);
    ASSERT_GE(rec.codes.size(), 2u);
    EXPECT_EQ(rec.codes.front(), 0);
    EXPECT_EQ(rec.codes.back(), 1);
}

TEST(CompileSession, CompilerErrorsAreShownAfterTheFinish) {
    rqtest::TempDir dir;
    rqtest::writeFile(dir.path() / "bad.c", "int broken( { }\n");
    rq::CompileSession s;
    ASSERT_EQ(s.compileModule(dir.str(), {"bad", "", "\"%PRJ_DIR%/bad.c\" "}), std::nullopt);
    ASSERT_TRUE(s.waitFinished(60s));
    EXPECT_NE(s.exitCode(), 0);
    EXPECT_NE(s.output().find("bad.c"), std::string::npos) << s.output();
    EXPECT_FALSE(fs::exists(dir.path() / "bad.so"));
}

TEST(CompileSession, ProjectCompileSavesFieldsWritesHeaderAndBuildsLibrary) {
    rqtest::TempDir dir;
    rq::Catalogs catalogs;
    rq::SilentSink sink;
    rq::Project project(catalogs, sink);
    project.model().name = "p";
    project.model().projectDirectory = dir.str();
    rqtest::writeFile(dir.path() / "u.h", "#define UVAL 7\n");
    rqtest::writeFile(dir.path() / "f.c", "#include \"userfunc.h\"\nint f(void){return UVAL;}\n");
    rq::CompileSession s;
    ASSERT_EQ(s.compileProject(project.doc, {"-DA", "", "%PRJ_DIR%/u.h", "\"%PRJ_DIR%/f.c\" "}),
              std::nullopt);
    ASSERT_TRUE(s.waitFinished(60s));
    EXPECT_EQ(s.exitCode(), 0) << s.output();
    EXPECT_EQ(rqtest::readFile(dir.path() / "compile" / "userfunc.h"),
              "#include\"" + dir.str() + "/u.h\"\n");
    EXPECT_TRUE(fs::exists(dir.path() / "libhmiuserfun.so"));
    EXPECT_EQ(project.model().libs_linux, "\"%PRJ_DIR%/f.c\" ");
    std::string saved = rqtest::readFile(dir.path() / "rqrun.xml");
    EXPECT_NE(saved.find("libs_linux=\"&quot;%PRJ_DIR%/f.c&quot; \""), std::string::npos) << saved;
}

} // namespace

namespace {

TEST(CompileSession, ProjectCompileStopsWhenProjectFileOrHeaderCannotBeWritten) {
    rq::Catalogs catalogs;
    rq::SilentSink sink;
    // A non-empty directory where a file must go cannot be replaced by the file.
    for (const char* blocked : {"rqrun.xml", "compile/userfunc.h"}) {
        rqtest::TempDir dir;
        fs::create_directories(dir.path() / blocked / "keep");
        rq::Project project(catalogs, sink);
        project.model().projectDirectory = dir.str();
        rq::CompileSession s;
        auto problem = s.compileProject(project.doc, {"", "", "h.h", ""});
        ASSERT_TRUE(problem.has_value()) << blocked;
        EXPECT_NE(problem->find((dir.path() / blocked).string()), std::string::npos) << *problem;
        EXPECT_TRUE(s.lastCommandLine().empty()) << blocked;
        EXPECT_TRUE(s.buttonsEnabled());
    }
}

} // namespace

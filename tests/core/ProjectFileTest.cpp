// The project file rqrun.xml and the stored form of the download password.

#include "core/ProjectFile.h"
#include "core/HmiDeviceCatalog.h"
#include "core/PasswordCodec.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace rq;
using rqtest::crlf;
using rqtest::TempDir;
using rqtest::writeFile;

namespace {

HmiDeviceCatalog catalog() {
    TempDir dir;
    writeFile(dir.path() / "h.xml",
              "<hmidevices><hmidevice name=\"T800\" screen_width=\"800\"/></hmidevices>");
    HmiDeviceCatalog c;
    c.LoadHmiDeviceCatalog(dir.file("h.xml"));
    return c;
}

} // namespace

TEST(ProjectFile, WritesTheFiveLines) {
    HmiDeviceCatalog c = catalog();
    ProjectModel p;
    p.name = "demo";
    p.description = "a<b";
    p.hmiType = c.FindByName("T800");
    p.slaveIp = "192.168.0.10";
    p.defines = "-DX=\"1\"";
    p.libs = "a&b";
    p.libs_linux = "l";
    p.include = "<i.h>";
    std::string out;
    writeProjectFile(p, out);
    EXPECT_EQ(out, crlf("<?xml version=\"1.0\" ?>\n"
                        "<rqrun name=\"demo\" description=\"a<b\" devicename=\"T800\">\n"
                        "\t<slaveip addr=\"192.168.0.10\"/>\n"
                        "\t<compile defines=\"-DX=&quot;1&quot;\" libs=\"a&amp;b\" "
                        "libs_linux=\"l\" include=\"&lt;i.h&gt;\"/>\n"
                        "</rqrun>\n"));
}

TEST(ProjectFile, RoundTripsAndAppliesTheReadingRules) {
    HmiDeviceCatalog c = catalog();
    TempDir dir;
    ProjectModel p;
    p.name = "n";
    p.hmiType = c.FindByName("T800");
    p.downloadPassword = "secret";
    p.libs = "L";
    std::string out;
    writeProjectFile(p, out);
    EXPECT_NE(out.find("description=\"\" downloadpwd=\""), std::string::npos);
    writeFile(dir.path() / "rqrun.xml", out);
    ProjectModel back;
    std::string error;
    ASSERT_TRUE(readProjectFile(dir.file("rqrun.xml"), back, c, &error)) << error;
    EXPECT_EQ(back.downloadPassword, "secret");
    EXPECT_EQ(back.hmiType, p.hmiType);
    EXPECT_EQ(back.libs_linux, "L"); // empty libs_linux takes libs

    // Unknown HMI type, no children, last element wins, unknown elements skipped.
    writeFile(dir.path() / "rqrun.xml",
              "<rqrun name=\"x\" devicename=\"T999\"><slaveip addr=\"1\"/><junk/>"
              "<slaveip addr=\"2\"/><compile libs=\"a\" libs_linux=\"b\"/></rqrun>");
    ProjectModel q;
    q.downloadPassword = "kept";
    ASSERT_TRUE(readProjectFile(dir.file("rqrun.xml"), q, c, &error));
    EXPECT_EQ(q.hmiType, nullptr);
    EXPECT_EQ(q.slaveIp, "2");
    EXPECT_EQ(q.libs_linux, "b");
    EXPECT_EQ(q.downloadPassword, "kept"); // no downloadpwd: left as it was
    out.clear();
    writeProjectFile(q, out);
    EXPECT_EQ(out.find("devicename"), std::string::npos);

    for (const char* bad :
         {"<RQRUN name=\"x\"/>", "<rqrun name=\"a<b\"/>", "<rqrun downloadpwd=\"not base64!\"/>"}) {
        writeFile(dir.path() / "rqrun.xml", bad);
        ProjectModel r;
        error.clear();
        EXPECT_FALSE(readProjectFile(dir.file("rqrun.xml"), r, c, &error)) << bad;
        EXPECT_FALSE(error.empty()) << bad;
    }
}

TEST(PasswordCodec, SizesRandomnessAndLongPasswords) {
    struct Case {
        size_t length;
        size_t encodedSize;
    } cases[] = {{0, 84}, {6, 84}, {7, 84}, {8, 96}, {320, 512}, {328, 524}};
    for (const auto& c : cases) {
        std::string pw(c.length, 'p');
        for (size_t i = 0; i < pw.size(); ++i)
            pw[i] = static_cast<char>('a' + i % 26);
        std::string stored = PasswordCodec::scramble(pw);
        EXPECT_EQ(stored.size(), c.encodedSize) << c.length;
        EXPECT_EQ(PasswordCodec::unscramble(stored).value(), pw) << c.length;
    }
    // Two scramblings of one password differ, even within one second.
    std::string a = PasswordCodec::scramble("same"), b = PasswordCodec::scramble("same");
    EXPECT_NE(a, b);
    EXPECT_EQ(PasswordCodec::unscramble(a), PasswordCodec::unscramble(b));
    // A password of 8 bytes gets a second block of zeros: 55 + 16 bytes.
    EXPECT_EQ(base64Decode(PasswordCodec::scramble("12345678"))->size(), 71u);
    // Damaged values are refused, not misread.
    EXPECT_FALSE(PasswordCodec::unscramble("abc").has_value());
    EXPECT_FALSE(PasswordCodec::unscramble(base64Encode("short")).has_value());
}

TEST(Base64, AgreesWithTheStandardVectors) {
    const char* vectors[][2] = {{"", ""},
                                {"f", "Zg=="},
                                {"fo", "Zm8="},
                                {"foo", "Zm9v"},
                                {"foob", "Zm9vYg=="},
                                {"fooba", "Zm9vYmE="},
                                {"foobar", "Zm9vYmFy"}};
    for (const auto& v : vectors) {
        EXPECT_EQ(base64Encode(v[0]), v[1]);
        EXPECT_EQ(base64Decode(v[1]).value(), v[0]);
    }
    EXPECT_FALSE(base64Decode("Zm=v").has_value());
    EXPECT_FALSE(base64Decode("Zg=").has_value());
}

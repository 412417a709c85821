// The shared reading pattern, the attribute helpers and the device code page.

#include "core/Xml.h"
#include "core/TextEncoding.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>

using namespace rq;
using rqtest::TempDir;
using rqtest::writeFile;

TEST(EscapeXmlAttr, ReplacesAmpersandFirst) {
    EXPECT_EQ(EscapeXmlAttr("a&lt;b"), "a&amp;lt;b");
    EXPECT_EQ(EscapeXmlAttr("\"<'>&"), "&quot;&lt;&apos;&gt;&amp;");
    EXPECT_EQ(EscapeXmlAttr("plain"), "plain");
}

TEST(ReadAttr, NumbersTextsAndAbsence) {
    XmlDocument doc;
    std::string error;
    ASSERT_TRUE(doc.loadMemory("<r a=\"0x1F\" b=\"12abc\" c=\"abc\" d=\"x10\" e=\"-7\" "
                               "f=\"99999999999\" t=\"t&amp;u\"/>",
                               "m", "r", &error))
        << error;
    struct Case {
        const char* attr;
        int32_t expected;
    } cases[] = {{"a", 31}, {"b", 12}, {"c", 0}, {"d", 0}, {"e", -7}, {"f", INT32_MAX}};
    for (const auto& c : cases) {
        int32_t v = 555;
        EXPECT_TRUE(ReadAttrNumber(doc.root(), c.attr, v)) << c.attr;
        EXPECT_EQ(v, c.expected) << c.attr;
    }
    int32_t untouched = 42;
    EXPECT_FALSE(ReadAttrNumber(doc.root(), "missing", untouched));
    EXPECT_EQ(untouched, 42);
    EXPECT_EQ(ReadAttrText(doc.root(), "t"), "t&u");
    EXPECT_EQ(ReadAttrText(doc.root(), "missing"), "");
    EXPECT_EQ(parseDecimal("  42x"), 42);
    EXPECT_EQ(parseDecimal("-"), 0);
}

TEST(XmlDocument, RefusesBadInputWithAReason) {
    TempDir dir;
    struct Case {
        const char* name;
        std::string bytes;
        const char* root;
        const char* reasonPart;
    } cases[] = {
        {"malformed", "<a><b></a>", "a", "line"},
        {"wrong root", "<RQRUN/>", "rqrun", "<RQRUN>"},
        {"empty", "", "a", ""},
        {"binary", std::string("\x00\x01\x02", 3), "a", ""},
    };
    for (const auto& c : cases) {
        writeFile(dir.path() / "f.xml", c.bytes);
        XmlDocument doc;
        std::string error;
        EXPECT_FALSE(doc.load(dir.file("f.xml"), c.root, &error)) << c.name;
        EXPECT_NE(error.find(c.reasonPart), std::string::npos) << c.name << ": " << error;
        EXPECT_EQ(doc.root(), nullptr);
    }
    XmlDocument missing;
    std::string error;
    EXPECT_FALSE(missing.load(dir.file("nothing.xml"), "a", &error));
    EXPECT_NE(error.find("No such file"), std::string::npos) << error;
}

TEST(XmlDocument, ReadsEveryEncodingItMayMeet) {
    TempDir dir;
    const std::string chinese = "\xE4\xB8\xAD\xE6\x96\x87"; // two characters, UTF-8
    auto gb = Utf8ToGb2312(chinese);
    ASSERT_TRUE(gb.has_value());
    struct Case {
        const char* name;
        std::string bytes;
    } cases[] = {
        {"utf-8 without declaration", "<r v=\"" + chinese + "\"/>"},
        {"gb2312 bytes without declaration", "<?xml version=\"1.0\" ?>\r\n<r v=\"" + *gb + "\"/>"},
        {"declared GB2312", "<?xml version=\"1.0\" encoding=\"GB2312\"?><r v=\"" + *gb + "\"/>"},
        {"declared gb2312", "<?xml version=\"1.0\" encoding=\"gb2312\"?><r v=\"" + *gb + "\"/>"},
    };
    for (const auto& c : cases) {
        writeFile(dir.path() / "f.xml", c.bytes);
        XmlDocument doc;
        std::string error;
        ASSERT_TRUE(doc.load(dir.file("f.xml"), "r", &error)) << c.name << ": " << error;
        EXPECT_EQ(ReadAttrText(doc.root(), "v"), chinese) << c.name;
    }
}

TEST(DeviceCodePage, ConvertsAndKeepsWhatItCannotHold) {
    setDeviceCodePage("GB2312");
    const std::string chinese = "\xE4\xB8\xAD"; // in GB2312
    const std::string snowman = "\xE2\x98\x83"; // not in GB2312
    EXPECT_FALSE(Utf8ToGb2312(snowman).has_value());
    EXPECT_FALSE(Utf8ToGb2312("\xFF").has_value());
    EXPECT_EQ(Utf8ToGb2312(chinese).value(), "\xD6\xD0");
    EXPECT_EQ(toDeviceXml("<a v=\"" + chinese + snowman + "\"/>"), "<a v=\"\xD6\xD0&#x2603;\"/>");
    EXPECT_EQ(toDeviceXml("ascii only"), "ascii only");
    EXPECT_EQ(fromDeviceBytes("\xD6\xD0"), chinese);
    EXPECT_EQ(toDeviceBytes(snowman), snowman); // not holdable: passed on whole
    setDeviceCodePage("UTF-8");
    EXPECT_EQ(toDeviceXml(chinese), chinese);
    setDeviceCodePage("GB2312");
    EXPECT_TRUE(isValidUtf8(chinese + "abc"));
    EXPECT_FALSE(isValidUtf8("\xC0\xAF"));     // overlong
    EXPECT_FALSE(isValidUtf8("\xED\xA0\x80")); // surrogate
    EXPECT_FALSE(isValidUtf8("\xE4\xB8"));     // cut short
}

// What must never reach the parser: files that block or never end, entity
// declarations that expand without bound, and bytes in no code page the tool knows.
TEST(XmlDocument, RefusesFilesThatCouldHangOrExplode) {
    TempDir dir;
    ASSERT_EQ(::mkfifo(dir.file("fifo.xml").c_str(), 0644), 0);
    std::filesystem::create_symlink("/dev/zero", dir.path() / "zero.xml");
    std::filesystem::create_directory(dir.path() / "dir.xml");
    writeFile(dir.path() / "real.xml", "<a/>");
    std::filesystem::create_symlink(dir.path() / "real.xml", dir.path() / "link.xml");
    for (const char* name : {"fifo.xml", "zero.xml", "dir.xml"}) {
        XmlDocument doc;
        std::string error;
        EXPECT_FALSE(doc.load(dir.file(name), "a", &error)) << name;
        EXPECT_NE(error.find("not a regular file"), std::string::npos) << name << ": " << error;
    }
    XmlDocument linked;
    EXPECT_TRUE(linked.load(dir.file("link.xml"), "a", nullptr));

    const std::string entities[] = {
        "<!DOCTYPE a [<!ENTITY e \"xxxxxxxxxx\">]><a v=\"&e;&e;\"/>",
        "<!DOCTYPE a [<!ENTITY % p \"x\">]><a/>",
        "<!DOCTYPE a [<!ENTITY e SYSTEM \"file:///etc/passwd\">]><a>&e;</a>",
        "<?xml version=\"1.0\" encoding=\"GB2312\"?><!DOCTYPE a [<!ENTITY e \"x\">]><a/>",
        "<!DOCTYPE a [<!ENTITY e \"\xD6\xD0\">]><a/>", // second parse, in the code page
    };
    for (const std::string& bytes : entities) {
        writeFile(dir.path() / "f.xml", bytes);
        XmlDocument doc;
        std::string error;
        EXPECT_FALSE(doc.load(dir.file("f.xml"), "a", &error)) << bytes;
        EXPECT_NE(error.find("declares an entity"), std::string::npos) << error;
    }
    writeFile(dir.path() / "f.xml", "<!DOCTYPE a><a v=\"&amp;\"/>"); // no entity: fine
    XmlDocument plain;
    EXPECT_TRUE(plain.load(dir.file("f.xml"), "a", nullptr));

    const std::pair<std::string, const char*> foreign[] = {
        {"<?xml version=\"1.0\" ?>\r\n<a v=\"\x81\x40\"/>", "line 2, byte 7 (0x81)"}, // GBK only
        {"<a>\n<b v=\"caf\xE9 \"/></a>", "line 2, byte 10 (0xE9)"},                   // Latin-1
    };
    for (const auto& [bytes, where] : foreign) {
        writeFile(dir.path() / "f.xml", bytes);
        XmlDocument doc;
        std::string error;
        EXPECT_FALSE(doc.load(dir.file("f.xml"), "a", &error));
        EXPECT_NE(error.find(where), std::string::npos) << error;
        EXPECT_NE(error.find("neither UTF-8 nor the device code page"), std::string::npos);
    }
}

// Inputs found by the fuzz targets, kept so that the faults stay fixed.

#include "TestSupport.h"

#include "core/TextEncoding.h"
#include "core/Xml.h"

#include <gtest/gtest.h>

namespace {

// Saves a one-attribute file as the project does and reads it back.
std::string savedAndReopened(const std::string& value) {
    rqtest::TempDir dir;
    const std::string path = dir.file("a.xml");
    rqtest::writeFile(path,
                      rq::toDeviceXml("<?xml version=\"1.0\" ?>\r\n<r a=\"" + value + "\"/>\r\n"));
    rq::XmlDocument doc;
    std::string error;
    EXPECT_TRUE(doc.load(path, "r", &error)) << error;
    return doc.root() ? rq::ReadAttrText(doc.root(), "a") : std::string();
}

// GB2312 bytes that are valid UTF-8 as well came back as other characters: "小" is
// D0 A1 in GB2312, which reads as UTF-8 "С"; the fuzzer's case was text read in
// GB2312 from a damaged UTF-8 file ("娓╁害" is E6 B8 A9 E5 BA A6, UTF-8 "温度").
TEST(FuzzRegression, TextSavedInGb2312ReadsBackTheSame) {
    rq::setDeviceCodePage("GB2312");
    for (const char* text : {"小", "娓╁害PID", "小 ß", "中文", "温度PID", "plain"})
        EXPECT_EQ(savedAndReopened(text), text);
}

// Text whose GB2312 form is not UTF-8 keeps its GB2312 bytes.
TEST(FuzzRegression, Gb2312BytesStayWhenTheyCannotBeMistaken) {
    rq::setDeviceCodePage("GB2312");
    EXPECT_EQ(rq::toDeviceXml("<r a=\"中文\"/>"), "<r a=\"\xD6\xD0\xCE\xC4\"/>");
    EXPECT_EQ(rq::toDeviceXml("<r a=\"小\"/>"), "<r a=\"&#x5C0F;\"/>");
}

} // namespace

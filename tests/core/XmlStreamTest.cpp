// The streaming reader against the tree reader: on every input, the same verdict,
// the same reason, the same elements and the same attribute values.

#include "core/XmlStream.h"
#include "core/TextEncoding.h"
#include "core/Xml.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace rq;
using rqtest::TempDir;
using rqtest::writeFile;

namespace {

// Names every reader asks for, present or not, with and without DTD defaults.
const char* const kAsked[] = {"name", "a", "b", "c", "d", "t", "n", "p:y"};

void describeAsked(std::string& out, auto&& text, auto&& has, auto&& number) {
    for (const char* a : kAsked) {
        if (!has(a))
            continue;
        int32_t n = -999;
        number(a, n);
        out += std::string(" ") + a + "=[" + text(a) + "]#" + std::to_string(n);
    }
}

void describeNode(const xmlNode* n, int depth, std::string& out) {
    out += std::string(depth, ' ') + reinterpret_cast<const char*>(n->name);
    if (n->type == XML_ELEMENT_NODE)
        for (const xmlAttr* a = n->properties; a; a = a->next)
            out +=
                std::string(" @") + (a->ns ? "ns:" : "") + reinterpret_cast<const char*>(a->name);
    describeAsked(
        out, [&](const char* a) { return ReadAttrText(n, a); },
        [&](const char* a) { return HasAttr(n, a); },
        [&](const char* a, int32_t& v) { return ReadAttrNumber(n, a, v); });
    out += '\n';
}

// The children the tree readers see through isElement (elements, processing
// instructions, entity references), with their attributes, as text.
void walkTree(const xmlNode* parent, int depth, std::string& out) {
    for (const xmlNode* n = parent->children; n; n = n->next) {
        if (n->type != XML_ELEMENT_NODE && n->type != XML_PI_NODE && n->type != XML_ENTITY_REF_NODE)
            continue;
        describeNode(n, depth, out);
        walkTree(n, depth + 1, out);
    }
}

void describeCurrent(XmlStream& s, int depth, std::string& out) {
    out += std::string(depth, ' ') + std::string(s.name());
    for (std::size_t i = 0; i < s.attributeCount(); ++i)
        out += std::string(" @") + (s.attribute(i).namespaced ? "ns:" : "") +
               std::string(s.attribute(i).name);
    describeAsked(
        out, [&](const char* a) { return s.attr(a); }, [&](const char* a) { return s.hasAttr(a); },
        [&](const char* a, int32_t& v) { return s.attrNumber(a, v); });
    out += '\n';
}

void walkStream(XmlStream& s, int depth, std::string& out) {
    for (auto c = s.children(); c.next();) {
        describeCurrent(s, depth, out);
        walkStream(s, depth + 1, out);
    }
}

struct Outcome {
    bool ok;
    std::string error;
    std::string content;
};

Outcome viaTree(const std::string& path, const char* root) {
    XmlDocument doc;
    Outcome o{};
    o.ok = doc.load(path, root, &o.error);
    if (o.ok) {
        describeNode(doc.root(), 0, o.content);
        walkTree(doc.root(), 1, o.content);
    }
    return o;
}

Outcome viaStream(const XmlInput& input, const char* root) {
    Outcome o{};
    int runs = 0;
    o.ok = readXml(input, root, &o.error, [&](XmlStream& s) {
        ++runs;
        o.content.clear();
        describeCurrent(s, 0, o.content);
        walkStream(s, 1, o.content);
        return true;
    });
    if (!o.ok)
        o.content.clear();
    return o;
}

std::string repeated(const std::string& piece, int times) {
    std::string out;
    for (int i = 0; i < times; ++i)
        out += piece;
    return out;
}

} // namespace

TEST(XmlStream, AgreesWithTheTreeReaderOnEveryInput) {
    setDeviceCodePage("GB2312");
    const std::string gb = "\xD6\xD0\xCE\xC4"; // two characters in GB2312
    const std::string big = repeated("<data name=\"n\" t=\"x&amp;y\" a=\"1\"><i/></data>\n", 6500);
    const std::string cases[] = {
        // values: entities, references, white space normalised or kept
        "<r a=\"x &amp; y &lt;&gt;&quot;&apos;\" b=\"1&#10;2&#9;3&#38;\" c=\"t\tu\nv\r\nw\"/>",
        "<r>\r\n\t<e name=\" a  b \" n=\"0x1F\"/><e n=\"-7\" b=\"12abc\"/><e "
        "n=\"99999999999\"/></r>",
        "\xEF\xBB\xBF<r a=\"\xC3\xA9\"/>",                  // UTF-8 with its byte order mark
        "<r a=\"" + gb + "\"><e name=\"" + gb + "\"/></r>", // code page
        "<?xml version=\"1.0\" ?>\r\n<r>\r\n<e name=\"" + gb + "\"/>\n<x></r>", // both bad
        "<?xml version=\"1.0\" encoding=\"GB2312\"?><r a=\"" + gb + "\"/>",
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><r a=\"caf\xE9\"/>",
        "<r a=\"\xFF\xFF\"/>",                            // in neither
        "<r><e></x>" + gb + "</r>",                       // malformed before the code page
        "<!DOCTYPE r [<!ENTITY e \"x\">]><r a=\"&e;\"/>", // entity refused
        "<r><e/></r><r/>",
        "<r><e>",
        "<r><e a=\"1></e></r>",
        "",
        "   ",
        std::string("\0\1", 2),
        "<?xml version=\"1.0\"?>",
        "<x/>",
        "<x><y></x>",
        "<rr/>",
        // namespaces, DTD defaults and normalised types, processing instructions
        "<r xmlns:p=\"u\" p:name=\"1\" name=\"2\" p:y=\"3\"/>",
        "<r q:name=\"1\" name=\"2\"/>",
        "<!DOCTYPE r [<!ATTLIST e d CDATA \"x&amp;y\" t NMTOKENS #IMPLIED>]>"
        "<r><e t=\"  a   b \"/><e d=\"own\"/></r>",
        "<r><?data x?><data name=\"n\"/><!--c--><![CDATA[t]]>text<e/></r>",
        "<!DOCTYPE r SYSTEM \"none.dtd\"><r><data>&data;</data></r>",
        "<r>" + big + "</r>",
        "<r>" + big + "</r><",
        "<r>" + big,
        "<r>" + big + gb + "</r>",
        "\xFF\xFE<\0r\0/\0>\0",
        std::string("<r/>\0\0junk\xFF", 10),
        std::string("<r>\0</r>", 9),
        "<?xml version=\"1.0\" encoding=\"GB2312\"?><r><e name=\"a\"/><e name=\"\xA0n\"/></r>",
    };
    TempDir dir;
    int index = 0;
    for (const std::string& bytes : cases) {
        SCOPED_TRACE("case " + std::to_string(index++) + ": " + bytes.substr(0, 80));
        const std::string path = dir.file("f.xml");
        writeFile(path, bytes);
        for (const char* root : {"r", ""}) {
            const Outcome tree = viaTree(path, root);
            for (const XmlInput& input : {XmlInput::file(path), XmlInput::memory(bytes, path)}) {
                const Outcome stream = viaStream(input, root);
                EXPECT_EQ(stream.ok, tree.ok);
                EXPECT_EQ(stream.error, tree.error);
                EXPECT_EQ(stream.content, tree.content);
            }
        }
    }
    std::filesystem::create_directory(dir.path() / "d.xml");
    for (const char* name : {"d.xml", "missing.xml"}) {
        const Outcome tree = viaTree(dir.file(name), "r");
        const Outcome stream = viaStream(XmlInput::file(dir.file(name)), "r");
        EXPECT_FALSE(stream.ok);
        EXPECT_EQ(stream.error, tree.error);
    }
}

// A reader that stops early, skips subtrees or reads a code-page file twice.
TEST(XmlStream, SkipsWhatIsNotReadAndRunsAgainInTheCodePage) {
    setDeviceCodePage("GB2312");
    const std::string file = "<r><a><b><c/></b></a><d name=\"1\"/><d name=\"\xD6\xD0\"/></r>";
    int runs = 0;
    std::string names, error;
    ASSERT_TRUE(readXml(XmlInput::memory(file, "m"), "r", &error, [&](XmlStream& s) {
        ++runs;
        names.clear();
        for (auto c = s.children(); c.next();)
            if (s.is("d"))
                names += s.attr("name") + ";";
        return true;
    })) << error;
    EXPECT_EQ(runs, 2); // UTF-8 first, then GB2312
    EXPECT_EQ(names, "1;\xE4\xB8\xAD;");

    XmlStream s;
    ASSERT_TRUE(s.openMemory("<r><a/><b/></r>", "m", "r", &error));
    auto c = s.children();
    ASSERT_TRUE(c.next());
    EXPECT_TRUE(s.is("a"));
    EXPECT_TRUE(s.finish(&error)) << error; // the rest is read, unseen

    EXPECT_TRUE(checkXmlWellFormed("<any/>", "m", &error));
    EXPECT_FALSE(checkXmlWellFormed("<a v=\"<\"/>", "m", &error));
    std::string treeError;
    XmlDocument doc;
    EXPECT_FALSE(doc.loadMemory("<a v=\"<\"/>", "m", "", &treeError));
    EXPECT_EQ(error, treeError);
}

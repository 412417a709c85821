#pragma once
// The common libxml2 reading pattern and the attribute helpers shared by every
// reader, and the attribute escaping of the writers.
//
// A reader does:
//     XmlDocument doc;
//     if (!doc.load(path, "rtdbs", &error)) return false;   // parse, root name check
//     for (xmlNode* n = doc.root()->children; n; n = n->next)
//         if (isElement(n, "rtdb")) readRtdb(n);              // unknown names skipped
// The document is freed when `doc` goes out of scope, on every way out.

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace rq {

// Replaces & " < > ' by their entities, ampersand first.
std::string EscapeXmlAttr(std::string_view text);

// Appends `prefix`, the value as it is (never escaped) and the closing quote: the
// writers' piece ` name="value"`, with the prefix holding ` name="`.
inline void appendAttr(std::string& out, std::string_view prefix, std::string_view value) {
    out.append(prefix);
    out.append(value);
    out.push_back('"');
}

class XmlDocument {
public:
    XmlDocument() = default;
    ~XmlDocument();
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;

    // Parses the file with blank text nodes dropped. A file without an encoding
    // declaration whose bytes are not UTF-8 is parsed in the device code page. Fails
    // (with a one-line reason in *error) when the file is not a regular file (after
    // following links: a FIFO or a device would block or never end), cannot be read
    // or parsed, declares an entity, holds bytes in neither UTF-8 nor the device code
    // page, has no root element, or its root is not named `expectedRoot` (exact,
    // byte for byte). An empty expectedRoot accepts any root.
    bool load(const std::string& path, std::string_view expectedRoot, std::string* error);
    // The same on bytes in memory (the name is used in messages only).
    bool loadMemory(std::string_view bytes, const std::string& name, std::string_view expectedRoot,
                    std::string* error);

    xmlDoc* doc() const { return doc_; }
    xmlNode* root() const;
    // The encoding declared in the file's XML declaration, or empty.
    std::string declaredEncoding() const;

private:
    bool parse(std::string_view bytes, const std::string& name, std::string* error);
    bool accept(std::string_view expectedRoot, std::string* error);
    xmlDoc* doc_ = nullptr;
};

// True when the node's name is exactly `name` (the node type is not looked at,
// so comments and text nodes are skipped only because their names differ).
bool isElement(const xmlNode* node, const char* name);

// The attribute's value as text (UTF-8), empty when absent.
std::string ReadAttrText(const xmlNode* element, const char* attributeName);
// The attribute's value exactly as libxml2 gives it, with no conversion step.
std::string ReadAttrRaw(const xmlNode* element, const char* attributeName);
// False, leaving value untouched, when absent; otherwise base 16 when the text
// holds "0x" anywhere, else base 10, stopping at the first character that does not
// fit (no digits gives 0).
bool ReadAttrNumber(const xmlNode* element, const char* attributeName, int32_t& value);
// Whether the attribute is present at all.
bool HasAttr(const xmlNode* element, const char* attributeName);

// The C library's atoi on a text: leading blanks, optional sign, digits up to the
// first other character; no digits gives 0. Readers use it to turn number texts
// into integers.
int32_t parseDecimal(std::string_view text);

} // namespace rq

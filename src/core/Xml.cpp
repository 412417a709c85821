#include "core/Xml.h"

#include "core/TextEncoding.h"

#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>

namespace rq {

std::string EscapeXmlAttr(std::string_view text) {
    std::string out;
    out.reserve(text.size() + 8);
    for (char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '\'':
            out += "&apos;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

namespace {

void ignoreGenericError(void*, const char*, ...) {}
void ignoreStructuredError(void*, xmlErrorPtr) {}

// Every parse: the library version check and no blank text nodes, errors kept out
// of standard error (they reach the caller as text).
int prepareParser() {
    xmlCheckVersion(20510);
    xmlSetGenericErrorFunc(nullptr, ignoreGenericError);
    xmlSetStructuredErrorFunc(nullptr, ignoreStructuredError);
    return XML_PARSE_NOBLANKS | XML_PARSE_NONET | XML_PARSE_COMPACT;
}

std::string describe(const xmlError* err) {
    if (!err || !err->message)
        return "the file is not well-formed XML";
    std::string msg = err->message;
    while (!msg.empty() && (msg.back() == '\n' || msg.back() == ' '))
        msg.pop_back();
    if (err->line > 0)
        return "line " + std::to_string(err->line) + ": " + msg;
    return msg;
}

// The encoding named in the XML declaration at the start of the bytes, or empty.
std::string declarationEncoding(std::string_view head) {
    if (head.substr(0, 5) != "<?xml")
        return {};
    auto end = head.find("?>");
    std::string_view decl = head.substr(0, end == std::string_view::npos ? head.size() : end);
    auto pos = decl.find("encoding");
    if (pos == std::string_view::npos)
        return {};
    pos = decl.find_first_of("\"'", pos);
    if (pos == std::string_view::npos)
        return {};
    char quote = decl[pos];
    auto close = decl.find(quote, pos + 1);
    if (close == std::string_view::npos)
        return {};
    return std::string(decl.substr(pos + 1, close - pos - 1));
}

// Whether a whole file holds valid UTF-8, read in pieces.
bool fileIsUtf8(const std::string& path) {
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f)
        return true;
    std::string buf(1 << 16, '\0');
    std::string carry;
    bool ok = true;
    for (;;) {
        size_t n = std::fread(buf.data(), 1, buf.size(), f);
        if (n == 0)
            break;
        std::string piece = carry + buf.substr(0, n);
        // Keep an incomplete sequence at the end for the next piece.
        size_t cut = piece.size();
        for (size_t back = 1; back <= 3 && back <= piece.size(); ++back) {
            unsigned char c = piece[piece.size() - back];
            if ((c & 0xC0) == 0xC0) {
                int len = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : 2;
                if (static_cast<size_t>(len) > back)
                    cut = piece.size() - back;
                break;
            }
            if ((c & 0x80) == 0)
                break;
        }
        if (!isValidUtf8(std::string_view(piece).substr(0, cut))) {
            ok = false;
            break;
        }
        carry = piece.substr(cut);
    }
    std::fclose(f);
    return ok && carry.empty();
}

} // namespace

XmlDocument::~XmlDocument() {
    if (doc_)
        xmlFreeDoc(doc_);
}

xmlNode* XmlDocument::root() const {
    return doc_ ? xmlDocGetRootElement(doc_) : nullptr;
}

std::string XmlDocument::declaredEncoding() const {
    if (!doc_ || !doc_->encoding)
        return {};
    return reinterpret_cast<const char*>(doc_->encoding);
}

// One parse through `read` (given the parser context, an encoding or null, and the
// options); when it fails and `inDeviceCodePage` says the bytes are not UTF-8 and
// declare nothing, the bytes are read again in the device code page: a file the
// tool wrote carries no declaration.
bool XmlDocument::parse(const std::function<xmlDoc*(xmlParserCtxtPtr, const char*, int)>& read,
                        const std::function<bool()>& inDeviceCodePage, std::string* error) {
    if (doc_) {
        xmlFreeDoc(doc_);
        doc_ = nullptr;
    }
    const int options = prepareParser();
    xmlParserCtxtPtr ctxt = xmlNewParserCtxt();
    if (!ctxt) {
        if (error)
            *error = "out of memory";
        return false;
    }
    doc_ = read(ctxt, nullptr, options);
    std::string reason = doc_ ? std::string() : describe(xmlCtxtGetLastError(ctxt));
    if (!doc_ && inDeviceCodePage()) {
        const char* cp = deviceCodePageIsUtf8() ? "GB2312" : deviceCodePage().c_str();
        xmlCtxtReset(ctxt);
        doc_ = read(ctxt, cp, options);
        if (!doc_)
            reason = describe(xmlCtxtGetLastError(ctxt));
    }
    xmlFreeParserCtxt(ctxt);
    if (!doc_ && error)
        *error = reason;
    return doc_ != nullptr;
}

bool XmlDocument::load(const std::string& path, std::string_view expectedRoot, std::string* error) {
    std::string head;
    {
        std::ifstream in(path, std::ios::binary);
        if (!in) {
            if (error)
                *error = std::strerror(errno ? errno : ENOENT);
            return false;
        }
        head.resize(256);
        in.read(head.data(), head.size());
        head.resize(static_cast<size_t>(in.gcount()));
    }
    auto read = [&](xmlParserCtxtPtr ctxt, const char* encoding, int options) {
        return xmlCtxtReadFile(ctxt, path.c_str(), encoding, options);
    };
    auto inDeviceCodePage = [&] { return declarationEncoding(head).empty() && !fileIsUtf8(path); };
    return parse(read, inDeviceCodePage, error) && accept(expectedRoot, error);
}

bool XmlDocument::loadMemory(std::string_view bytes, const std::string& name,
                             std::string_view expectedRoot, std::string* error) {
    if (bytes.size() > static_cast<size_t>(INT_MAX)) {
        if (error)
            *error = "the file is too large";
        return false;
    }
    auto read = [&](xmlParserCtxtPtr ctxt, const char* encoding, int options) {
        return xmlCtxtReadMemory(ctxt, bytes.data(), static_cast<int>(bytes.size()), name.c_str(),
                                 encoding, options);
    };
    auto inDeviceCodePage = [&] {
        return declarationEncoding(bytes.substr(0, 256)).empty() && !isValidUtf8(bytes);
    };
    return parse(read, inDeviceCodePage, error) && accept(expectedRoot, error);
}

bool XmlDocument::accept(std::string_view expectedRoot, std::string* error) {
    xmlNode* r = root();
    if (!r) {
        xmlFreeDoc(doc_);
        doc_ = nullptr;
        if (error)
            *error = "the file has no root element";
        return false;
    }
    if (!expectedRoot.empty() &&
        std::string_view(reinterpret_cast<const char*>(r->name)) != expectedRoot) {
        std::string found = reinterpret_cast<const char*>(r->name);
        xmlFreeDoc(doc_);
        doc_ = nullptr;
        if (error)
            *error = "the root element is <" + found + ">, not <" + std::string(expectedRoot) + ">";
        return false;
    }
    return true;
}

bool isElement(const xmlNode* node, const char* name) {
    return node && node->name && std::strcmp(reinterpret_cast<const char*>(node->name), name) == 0;
}

std::string ReadAttrRaw(const xmlNode* element, const char* attributeName) {
    xmlChar* v = xmlGetProp(element, reinterpret_cast<const xmlChar*>(attributeName));
    if (!v)
        return {};
    std::string out(reinterpret_cast<const char*>(v));
    xmlFree(v);
    return out;
}

// libxml2 hands out every value in UTF-8, which is the in-memory encoding here
// whatever the file declares (a GB2312 file's values are converted by the parser),
// so the value is taken as it is.
std::string ReadAttrText(const xmlNode* element, const char* attributeName) {
    return ReadAttrRaw(element, attributeName);
}

bool HasAttr(const xmlNode* element, const char* attributeName) {
    return xmlHasProp(element, reinterpret_cast<const xmlChar*>(attributeName)) != nullptr;
}

static int32_t clampToInt32(long long v) {
    if (v > INT32_MAX)
        return INT32_MAX;
    if (v < INT32_MIN)
        return INT32_MIN;
    return static_cast<int32_t>(v);
}

bool ReadAttrNumber(const xmlNode* element, const char* attributeName, int32_t& value) {
    xmlChar* v = xmlGetProp(element, reinterpret_cast<const xmlChar*>(attributeName));
    if (!v)
        return false;
    const char* text = reinterpret_cast<const char*>(v);
    int base = std::strstr(text, "0x") ? 16 : 10;
    long long parsed = std::strtoll(text, nullptr, base);
    value = clampToInt32(parsed);
    xmlFree(v);
    return true;
}

int32_t parseDecimal(std::string_view text) {
    size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r')))
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        negative = text[i] == '-';
        ++i;
    }
    long long v = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        v = v * 10 + (text[i] - '0');
        if (v > (1ll << 32))
            break;
    }
    return clampToInt32(negative ? -v : v);
}

} // namespace rq

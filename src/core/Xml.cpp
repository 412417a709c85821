#include "core/Xml.h"
#include "core/XmlParse.h"

#include "core/FileUtil.h"
#include "core/TextEncoding.h"

#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

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

} // namespace

// Every parse: the library version check and no blank text nodes, errors kept out
// of standard error (they reach the caller as text).
int prepareParser() {
    xmlCheckVersion(20510);
    xmlSetGenericErrorFunc(nullptr, ignoreGenericError);
    xmlSetStructuredErrorFunc(nullptr, ignoreStructuredError);
    return XML_PARSE_NOBLANKS | XML_PARSE_NONET | XML_PARSE_COMPACT;
}

std::string describeXmlError(const xmlError* err) {
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

namespace {

// The parser stops at the first entity declaration: project and catalog files
// declare none, and an entity used many times can take gigabytes to expand. The
// flag of the parse in progress on this thread records it.
thread_local bool* entityDeclaredFlag = nullptr;

void refuseEntity(void* ctx, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
    if (entityDeclaredFlag)
        *entityDeclaredFlag = true;
    xmlStopParser(static_cast<xmlParserCtxtPtr>(ctx));
}

void refuseUnparsedEntity(void* ctx, const xmlChar*, const xmlChar*, const xmlChar*,
                          const xmlChar*) {
    refuseEntity(ctx, nullptr, 0, nullptr, nullptr, nullptr);
}

} // namespace

const char* const kEntityRefused =
    "the file declares an entity (<!ENTITY ...>); project files use none, so it is not read";

std::string notInEitherCodePage(std::string_view bytes, size_t offset, const char* codePage) {
    size_t line = 1, lineStart = 0;
    for (size_t i = 0; i < offset && i < bytes.size(); ++i)
        if (bytes[i] == '\n') {
            ++line;
            lineStart = i + 1;
        }
    char hex[8];
    std::snprintf(hex, sizeof hex, "0x%02X",
                  offset < bytes.size() ? static_cast<unsigned char>(bytes[offset]) : 0u);
    return "line " + std::to_string(line) + ", byte " + std::to_string(offset - lineStart + 1) +
           " (" + hex + "): the file is neither UTF-8 nor the device code page (" + codePage + ")";
}

const char* fallbackCodePage() {
    return deviceCodePageIsUtf8() ? "GB2312" : deviceCodePage().c_str();
}

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

// One parse of the bytes; when it fails and the bytes are not UTF-8 and declare no
// encoding, they are read again in the device code page: a file the tool wrote
// carries no declaration.
xmlDoc* parseXmlBytes(std::string_view bytes, const std::string& name, bool buildTree,
                      std::string* reason, const char** codePage, bool fallback) {
    if (codePage)
        *codePage = nullptr;
    if (bytes.size() > static_cast<size_t>(INT_MAX)) {
        if (reason)
            *reason = "the file is too large";
        return nullptr;
    }
    const int options = prepareParser();
    xmlParserCtxtPtr ctxt = xmlNewParserCtxt();
    if (!ctxt) {
        if (reason)
            *reason = "out of memory";
        return nullptr;
    }
    bool entityDeclared = false;
    entityDeclaredFlag = &entityDeclared;
    ctxt->sax->entityDecl = refuseEntity;
    ctxt->sax->unparsedEntityDecl = refuseUnparsedEntity;
    if (!buildTree) { // the verdict and its reason only
        ctxt->sax->startElementNs = nullptr;
        ctxt->sax->endElementNs = nullptr;
        ctxt->sax->characters = nullptr;
        ctxt->sax->ignorableWhitespace = nullptr;
        ctxt->sax->cdataBlock = nullptr;
        ctxt->sax->comment = nullptr;
        ctxt->sax->processingInstruction = nullptr;
        ctxt->sax->reference = nullptr;
    }
    auto read = [&](const char* encoding) {
        return xmlCtxtReadMemory(ctxt, bytes.data(), static_cast<int>(bytes.size()), name.c_str(),
                                 encoding, options);
    };
    auto failure = [&] {
        return entityDeclared ? std::string(kEntityRefused)
                              : describeXmlError(xmlCtxtGetLastError(ctxt));
    };
    xmlDoc* doc = read(nullptr);
    std::string why = doc ? std::string() : failure();
    if (!doc && fallback && !entityDeclared && declarationEncoding(bytes.substr(0, 256)).empty() &&
        !isValidUtf8(bytes)) {
        const char* cp = fallbackCodePage();
        if (std::optional<size_t> bad = firstByteNotIn(bytes, cp)) {
            why = notInEitherCodePage(bytes, *bad, cp);
        } else {
            xmlCtxtReset(ctxt);
            doc = read(cp);
            if (!doc)
                why = failure();
            else if (codePage)
                *codePage = cp;
        }
    }
    if (doc && entityDeclared) { // stopped parsers give no document; be sure
        xmlFreeDoc(doc);
        doc = nullptr;
        why = kEntityRefused;
    }
    entityDeclaredFlag = nullptr;
    xmlFreeParserCtxt(ctxt);
    if (!doc && reason)
        *reason = why;
    return doc;
}

bool XmlDocument::parse(std::string_view bytes, const std::string& name, std::string* error) {
    if (doc_) {
        xmlFreeDoc(doc_);
        doc_ = nullptr;
    }
    doc_ = parseXmlBytes(bytes, name, true, error, nullptr);
    return doc_ != nullptr;
}

bool XmlDocument::load(const std::string& path, std::string_view expectedRoot, std::string* error) {
    std::string bytes;
    if (!readRegularFile(path, bytes, error)) {
        if (doc_) {
            xmlFreeDoc(doc_);
            doc_ = nullptr;
        }
        return false;
    }
    return parse(bytes, path, error) && accept(expectedRoot, error);
}

bool XmlDocument::loadMemory(std::string_view bytes, const std::string& name,
                             std::string_view expectedRoot, std::string* error) {
    return parse(bytes, name, error) && accept(expectedRoot, error);
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

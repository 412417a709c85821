#include "core/XmlStream.h"

#include "core/FileUtil.h"
#include "core/TextEncoding.h"
#include "core/XmlParse.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <unistd.h>

namespace rq {

namespace {

// Frees the context with the document that libxml2 makes by itself in SAX mode
// to keep a declared entity (the parse is stopped there, but the document stays).
void freeContext(xmlParserCtxtPtr ctxt) {
    if (ctxt->myDoc)
        xmlFreeDoc(ctxt->myDoc);
    ctxt->myDoc = nullptr;
    xmlFreeParserCtxt(ctxt);
}

constexpr std::size_t kChunk = 256 * 1024;

const char* text(const unsigned char* s) {
    return reinterpret_cast<const char*>(s);
}

} // namespace

XmlStream::XmlStream() = default;

XmlStream::~XmlStream() {
    if (ctxt_)
        freeContext(ctxt_);
    if (fd_ >= 0)
        ::close(fd_);
}

bool XmlStream::open(const std::string& path, std::string_view expectedRoot, std::string* error) {
    return open(XmlInput::file(path), expectedRoot, error);
}

bool XmlStream::openMemory(std::string_view bytes, const std::string& name,
                           std::string_view expectedRoot, std::string* error) {
    return open(XmlInput::memory(bytes, name), expectedRoot, error);
}

bool XmlStream::open(const XmlInput& input, std::string_view expectedRoot, std::string* error) {
    if (fd_ >= 0) {
        ::close(fd_);
        fd_ = -1;
    }
    input_ = input;
    expectedRoot_ = std::string(expectedRoot);
    owned_.clear();
    codePage_ = nullptr;
    retry_ = false;
    ioError_.clear();
    long long size = static_cast<long long>(input_.bytes.size());
    if (!input_.inMemory) {
        fd_ = openRegularFile(input_.path, &size, error);
        if (fd_ < 0)
            return false;
    }
    if (size > INT_MAX) {
        if (error)
            *error = "the file is too large";
        return false;
    }
    if (!begin(nullptr)) {
        if (error)
            *error = ioError_.empty() ? "out of memory" : ioError_;
        return false;
    }
    if (toRoot(error))
        return true;
    return conclude(error) == Outcome::Retry && again(error);
}

void XmlStream::reset() {
    if (ctxt_) {
        freeContext(ctxt_);
        ctxt_ = nullptr;
    }
    events_.clear();
    attrs_.clear();
    arena_.clear();
    next_ = 0;
    offset_ = 0;
    parseDepth_ = 0;
    depth_ = 0;
    current_ = {};
    parsed_ = broken_ = entity_ = opened_ = discard_ = rootClosed_ = false;
    openError_.clear();
}

bool XmlStream::begin(const char* codePage) {
    reset();
    xmlSAXHandler sax;
    std::memset(&sax, 0, sizeof sax);
    sax.initialized = XML_SAX2_MAGIC;
    sax.startElementNs = onStart;
    sax.endElementNs = onEnd;
    sax.processingInstruction = onPi;
    sax.reference = onLeaf;
    sax.entityDecl = onEntity;
    sax.unparsedEntityDecl = onUnparsedEntity;
    const int options = prepareParser() | XML_PARSE_NOENT;
    if (codePage) {
        ctxt_ = xmlCreatePushParserCtxt(&sax, this, nullptr, 0, input_.name.c_str());
        if (!ctxt_)
            return false;
        xmlCtxtUseOptions(ctxt_, options);
        if (xmlCharEncodingHandlerPtr h = xmlFindCharEncodingHandler(codePage))
            xmlSwitchToEncoding(ctxt_, h);
        return true;
    }
    // The first four bytes go with the creation, for the parser to tell the
    // encoding from them as it does when it reads a whole file.
    const char* data = nullptr;
    std::size_t size = 0;
    if (!readChunk(data, size))
        return false;
    const std::size_t head = std::min<std::size_t>(size, 4);
    ctxt_ = xmlCreatePushParserCtxt(&sax, this, head ? data : nullptr, static_cast<int>(head),
                                    input_.name.c_str());
    if (!ctxt_)
        return false;
    xmlCtxtUseOptions(ctxt_, options);
    if (size > head)
        feed(data + head, size - head, false);
    else if (size == 0)
        feed(nullptr, 0, true);
    return true;
}

bool XmlStream::readChunk(const char*& data, std::size_t& size) {
    if (input_.inMemory) {
        data = input_.bytes.data() + offset_;
        size = std::min(kChunk, input_.bytes.size() - offset_);
        offset_ += size;
        return true;
    }
    chunk_.resize(kChunk);
    for (;;) {
        ssize_t n = ::read(fd_, chunk_.data(), chunk_.size());
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            ioError_ = std::strerror(errno);
            return false;
        }
        data = chunk_.data();
        size = static_cast<std::size_t>(n);
        offset_ += size;
        return true;
    }
}

bool XmlStream::feed(const char* data, std::size_t size, bool last) {
    const int rc = xmlParseChunk(ctxt_, data, static_cast<int>(size), last ? 1 : 0);
    // A conversion error halts the parser without a well-formedness error.
    if (!ctxt_->wellFormed || entity_ || rc == XML_ERR_INVALID_ENCODING ||
        (!last && ctxt_->instate == XML_PARSER_EOF))
        broken_ = true;
    if (last)
        parsed_ = true;
    return !broken_;
}

bool XmlStream::fill() {
    events_.clear();
    attrs_.clear();
    arena_.clear();
    next_ = 0;
    while (events_.empty()) {
        if (parsed_ || broken_ || !ioError_.empty())
            return false;
        const char* data = nullptr;
        std::size_t size = 0;
        if (!readChunk(data, size))
            return false;
        feed(data, size, size == 0);
    }
    return true;
}

bool XmlStream::toRoot(std::string* error) {
    for (;;) {
        if (next_ == events_.size() && !fill())
            break;
        const Event& e = events_[next_++];
        if (e.kind != Event::Start)
            continue;
        depth_ = 1;
        current_ = {std::string_view(e.name, e.nameSize), e.firstAttr, e.written, e.defaulted,
                    false};
        if (!expectedRoot_.empty() && current_.name != expectedRoot_) {
            openError_ = "the root element is <" + std::string(current_.name) + ">, not <" +
                         expectedRoot_ + ">";
            (void)error;
            return false;
        }
        opened_ = true;
        return true;
    }
    openError_ = "the file has no root element";
    return false;
}

bool XmlStream::nextChild(int parentDepth) {
    if (parentDepth < 0 || depth_ < parentDepth)
        return false;
    for (;;) {
        if (next_ == events_.size() && !fill())
            return false;
        const Event& e = events_[next_++];
        switch (e.kind) {
        case Event::Start:
            if (++depth_ == parentDepth + 1) {
                current_ = {std::string_view(e.name, e.nameSize), e.firstAttr, e.written,
                            e.defaulted, false};
                return true;
            }
            break;
        case Event::Leaf:
            if (depth_ == parentDepth) {
                current_ = {std::string_view(e.name, e.nameSize), 0, 0, 0, true};
                return true;
            }
            break;
        case Event::End:
            if (--depth_ < parentDepth)
                return false;
            break;
        }
    }
}

const XmlStream::Attr* XmlStream::findAttr(std::string_view name) const {
    const std::uint32_t end = current_.firstAttr + current_.written;
    for (std::uint32_t i = current_.firstAttr; i < end; ++i)
        if (std::string_view(attrs_[i].name, attrs_[i].nameSize) == name)
            return &attrs_[i];
    // A default the DTD declares (never one for a prefixed attribute).
    for (std::uint32_t i = end; i < end + current_.defaulted; ++i)
        if (!attrs_[i].namespaced && std::string_view(attrs_[i].name, attrs_[i].nameSize) == name)
            return &attrs_[i];
    return nullptr;
}

std::string_view XmlStream::attrView(std::string_view name) const {
    const Attr* a = findAttr(name);
    return a ? attrValue(*a) : std::string_view();
}

bool XmlStream::hasAttr(std::string_view name) const {
    return findAttr(name) != nullptr;
}

bool XmlStream::attrNumber(std::string_view name, int32_t& value) const {
    const Attr* a = findAttr(name);
    if (!a)
        return false;
    const std::string text(attrValue(*a));
    const int base = text.find("0x") != std::string::npos ? 16 : 10;
    const long long parsed = std::strtoll(text.c_str(), nullptr, base);
    value = parsed > INT32_MAX   ? INT32_MAX
            : parsed < INT32_MIN ? INT32_MIN
                                 : static_cast<int32_t>(parsed);
    return true;
}

XmlStream::Attribute XmlStream::attribute(std::size_t index) const {
    const Attr& a = attrs_[current_.firstAttr + index];
    return {std::string_view(a.name, a.nameSize), attrValue(a), a.namespaced};
}

XmlStream::Outcome XmlStream::conclude(std::string* error) {
    discard_ = true;
    while (fill()) {
    }
    discard_ = false;
    auto fail = [&](const std::string& reason) {
        if (error)
            *error = reason;
        return Outcome::Failed;
    };
    if (!ioError_.empty())
        return fail(ioError_);
    if (entity_)
        return fail(kEntityRefused);
    if (!broken_)
        return opened_ ? Outcome::Ok : fail(openError_);
    // Not well-formed as read: the bytes whole decide, as XmlDocument decides.
    if (!input_.inMemory) {
        std::string why;
        if (!readRegularFile(input_.path, owned_, &why))
            return fail(why);
        input_ = XmlInput::memory(owned_, input_.name);
        if (fd_ >= 0) {
            ::close(fd_);
            fd_ = -1;
        }
    }
    // The parser reading the bytes whole may accept what the stream refused (it
    // takes a NUL byte after the root for the end of the file): then the stream,
    // which saw the whole root, holds everything the tree would.
    auto acceptedWhole = [&] {
        if (rootClosed_)
            return opened_ ? Outcome::Ok : fail(openError_);
        return fail(describeXmlError(xmlCtxtGetLastError(ctxt_)));
    };
    const std::string_view bytes = input_.bytes;
    std::string reason;
    if (!codePage_) {
        if (xmlDoc* doc = parseXmlBytes(bytes, input_.name, false, &reason, nullptr, false)) {
            xmlFreeDoc(doc);
            return acceptedWhole();
        }
        if (reason != kEntityRefused && declarationEncoding(bytes.substr(0, 256)).empty() &&
            !isValidUtf8(bytes)) {
            const char* cp = fallbackCodePage();
            if (std::optional<size_t> bad = firstByteNotIn(bytes, cp))
                return fail(notInEitherCodePage(bytes, *bad, cp));
            codePage_ = cp;
            retry_ = true;
            return Outcome::Retry;
        }
        return fail(reason);
    }
    if (xmlDoc* doc = parseXmlBytes(bytes, input_.name, false, &reason, nullptr)) {
        xmlFreeDoc(doc);
        return acceptedWhole();
    }
    return fail(reason);
}

bool XmlStream::finish(std::string* error) {
    return conclude(error) == Outcome::Ok;
}

bool XmlStream::again(std::string* error) {
    if (!retry_)
        return false;
    retry_ = false;
    if (!begin(codePage_)) {
        if (error)
            *error = "out of memory";
        return false;
    }
    if (toRoot(error))
        return true;
    conclude(error);
    return false;
}

void XmlStream::onStart(void* ctx, const unsigned char* localname, const unsigned char*,
                        const unsigned char*, int, const unsigned char**, int nbAttributes,
                        int nbDefaulted, const unsigned char** attributes) {
    auto* self = static_cast<XmlStream*>(ctx);
    ++self->parseDepth_;
    if (self->discard_)
        return;
    Event e{Event::Start,
            text(localname),
            static_cast<std::uint32_t>(std::strlen(text(localname))),
            static_cast<std::uint32_t>(self->attrs_.size()),
            static_cast<std::uint32_t>(nbAttributes - nbDefaulted),
            0};
    for (int i = 0; i < nbAttributes; ++i) {
        const unsigned char** a = attributes + 5 * i;
        const bool defaulted = i >= nbAttributes - nbDefaulted;
        const char* name = text(a[0]);
        if (a[1] && !a[2]) // an undeclared prefix stays part of the name
            name = text(xmlDictQLookup(self->ctxt_->dict, a[1], a[0]));
        if (defaulted && a[1])
            continue; // the tree readers never find a prefixed default
        const auto at = static_cast<std::uint32_t>(self->arena_.size());
        std::string_view value(text(a[3]), static_cast<std::size_t>(a[4] - a[3]));
        if (!defaulted) {
            self->arena_.append(value);
        } else {
            // The tree keeps a declared default as the DTD parse left it, with
            // '&' written as a character reference.
            for (char c : value)
                if (c == '&')
                    self->arena_.append("&#38;");
                else
                    self->arena_.push_back(c);
            ++e.defaulted;
        }
        self->attrs_.push_back({name, static_cast<std::uint32_t>(std::strlen(name)), at,
                                static_cast<std::uint32_t>(self->arena_.size() - at),
                                a[1] != nullptr && a[2] != nullptr});
    }
    self->events_.push_back(e);
}

void XmlStream::onEnd(void* ctx, const unsigned char*, const unsigned char*, const unsigned char*) {
    auto* self = static_cast<XmlStream*>(ctx);
    if (--self->parseDepth_ == 0)
        self->rootClosed_ = true;
    if (!self->discard_)
        self->events_.push_back({Event::End, nullptr, 0, 0, 0, 0});
}

void XmlStream::onLeaf(void* ctx, const unsigned char* name) {
    auto* self = static_cast<XmlStream*>(ctx);
    if (self->discard_ || self->parseDepth_ <= 0 || !name)
        return;
    self->events_.push_back(
        {Event::Leaf, text(name), static_cast<std::uint32_t>(std::strlen(text(name))), 0, 0, 0});
}

void XmlStream::onPi(void* ctx, const unsigned char* target, const unsigned char*) {
    onLeaf(ctx, target);
}

void XmlStream::onEntity(void* ctx, const unsigned char*, int, const unsigned char*,
                         const unsigned char*, unsigned char*) {
    auto* self = static_cast<XmlStream*>(ctx);
    self->entity_ = true;
    xmlStopParser(self->ctxt_);
}

void XmlStream::onUnparsedEntity(void* ctx, const unsigned char*, const unsigned char*,
                                 const unsigned char*, const unsigned char*) {
    onEntity(ctx, nullptr, 0, nullptr, nullptr, nullptr);
}

bool readXml(const XmlInput& input, std::string_view expectedRoot, std::string* error,
             const std::function<bool(XmlStream&)>& read) {
    XmlStream s;
    if (!s.open(input, expectedRoot, error))
        return false;
    for (;;) {
        const bool ok = read(s);
        if (s.finish(error))
            return ok;
        if (!s.again(error))
            return false;
    }
}

bool checkXmlWellFormed(std::string_view bytes, const std::string& name, std::string* error) {
    return readXml(XmlInput::memory(bytes, name), "", error, [](XmlStream&) { return true; });
}

} // namespace rq

#pragma once
// Reading an XML file element by element, without holding the file or a tree of
// it in memory: libxml2's push parser is fed the file in 256 KiB pieces and the
// elements it reports are handed out one at a time. The files it accepts, and the
// reasons it gives for the ones it refuses, are those of XmlDocument::load, text
// for text (regular-file check, entity refusal, the device code page for a file
// without declaration that is not UTF-8, "line N: ..." parse errors, the root
// check, "the file is too large"); attribute values are those ReadAttrText gives.
//
// A reader does:
//     return readXml(XmlInput::file(path), "rtdbs", &error, [&](XmlStream& s) {
//         clearResult();                           // the body may run twice
//         for (auto dbs = s.children(); dbs.next();) {  // children of the root
//             if (!s.is("rtdb"))
//                 continue;                        // skipped with all it holds
//             std::string name = s.attr("name");   // attributes first...
//             for (auto items = s.children(); items.next();) // ...then children
//                 if (s.is("data")) ...
//         }
//         return true;                             // false: refused, error set
//     });
// A section reader uses readSectionXml (SectionRead.h), which also holds back its
// messages and drops until the whole file has been read well.
//
// The stream stands at one element at a time: after open() at the root, after
// Children::next() at the child it returned. The element's name and attributes
// are valid until the stream moves on; read every attribute an element needs
// before going through its children. children() of the element the stream
// stands at gives its children in file order; a child not gone into is skipped
// with everything it holds. Like the tree readers, the stream also reports a
// processing instruction or an undeclared entity's reference inside an element as
// a child without attributes named by its target or entity name (isElement() on
// the tree matches those by name too); comments and text are not reported.
//
// Because the file is read while the reader works, a file can turn out to be
// malformed (or to be in the device code page) after the reader has taken part of
// it: the result counts only when finish() says the whole file was well-formed,
// and the reader may have to run again from the root (again()). readXml does both.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

struct _xmlParserCtxt;

namespace rq {

// Where the bytes come from: a file (read as it is parsed) or bytes in memory.
struct XmlInput {
    std::string path;       // a file, when bytes is not used
    std::string_view bytes; // bytes in memory (not copied: they must outlive the read)
    bool inMemory = false;
    std::string name; // the name used in messages (the path for a file)

    static XmlInput file(const std::string& path) { return {path, {}, false, path}; }
    static XmlInput memory(std::string_view bytes, const std::string& name) {
        return {{}, bytes, true, name};
    }
};

class XmlStream {
public:
    XmlStream();
    ~XmlStream();
    XmlStream(const XmlStream&) = delete;
    XmlStream& operator=(const XmlStream&) = delete;

    // Starts reading and moves to the root element. False (with XmlDocument's
    // reason) when the file is refused before or at its root; the reason of a
    // file that is malformed later comes from finish().
    bool open(const std::string& path, std::string_view expectedRoot, std::string* error);
    bool openMemory(std::string_view bytes, const std::string& name, std::string_view expectedRoot,
                    std::string* error);
    bool open(const XmlInput& input, std::string_view expectedRoot, std::string* error);

    // The children of the element the stream stands at.
    class Children {
    public:
        // Moves to the next child element; false at the end of the parent (or of
        // what could be read).
        bool next() { return stream_->nextChild(depth_); }

    private:
        friend class XmlStream;
        Children(XmlStream* stream, int depth) : stream_(stream), depth_(depth) {}
        XmlStream* stream_;
        int depth_;
    };
    Children children() { return Children(this, current_.leaf ? -1 : depth_); }
    // The same as a depth to pass to nextChild: `for (int d = s.depth(); s.nextChild(d);)`.
    int depth() const { return current_.leaf ? -1 : depth_; }
    bool nextChild(int parentDepth);

    // The element's name (without prefix), compared exactly.
    std::string_view name() const { return current_.name; }
    bool is(std::string_view name) const { return current_.name == name; }

    // Attributes, with the rules of ReadAttrText / ReadAttrNumber / HasAttr: the
    // first attribute of that name whatever its namespace, else a default the
    // document's DTD declares for it. attrView's text is valid until the stream
    // moves on; absent gives empty.
    std::string_view attrView(std::string_view name) const;
    std::string attr(std::string_view name) const { return std::string(attrView(name)); }
    bool hasAttr(std::string_view name) const;
    // False, leaving value untouched, when absent; else ReadAttrNumber's number.
    bool attrNumber(std::string_view name, int32_t& value) const;

    // The element's attributes as written, in file order (namespaced ones
    // included, DTD defaults not): for readers that take several in one walk.
    struct Attribute {
        std::string_view name; // local name; "p:name" for an undeclared prefix p
        std::string_view value;
        bool namespaced;
    };
    std::size_t attributeCount() const { return current_.written; }
    Attribute attribute(std::size_t index) const;

    // Reads what is left of the input. True when the whole input was well-formed,
    // the root was the expected one and open() succeeded; else false with the
    // reason of XmlDocument::load. After a false, again() tells whether the
    // reader is to run once more.
    bool finish(std::string* error);
    // After finish() gave false because the bytes are to be read in the device
    // code page: true, and the stream stands at the root again, read in it.
    // Otherwise false (with the reason in *error when the second reading fails
    // at once).
    bool again(std::string* error);

private:
    struct Event {
        enum Kind : std::uint8_t { Start, End, Leaf } kind;
        const char* name;
        std::uint32_t nameSize;
        std::uint32_t firstAttr;
        std::uint32_t written;   // attributes in the element
        std::uint32_t defaulted; // DTD defaults after them
    };
    struct Attr {
        const char* name;
        std::uint32_t nameSize;
        std::uint32_t valueAt;
        std::uint32_t valueSize;
        bool namespaced;
    };
    struct Current {
        std::string_view name;
        std::uint32_t firstAttr = 0, written = 0, defaulted = 0;
        bool leaf = false;
    };
    enum class Outcome { Ok, Failed, Retry };

    bool start(std::string* error);
    bool begin(const char* codePage);
    void reset();
    bool fill();
    bool feed(const char* data, std::size_t size, bool last);
    bool readChunk(const char*& data, std::size_t& size);
    Outcome conclude(std::string* error);
    bool toRoot(std::string* error);
    const Attr* findAttr(std::string_view name) const;
    std::string_view attrValue(const Attr& a) const {
        return std::string_view(arena_).substr(a.valueAt, a.valueSize);
    }

    static void onStart(void* ctx, const unsigned char* localname, const unsigned char* prefix,
                        const unsigned char* uri, int nbNamespaces,
                        const unsigned char** namespaces, int nbAttributes, int nbDefaulted,
                        const unsigned char** attributes);
    static void onEnd(void* ctx, const unsigned char*, const unsigned char*, const unsigned char*);
    static void onLeaf(void* ctx, const unsigned char* name);
    static void onPi(void* ctx, const unsigned char* target, const unsigned char*);
    static void onEntity(void* ctx, const unsigned char*, int, const unsigned char*,
                         const unsigned char*, unsigned char*);
    static void onUnparsedEntity(void* ctx, const unsigned char*, const unsigned char*,
                                 const unsigned char*, const unsigned char*);

    XmlInput input_;
    std::string expectedRoot_;
    std::string owned_; // the bytes of a file read whole for the code-page retry
    int fd_ = -1;
    std::size_t offset_ = 0; // of the next byte to feed
    std::string chunk_;
    _xmlParserCtxt* ctxt_ = nullptr;
    const char* codePage_ = nullptr; // set while reading in the fallback code page
    int parseDepth_ = 0;             // elements open in what the parser reported

    std::vector<Event> events_;
    std::vector<Attr> attrs_;
    std::string arena_;
    std::size_t next_ = 0; // first event not yet taken

    int depth_ = 0; // elements open at the reader's position
    Current current_;
    bool parsed_ = false;     // the parser has seen the end of the input
    bool broken_ = false;     // not well-formed, or stopped
    bool entity_ = false;     // an entity declaration stopped the parser
    bool opened_ = false;     // open() reached the expected root
    bool retry_ = false;      // again() is to read in the code page
    bool discard_ = false;    // reading to the end: elements are not kept
    bool rootClosed_ = false; // the parser reported the end of the root
    std::string ioError_;     // a read of the file failed
    std::string openError_;   // why open() refused a well-formed start
};

// Opens the input, runs `read` on the stream and finishes the input: true when
// read returned true and the whole input was well-formed with the expected root.
// `read` runs a second time, from the root, when the input turns out to be in the
// device code page; it must start from an empty result each time. When read
// returns false it sets *error; a parse failure of the input still takes
// precedence, as it would with XmlDocument.
bool readXml(const XmlInput& input, std::string_view expectedRoot, std::string* error,
             const std::function<bool(XmlStream&)>& read);

// A streaming pass that only says whether the bytes are well-formed, with
// XmlDocument::loadMemory's reason when not (any root accepted).
bool checkXmlWellFormed(std::string_view bytes, const std::string& name, std::string* error);

} // namespace rq

// Reading rtdb.xml: one function per element; elements of other names are skipped
// in children(). A project may hold hundreds of thousands of data items, so each
// element's attributes are taken in one walk over its attribute list (the values
// are those ReadAttrText gives, without its per-attribute search and copy), and
// lists and the namespace index are sized before they are filled.

#include "core/DataTypes.h"
#include "core/Xml.h"
#include "sections/rtdb/RtdbSection.h"

#include <cstring>
#include <string>
#include <unordered_set>

namespace rq {

namespace {

// The value of one attribute node, as xmlGetProp would give it.
std::string attrValue(const xmlAttr* attr) {
    const xmlNode* text = attr->children;
    if (!text)
        return {};
    if (text->type == XML_TEXT_NODE && !text->next && text->content)
        return reinterpret_cast<const char*>(text->content);
    xmlChar* v = xmlNodeListGetString(attr->doc, attr->children, 1);
    if (!v)
        return {};
    std::string out(reinterpret_cast<const char*>(v));
    xmlFree(v);
    return out;
}

// Fills the named fields from the element's attributes without a namespace; the
// names not present stay empty.
template <std::size_t N>
void readAttrs(const xmlNode* element, const char* const (&names)[N], std::string* (&&out)[N]) {
    for (const xmlAttr* a = element->properties; a; a = a->next) {
        if (a->ns || !a->name)
            continue;
        const char* name = reinterpret_cast<const char*>(a->name);
        for (std::size_t i = 0; i < N; ++i) {
            if (std::strcmp(name, names[i]) == 0) {
                *out[i] = attrValue(a);
                break;
            }
        }
    }
}

// Element children of a database or group, for sizing lists before reading.
std::size_t countItems(const xmlNode* element) {
    std::size_t n = 0;
    for (const xmlNode* c = element->children; c; c = c->next)
        n += isElement(c, "data") || isElement(c, "datalias");
    return n;
}

std::size_t countSubtree(const xmlNode* element) {
    std::size_t n = 0;
    for (const xmlNode* c = element->children; c; c = c->next)
        if (c->type == XML_ELEMENT_NODE)
            n += 1 + countSubtree(c);
    return n;
}

constexpr const char* kDatabaseExists = "The database already exist!";
constexpr const char* kGroupExists = "The data group already exist!";

// How a dropped element is named: its kind, its name if any, and where it stood.
std::string describe(const char* kind, const std::string& name, const DataNode* parent) {
    std::string out = kind;
    if (!name.empty())
        out += " \"" + name + "\"";
    if (parent && !parent->name().empty())
        out += " in \"" + parent->name() + "\"";
    return out;
}

class RtdbReader {
public:
    RtdbReader(DataNode& root, ReadContext& ctx) : root_(root), sink_(ctx.sink), ctx_(ctx) {}

    void rtdbs(const xmlNode* element) {
        for (const xmlNode* n = element->children; n; n = n->next)
            if (isElement(n, "rtdb"))
                rtdb(n);
    }

private:
    void rtdb(const xmlNode* element) {
        std::string name = ReadAttrText(element, "name");
        if (name.empty()) {
            ctx_.drop("rtdb", "no name; left out with all its content");
            return;
        }
        if (!databaseNames_.insert(name).second) {
            sink_.showMessage(kDatabaseExists, MessageIcon::Stop);
            ctx_.drop(describe("rtdb", name, nullptr),
                      "a second database of this name; left out with all its content");
            return;
        }
        std::string sync = ReadAttrText(element, "sync");
        bool synced = sync.empty() || parseDecimal(sync) != 0;
        DataNode& db = root_.addDatabase(std::move(name), synced);
        db.reserveNames(countSubtree(element));
        children(element, db);
    }

    // The content of a database or a data group.
    void children(const xmlNode* element, DataNode& node) {
        node.reserveItems(countItems(element));
        for (const xmlNode* n = element->children; n; n = n->next) {
            if (isElement(n, "datagroup"))
                datagroup(n, node);
            else if (isElement(n, "data"))
                data(n, node);
            else if (isElement(n, "datalias"))
                datalias(n, node);
        }
    }

    void datagroup(const xmlNode* element, DataNode& parent) {
        std::string name = ReadAttrText(element, "name");
        if (name.empty()) {
            ctx_.drop(describe("datagroup", name, &parent),
                      "no name; left out with all its content");
            return;
        }
        if (parent.nameInUse(name)) {
            sink_.showMessage(kGroupExists, MessageIcon::Stop);
            ctx_.drop(describe("datagroup", name, &parent),
                      "the name is already used in its database; left out with all its content");
            return;
        }
        DataNode& group = parent.addGroup(std::move(name));
        children(element, group);
    }

    void data(const xmlNode* element, DataNode& node) {
        static constexpr const char* kNames[] = {"name", "type", "length", "init", "description"};
        DataItem item;
        readAttrs(element, kNames,
                  {&item.name, &item.type, &item.length, &item.init, &item.description});
        if (item.name.empty() || item.type.empty()) {
            ctx_.drop(describe("data", item.name, &node),
                      item.name.empty() ? "no name; left out" : "no type; left out");
            return;
        }
        if (item.length.empty()) {
            int size = DataTypeTable::sizeOfKeyword(item.type);
            if (size < 1) {
                ctx_.drop(describe("data", item.name, &node),
                          "type \"" + item.type +
                              "\" has no fixed size and no length is given; left out");
                return;
            }
            item.length = std::to_string(size);
        }
        node.addItem(std::move(item));
    }

    void datalias(const xmlNode* element, DataNode& node) {
        static constexpr const char* kNames[] = {"aliasname", "name"};
        DataItem item;
        item.kind = DataItemKind::Alias;
        readAttrs(element, kNames, {&item.name, &item.target});
        if (item.name.empty() || item.target.empty()) {
            ctx_.drop(describe("datalias", item.name, &node),
                      item.name.empty() ? "no alias name; left out" : "no data named; left out");
            return;
        }
        node.addItem(std::move(item));
    }

    DataNode& root_;
    MessageSink& sink_;
    ReadContext& ctx_;
    std::unordered_set<std::string> databaseNames_;
};

} // namespace

bool RtdbSection::readDocument(XmlDocument& doc, ReadContext& ctx) {
    RtdbReader reader(root_, ctx);
    reader.rtdbs(doc.root());
    return true;
}

bool RtdbSection::read(const std::string& path, ReadContext& ctx) {
    clear();
    XmlDocument doc;
    if (!doc.load(path, "rtdbs", &ctx.error))
        return false;
    return readDocument(doc, ctx);
}

bool RtdbSection::readMemory(std::string_view bytes, const std::string& name, ReadContext& ctx) {
    clear();
    XmlDocument doc;
    if (!doc.loadMemory(bytes, name, "rtdbs", &ctx.error))
        return false;
    return readDocument(doc, ctx);
}

} // namespace rq

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

class RtdbReader {
public:
    RtdbReader(DataNode& root, MessageSink& sink) : root_(root), sink_(sink) {}

    void rtdbs(const xmlNode* element) {
        for (const xmlNode* n = element->children; n; n = n->next)
            if (isElement(n, "rtdb"))
                rtdb(n);
    }

private:
    void rtdb(const xmlNode* element) {
        std::string name = ReadAttrText(element, "name");
        if (name.empty())
            return;
        if (!databaseNames_.insert(name).second) {
            sink_.showMessage(kDatabaseExists, MessageIcon::Stop);
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
        if (name.empty())
            return;
        if (parent.nameInUse(name)) {
            sink_.showMessage(kGroupExists, MessageIcon::Stop);
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
        if (item.name.empty() || item.type.empty())
            return;
        if (item.length.empty()) {
            int size = DataTypeTable::sizeOfKeyword(item.type);
            if (size < 1)
                return;
            item.length = std::to_string(size);
        }
        node.addItem(std::move(item));
    }

    void datalias(const xmlNode* element, DataNode& node) {
        static constexpr const char* kNames[] = {"aliasname", "name"};
        DataItem item;
        item.kind = DataItemKind::Alias;
        readAttrs(element, kNames, {&item.name, &item.target});
        if (item.name.empty() || item.target.empty())
            return;
        node.addItem(std::move(item));
    }

    DataNode& root_;
    MessageSink& sink_;
    std::unordered_set<std::string> databaseNames_;
};

} // namespace

bool RtdbSection::readDocument(XmlDocument& doc, ReadContext& ctx) {
    RtdbReader reader(root_, ctx.sink);
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

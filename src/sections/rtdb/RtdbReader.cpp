// Reading rtdb.xml: one function per element; elements of other names are skipped
// in children().

#include "core/DataTypes.h"
#include "core/Xml.h"
#include "sections/rtdb/RtdbSection.h"

#include <string>
#include <unordered_set>

namespace rq {

namespace {

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
        children(element, db);
    }

    // The content of a database or a data group.
    void children(const xmlNode* element, DataNode& node) {
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
        std::string name = ReadAttrText(element, "name");
        std::string type = ReadAttrText(element, "type");
        if (name.empty() || type.empty())
            return;
        std::string length = ReadAttrText(element, "length");
        if (length.empty()) {
            int size = DataTypeTable::sizeOfKeyword(type);
            if (size < 1)
                return;
            length = std::to_string(size);
        }
        node.addItem(DataItem::makeData(std::move(name), std::move(type), std::move(length),
                                        ReadAttrText(element, "init"),
                                        ReadAttrText(element, "description")));
    }

    void datalias(const xmlNode* element, DataNode& node) {
        std::string alias = ReadAttrText(element, "aliasname");
        std::string target = ReadAttrText(element, "name");
        if (alias.empty() || target.empty())
            return;
        node.addItem(DataItem::makeAlias(std::move(alias), std::move(target)));
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

// Reading rtdb.xml: one function per element; elements of other names are skipped
// in children(). The file is read as a stream (a project may hold millions of data
// items), and each data element's attributes are taken in one walk over its
// attribute list.

#include "core/DataTypes.h"
#include "core/SectionRead.h"
#include "core/Xml.h"
#include "sections/rtdb/RtdbSection.h"

#include <string>
#include <unordered_set>

namespace rq {

namespace {

// Fills the named fields from the element's attributes without a namespace (the
// first of each name); the names not present stay empty. The views point into the
// stream's current element.
template <std::size_t N>
void readAttrs(const XmlStream& s, const std::string_view (&names)[N], std::string_view (&out)[N]) {
    bool seen[N] = {};
    for (std::size_t a = 0, count = s.attributeCount(); a < count; ++a) {
        const XmlStream::Attribute attr = s.attribute(a);
        if (attr.namespaced)
            continue;
        for (std::size_t i = 0; i < N; ++i) {
            if (attr.name == names[i]) {
                if (!seen[i])
                    out[i] = attr.value;
                seen[i] = true;
                break;
            }
        }
    }
}

constexpr const char* kDatabaseExists = "The database already exist!";
constexpr const char* kGroupExists = "The data group already exist!";

// How a dropped element is named: its kind, its name if any, and where it stood.
std::string describe(const char* kind, std::string_view name, const DataNode* parent) {
    std::string out = kind;
    if (!name.empty()) {
        out += " \"";
        out += name;
        out += "\"";
    }
    if (parent && !parent->name().empty())
        out += " in \"" + parent->name() + "\"";
    return out;
}

class RtdbReader {
public:
    RtdbReader(DataNode& root, ReadContext& ctx) : root_(root), sink_(ctx.sink), ctx_(ctx) {}

    void rtdbs(XmlStream& s) {
        for (auto c = s.children(); c.next();)
            if (s.is("rtdb"))
                rtdb(s);
    }

private:
    void rtdb(XmlStream& s) {
        std::string name = s.attr("name");
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
        const std::string_view sync = s.attrView("sync");
        const bool synced = sync.empty() || parseDecimal(sync) != 0;
        DataNode& db = root_.addDatabase(std::move(name), synced);
        children(s, db);
    }

    // The content of a database or a data group.
    void children(XmlStream& s, DataNode& node) {
        for (auto c = s.children(); c.next();) {
            if (s.is("datagroup"))
                datagroup(s, node);
            else if (s.is("data"))
                data(s, node);
            else if (s.is("datalias"))
                datalias(s, node);
        }
    }

    void datagroup(XmlStream& s, DataNode& parent) {
        std::string name = s.attr("name");
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
        children(s, group);
    }

    void data(const XmlStream& s, DataNode& node) {
        static constexpr std::string_view kNames[] = {"name", "type", "length", "init",
                                                      "description"};
        std::string_view v[5];
        readAttrs(s, kNames, v);
        const std::string_view name = v[0], type = v[1];
        if (name.empty() || type.empty()) {
            ctx_.drop(describe("data", name, &node),
                      name.empty() ? "no name; left out" : "no type; left out");
            return;
        }
        DataItem item;
        item.name = name;
        item.type = shared_.get(type);
        if (v[2].empty()) {
            int size = DataTypeTable::sizeOfKeyword(item.type);
            if (size < 1) {
                ctx_.drop(describe("data", name, &node),
                          "type \"" + item.type +
                              "\" has no fixed size and no length is given; left out");
                return;
            }
            item.length = shared_.get(std::to_string(size));
        } else {
            item.length = shared_.get(v[2]);
        }
        item.init = shared_.get(v[3]);
        item.description = shared_.get(v[4]);
        node.addItem(std::move(item));
    }

    void datalias(const XmlStream& s, DataNode& node) {
        static constexpr std::string_view kNames[] = {"aliasname", "name"};
        std::string_view v[2];
        readAttrs(s, kNames, v);
        if (v[0].empty() || v[1].empty()) {
            ctx_.drop(describe("datalias", v[0], &node),
                      v[0].empty() ? "no alias name; left out" : "no data named; left out");
            return;
        }
        node.addItem(DataItem::makeAlias(v[0], v[1]));
    }

    DataNode& root_;
    MessageSink& sink_;
    ReadContext& ctx_;
    std::unordered_set<std::string> databaseNames_;
    // The values that repeat from item to item share one text.
    SharedTextPool shared_;
};

} // namespace

bool RtdbSection::readStream(const XmlInput& input, ReadContext& ctx) {
    return readSectionXml(
        input, "rtdbs", ctx, [this] { clear(); },
        [this](XmlStream& s, ReadContext& c) {
            RtdbReader(root_, c).rtdbs(s);
            return true;
        });
}

bool RtdbSection::read(const std::string& path, ReadContext& ctx) {
    return readStream(XmlInput::file(path), ctx);
}

bool RtdbSection::readMemory(std::string_view bytes, const std::string& name, ReadContext& ctx) {
    return readStream(XmlInput::memory(bytes, name), ctx);
}

} // namespace rq

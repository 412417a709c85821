// Writing rtdb.xml: the whole file appended to one string, values as they are
// (the device's reader expects them unescaped), CR LF line ends, one tab per level.

#include "sections/rtdb/RtdbSection.h"

namespace rq {

namespace {

class RtdbWriter {
public:
    explicit RtdbWriter(std::string& out) : out_(out) {}

    void rtdbs(const DataNode& root) {
        out_ += "<?xml version=\"1.0\" ?>\r\n<rtdbs>\r\n";
        for (const auto& db : root.children())
            rtdb(*db);
        out_ += "</rtdbs>\r\n";
    }

private:
    void rtdb(const DataNode& db) {
        out_ += "<rtdb name=\"";
        out_ += db.name();
        out_ += db.sync() ? "\" sync=\"1\" >\r\n" : "\" sync=\"0\" >\r\n";
        content(db, 1);
        out_ += "</rtdb>\r\n";
    }

    // Groups first, then the node's own items.
    void content(const DataNode& node, int level) {
        for (const auto& g : node.children())
            datagroup(*g, level);
        for (const DataItem& item : node.items()) {
            if (item.isAlias())
                datalias(item, level);
            else
                data(item, level);
        }
    }

    void datagroup(const DataNode& group, int level) {
        indent(level);
        out_ += "<datagroup name=\"";
        out_ += group.name();
        out_ += "\">\r\n";
        content(group, level + 1);
        indent(level);
        out_ += "</datagroup>\r\n";
    }

    void data(const DataItem& item, int level) {
        indent(level);
        out_ += "<data name=\"";
        out_ += item.name;
        out_ += "\" type=\"";
        out_ += item.type;
        out_ += "\" length=\"";
        out_ += item.length;
        out_ += "\" init=\"";
        out_ += item.init;
        out_ += "\" description=\"";
        out_ += item.description;
        out_ += "\" />\r\n";
    }

    void datalias(const DataItem& item, int level) {
        indent(level);
        out_ += "<datalias aliasname=\"";
        out_ += item.name;
        out_ += "\" name=\"";
        out_ += item.target;
        out_ += "\" />\r\n";
    }

    void indent(int level) { out_.append(static_cast<std::size_t>(level), '\t'); }

    std::string& out_;
};

} // namespace

void RtdbSection::write(std::string& out) const {
    RtdbWriter writer(out);
    writer.rtdbs(root_);
}

} // namespace rq

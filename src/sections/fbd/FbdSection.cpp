#include "sections/fbd/FbdSection.h"

#include "core/SectionRead.h"
#include "core/Xml.h"
#include "sections/fbd/FbdClassCatalog.h"

#include <unordered_set>

namespace rq {

namespace {

// ---- reading ----------------------------------------------------------------

class FbdReader {
public:
    FbdReader(std::vector<FbdItem>& blocks, ReadContext& ctx) : blocks_(blocks), ctx_(ctx) {}

    void fblocks(XmlStream& s) {
        for (auto c = s.children(); c.next();) {
            if (s.is("fbd"))
                fbd(s);
        }
    }

private:
    void fbd(XmlStream& s) {
        FbdItem item;
        item.name = s.attr("name");
        item.blockname = s.attr("blockname");
        if (names_.contains(item.name)) {
            ctx_.sink.showMessage(FbdSection::kDuplicateMessage, MessageIcon::Stop);
            ctx_.drop("fbd \"" + item.name + "\"",
                      "a second block of this name; left out with its parameters");
            return;
        }
        const FbdBlockClass* cls = FbdClassCatalog::findByKeyword(item.blockname);
        bool seenEnable = false;
        bool seenType = false;
        for (auto c = s.children(); c.next();) {
            if (s.is("param"))
                param(s, cls, item, seenEnable, seenType);
        }
        names_.insert(item.name);
        blocks_.push_back(std::move(item));
    }

    // "EN" and "TYPE" are the writer's own lines: the first "EN" goes back into the
    // enabling reference, the first "TYPE" of a class with member kinds into the
    // member kind. Any other "EN" or "TYPE" line (a second one, a "TYPE" without
    // keyword, or "TYPE" on a class without member kinds or of an unknown keyword)
    // stays a binding in its place, so that saving the block again writes it again.
    void param(const XmlStream& s, const FbdBlockClass* cls, FbdItem& item, bool& seenEnable,
               bool& seenType) {
        FbdParam p;
        p.dbname = s.attr("dbname");
        p.varname = s.attr("varname");
        p.name = s.attr("name");
        if (p.name.empty()) {
            ctx_.drop("param of fbd \"" + item.name + "\"", "no name; left out");
            return;
        }
        if (p.name == FbdSection::kEnableParam && !seenEnable) {
            seenEnable = true;
            if (!(p.dbname == FbdSection::kSystemDb && p.varname == FbdSection::kAlwaysTrue))
                item.enable = DataRef{std::move(p.dbname), std::move(p.varname)};
            return;
        }
        if (p.name == FbdSection::kTypeParam && !seenType && cls && cls->hasMemberKinds() &&
            !p.varname.empty()) {
            seenType = true;
            item.memberKind = std::move(p.varname);
            return;
        }
        item.params.push_back(std::move(p));
    }

    std::vector<FbdItem>& blocks_;
    ReadContext& ctx_;
    std::unordered_set<std::string> names_;
};

// ---- writing ----------------------------------------------------------------

void appendParam(std::string& out, std::string_view name, std::string_view dbname,
                 std::string_view varname) {
    out += "\t\t<param name=\"";
    out += name;
    out += "\" dbname=\"";
    out += dbname;
    out += "\" varname=\"";
    out += varname;
    out += "\" />\r\n";
}

void appendFbd(std::string& out, const FbdItem& item) {
    out += "\t<fbd name=\"";
    out += item.name;
    out += "\" blockname=\"";
    out += item.blockname;
    out += "\" >\r\n";

    if (!item.enable.dbname.empty() && !item.enable.dataname.empty())
        appendParam(out, FbdSection::kEnableParam, item.enable.dbname, item.enable.dataname);
    else
        appendParam(out, FbdSection::kEnableParam, FbdSection::kSystemDb, FbdSection::kAlwaysTrue);

    if (!item.memberKind.empty()) {
        const FbdBlockClass* cls = FbdClassCatalog::findByKeyword(item.blockname);
        if (cls && cls->hasMemberKinds())
            appendParam(out, FbdSection::kTypeParam, FbdSection::kSystemDb, item.memberKind);
    }
    for (const FbdParam& p : item.params)
        appendParam(out, p.name, p.dbname, p.varname);
    out += "\t</fbd>\r\n";
}

std::string quoted(std::string_view text) {
    std::string s;
    s.reserve(text.size() + 2);
    s += '"';
    s += text;
    s += '"';
    return s;
}

} // namespace

bool FbdSection::read(const std::string& path, ReadContext& ctx) {
    return readSectionXml(
        XmlInput::file(path), "fblocks", ctx, [this] { blocks_.clear(); },
        [this](XmlStream& s, ReadContext& c) {
            FbdReader(blocks_, c).fblocks(s);
            return true;
        });
}

void FbdSection::write(std::string& out) const {
    std::size_t estimate = 32;
    for (const FbdItem& b : blocks_)
        estimate += 160 + 80 * b.params.size();
    out.reserve(out.size() + estimate);

    out += "<?xml version=\"1.0\" ?>\r\n<fblocks>\r\n";
    for (const FbdItem& b : blocks_)
        appendFbd(out, b);
    out += "</fblocks>\r\n";
}

std::vector<std::pair<std::string, std::size_t>> FbdSection::counts() const {
    std::size_t params = 0;
    for (const FbdItem& b : blocks_)
        params += b.params.size();
    return {{"blocks", blocks_.size()}, {"params", params}};
}

void FbdSection::check(CheckContext& ctx) const {
    std::unordered_set<std::string_view> names;
    for (const FbdItem& b : blocks_) {
        const std::string block = "fbd.xml: fbd " + quoted(b.name);
        ctx.rawValue(block + " name", b.name);
        ctx.rawValue(block + " blockname", b.blockname);
        if (!names.insert(b.name).second)
            ctx.finding("fbd.xml: duplicate block " + quoted(b.name));

        const std::string en = block + " param \"EN\"";
        ctx.rawValue(en + " dbname", b.enable.dbname);
        ctx.rawValue(en + " varname", b.enable.dataname);
        if (!b.enable.dbname.empty() && !b.enable.dataname.empty())
            ctx.reference(en, b.enable.dbname, b.enable.dataname);
        ctx.rawValue(block + " param \"TYPE\" varname", b.memberKind);

        for (const FbdParam& p : b.params) {
            const std::string where = block + " param " + quoted(p.name);
            ctx.rawValue(where + " name", p.name);
            ctx.rawValue(where + " dbname", p.dbname);
            ctx.rawValue(where + " varname", p.varname);
            ctx.reference(where, p.dbname, p.varname);
        }
    }
}

const FbdItem* FbdSection::find(std::string_view name) const {
    for (const FbdItem& b : blocks_)
        if (b.name == name)
            return &b;
    return nullptr;
}

std::optional<std::string> FbdSection::duplicateMessage(std::string_view name) const {
    if (find(name))
        return std::string(kDuplicateMessage);
    return std::nullopt;
}

bool FbdSection::add(FbdItem item, MessageSink& sink) {
    if (auto message = duplicateMessage(item.name)) {
        sink.showMessage(*message, MessageIcon::Stop);
        return false;
    }
    blocks_.push_back(std::move(item));
    return true;
}

} // namespace rq

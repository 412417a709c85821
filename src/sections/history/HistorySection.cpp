#include "sections/history/HistorySection.h"

#include "core/SectionRead.h"
#include "core/Xml.h"

#include <unordered_set>

namespace rq {

std::string historyKindShown(std::string_view keyword) {
    for (const HistoryKindRow& row : kHistoryKinds)
        if (keyword == row.keyword)
            return row.shown;
    return {};
}

// ---------------------------------------------------------------------------
// Reading

namespace {

class HistoryReader {
public:
    HistoryReader(std::vector<HistoryRecord>& records, ReadContext* ctx)
        : records_(records), ctx_(ctx) {}

    // The root, rqhistory or history.
    void rqhistory(XmlStream& s) {
        for (auto c = s.children(); c.next();) {
            if (s.is("historydb"))
                historydb(s);
            else if (s.is("config"))
                config(s);
            else if (s.is("logdata"))
                logdata(s, olderRecord());
        }
    }

private:
    void historydb(XmlStream& s) {
        HistoryRecord r;
        r.name = s.attr("name");
        r.period = s.attr("period");
        r.path = s.attr("path");
        r.remaindays = s.attr("remaindays");
        r.indexperiod = s.attr("indexperiod");
        for (auto c = s.children(); c.next();)
            if (s.is("logdata"))
                logdata(s, r);
        records_.push_back(std::move(r));
    }

    // Older layout: the settings of its one record. Attributes it lacks keep the
    // values of a new record; a later config overrides what it gives.
    void config(XmlStream& s) {
        HistoryRecord& r = olderRecord();
        const std::pair<const char*, std::string*> fields[] = {
            {"name", &r.name},
            {"period", &r.period},
            {"path", &r.path},
            {"remaindays", &r.remaindays},
            {"indexperiod", &r.indexperiod},
        };
        for (const auto& [attrName, field] : fields)
            if (s.hasAttr(attrName))
                *field = s.attr(attrName);
    }

    void logdata(XmlStream& s, HistoryRecord& r) {
        for (auto c = s.children(); c.next();)
            if (s.is("data"))
                data(s, r);
    }

    void data(XmlStream& s, HistoryRecord& r) {
        HistoryData d;
        d.dbname = s.attr("dbname");
        if (d.dbname.empty()) {
            drop(r, "no database name; left out");
            return;
        }
        d.dataname = s.attr("dataname");
        if (d.dataname.empty()) {
            drop(r, "no data name; left out");
            return;
        }
        d.type = s.attr("type");
        if (d.type == "period")
            d.periodvalue = s.attr("periodvalue");
        else if (d.type == "change")
            d.changevalue = s.attr("changevalue");
        else if (d.type == "vartrigger")
            d.trigvarname = s.attr("trigvarname");
        d.queryvarname = s.attr("queryvarname");
        d.description = s.attr("description");
        r.data.push_back(std::move(d));
    }

    void drop(const HistoryRecord& r, const char* reason) {
        if (ctx_)
            ctx_->drop("data in historydb \"" + r.name + "\"", reason);
    }

    // The one record of the older layout, made where its first element stands.
    HistoryRecord& olderRecord() {
        if (olderIndex_ == kNone) {
            olderIndex_ = records_.size();
            HistoryRecord& r = records_.emplace_back();
            r.name = HistorySection::kOlderLayoutName;
        }
        return records_[olderIndex_];
    }

    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    std::vector<HistoryRecord>& records_;
    ReadContext* ctx_ = nullptr;
    std::size_t olderIndex_ = kNone;
};

} // namespace

bool HistorySection::read(const std::string& path, ReadContext& ctx) {
    return readSectionXml(
        XmlInput::file(path), "", ctx, [this] { clear(); },
        [this](XmlStream& s, ReadContext& c) {
            if (!s.is("rqhistory") && !s.is("history")) {
                c.error =
                    "the root element is " + std::string(s.name()) + ", not rqhistory or history";
                return false;
            }
            HistoryReader(records_, &c).rqhistory(s);
            return true;
        });
}

// ---------------------------------------------------------------------------
// Writing

namespace {

void writeData(std::string& out, const HistoryData& d) {
    appendAttr(out, "\t\t\t<data dbname=\"", d.dbname);
    appendAttr(out, " dataname=\"", d.dataname);
    appendAttr(out, " type=\"", d.type);
    if (d.type == "period")
        appendAttr(out, " periodvalue=\"", d.periodvalue);
    else if (d.type == "change")
        appendAttr(out, " changevalue=\"", d.changevalue);
    else if (d.type == "vartrigger")
        appendAttr(out, " trigvarname=\"", d.trigvarname);
    appendAttr(out, " queryvarname=\"", d.queryvarname);
    appendAttr(out, " description=\"", d.description);
    out.append("/>\r\n");
}

void writeHistorydb(std::string& out, const HistoryRecord& r) {
    appendAttr(out, "\t<historydb name=\"", r.name);
    appendAttr(out, " period=\"", r.period);
    appendAttr(out, " path=\"", r.path);
    appendAttr(out, " remaindays=\"", r.remaindays);
    appendAttr(out, " indexperiod=\"", r.indexperiod);
    out.append(">\r\n\t\t<logdata>\r\n");
    for (const HistoryData& d : r.data)
        writeData(out, d);
    out.append("\t\t</logdata>\r\n\t</historydb>\r\n");
}

} // namespace

void HistorySection::write(std::string& out) const {
    out.append("<?xml version=\"1.0\" ?>\r\n<rqhistory>\r\n");
    for (const HistoryRecord& r : records_)
        writeHistorydb(out, r);
    out.append("</rqhistory>\r\n");
}

// ---------------------------------------------------------------------------
// Counts and checks

std::vector<std::pair<std::string, std::size_t>> HistorySection::counts() const {
    std::size_t data = 0;
    for (const HistoryRecord& r : records_)
        data += r.data.size();
    return {{"records", records_.size()}, {"data", data}};
}

void HistorySection::check(CheckContext& ctx) const {
    std::unordered_set<std::string_view> names;
    for (const HistoryRecord& r : records_) {
        const std::string where = "history.xml: history record \"" + r.name + "\"";
        if (!names.insert(r.name).second)
            ctx.finding("history.xml: duplicate history record \"" + r.name + "\"");
        ctx.rawValue(where + " name", r.name);
        ctx.rawValue(where + " period", r.period);
        ctx.rawValue(where + " path", r.path);
        ctx.rawValue(where + " remaindays", r.remaindays);
        ctx.rawValue(where + " indexperiod", r.indexperiod);

        std::unordered_set<std::string> vars;
        for (const HistoryData& d : r.data) {
            const std::string joined = d.dbname + "." + d.dataname;
            const std::string dwhere = where + " data \"" + joined + "\"";
            // The key keeps the two names apart: "a.b"+"c" is not "a"+"b.c".
            std::string key = d.dbname;
            key.push_back('\0');
            key.append(d.dataname);
            if (d.dbname.empty() || d.dataname.empty())
                ctx.finding(dwhere + " has no database or data name and is dropped on reading");
            else if (!vars.insert(std::move(key)).second)
                ctx.finding("history.xml: duplicate data \"" + joined + "\" in history record \"" +
                            r.name + "\"");
            ctx.rawValue(dwhere + " dbname", d.dbname);
            ctx.rawValue(dwhere + " dataname", d.dataname);
            ctx.rawValue(dwhere + " type", d.type);
            if (d.type == "period")
                ctx.rawValue(dwhere + " periodvalue", d.periodvalue);
            else if (d.type == "change")
                ctx.rawValue(dwhere + " changevalue", d.changevalue);
            else if (d.type == "vartrigger")
                ctx.rawValue(dwhere + " trigvarname", d.trigvarname);
            ctx.rawValue(dwhere + " queryvarname", d.queryvarname);
            ctx.rawValue(dwhere + " description", d.description);
            ctx.reference(dwhere, d.dbname, d.dataname);
            if (d.type == "vartrigger")
                ctx.joinedReference(dwhere + " trigvarname", d.trigvarname);
            ctx.joinedReference(dwhere + " queryvarname", d.queryvarname);
        }
    }
}

} // namespace rq

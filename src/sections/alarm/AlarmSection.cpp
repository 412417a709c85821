#include "sections/alarm/AlarmSection.h"

#include "core/SectionRead.h"
#include "core/Xml.h"

#include <unordered_set>

namespace rq {

int alarmSlotOfTag(std::string_view tag) {
    for (int i = 0; i < kAlarmSlotCount; ++i)
        if (tag == kAlarmSlotTags[i])
            return i;
    return -1;
}

void AlarmSection::clear() {
    logSize_ = kDefaultLogSize;
    groups_.clear();
}

bool AlarmSection::groupNameExists(std::string_view name) const {
    for (const AlarmGroup& g : groups_)
        if (g.name == name)
            return true;
    return false;
}

AlarmGroup* AlarmSection::addGroup(std::string name, MessageSink& sink) {
    if (groupNameExists(name)) {
        sink.showMessage("The alarm group already exist!", MessageIcon::Stop);
        return nullptr;
    }
    AlarmGroup& g = groups_.emplace_back();
    g.name = std::move(name);
    return &g;
}

// ---------------------------------------------------------------------------
// Reading

namespace {

class AlarmReader {
public:
    AlarmReader(AlarmSection& section, ReadContext& ctx) : section_(section), ctx_(ctx) {}

    void alarm(XmlStream& s) {
        for (auto c = s.children(); c.next();) {
            if (s.is("alarmlog"))
                alarmlog(s);
            else if (s.is("alarmgroup"))
                alarmgroup(s);
        }
    }

private:
    void alarmlog(XmlStream& s) { section_.logSize() = s.attr("size"); }

    void alarmgroup(XmlStream& s) {
        std::string name = s.attr("name");
        // The same test as addGroup, through a hash set: a file may hold many groups.
        if (!names_.insert(name).second) {
            ctx_.sink.showMessage("The alarm group already exist!", MessageIcon::Stop);
            ctx_.drop("alarmgroup \"" + name + "\"",
                      "a second alarm group of this name; left out with its data");
            return;
        }
        AlarmGroup& g = section_.groups().emplace_back();
        g.name = std::move(name);
        for (auto c = s.children(); c.next();)
            if (s.is("data"))
                data(s, g);
    }

    void data(XmlStream& s, AlarmGroup& g) {
        AlarmDataItem& d = g.data.emplace_back();
        d.dbname = s.attr("dbname");
        d.dataname = s.attr("dataname");
        d.priority = s.attr("priority");
        d.status_var = s.attr("status_var");
        for (auto c = s.children(); c.next();) {
            const int slot = alarmSlotOfTag(s.name());
            if (slot < 0)
                continue;
            if (d.slots[slot].set)
                ctx_.drop(std::string(s.name()) + " of data \"" + d.dbname + "." + d.dataname +
                              "\" in alarmgroup \"" + g.name + "\"",
                          "a second condition of this kind; only the last one is kept");
            condition(s, d.slots[slot]);
        }
    }

    void condition(XmlStream& s, AlarmCondition& c) {
        c.set = true;
        c.enable_var = s.attr("enable_var");
        c.value_var = s.attr("value_var");
        c.info = s.attr("info");
        c.restore_info = s.attr("restore_info");
    }

    AlarmSection& section_;
    ReadContext& ctx_;
    std::unordered_set<std::string> names_;
};

} // namespace

bool AlarmSection::read(const std::string& path, ReadContext& ctx) {
    return readSectionXml(
        XmlInput::file(path), "alarm", ctx, [this] { clear(); },
        [this](XmlStream& s, ReadContext& c) {
            AlarmReader(*this, c).alarm(s);
            return true;
        });
}

// ---------------------------------------------------------------------------
// Writing

namespace {

void writeData(std::string& out, const AlarmDataItem& d) {
    appendAttr(out, "\t\t<data dbname=\"", d.dbname);
    appendAttr(out, " dataname=\"", d.dataname);
    appendAttr(out, " priority=\"", d.priority);
    appendAttr(out, " status_var=\"", d.status_var);
    out.append(">\r\n");
    for (int i = 0; i < kAlarmSlotCount; ++i) {
        const AlarmCondition& c = d.slots[i];
        if (!c.set)
            continue;
        out.append("\t\t\t<");
        out.append(kAlarmSlotTags[i]);
        appendAttr(out, " enable_var=\"", c.enable_var);
        appendAttr(out, " value_var=\"", c.value_var);
        appendAttr(out, " info=\"", c.info);
        appendAttr(out, " restore_info=\"", c.restore_info);
        out.append(" />\r\n");
    }
    out.append("\t\t</data>\r\n");
}

void writeGroup(std::string& out, const AlarmGroup& g) {
    appendAttr(out, "\t<alarmgroup name=\"", g.name);
    out.append(" >\r\n");
    for (const AlarmDataItem& d : g.data)
        writeData(out, d);
    out.append("\t</alarmgroup>\r\n");
}

} // namespace

void AlarmSection::write(std::string& out) const {
    out.append("<?xml version=\"1.0\" ?>\r\n<alarm>\r\n");
    appendAttr(out, "\t<alarmlog size=\"", logSize_);
    out.append(" />\r\n");
    for (const AlarmGroup& g : groups_)
        writeGroup(out, g);
    out.append("</alarm>\r\n");
}

// ---------------------------------------------------------------------------
// Counts and checks

std::vector<std::pair<std::string, std::size_t>> AlarmSection::counts() const {
    std::size_t data = 0;
    for (const AlarmGroup& g : groups_)
        data += g.data.size();
    return {{"groups", groups_.size()}, {"data", data}};
}

void AlarmSection::check(CheckContext& ctx) const {
    ctx.rawValue("alarm.xml: alarmlog size", logSize_);
    std::unordered_set<std::string_view> names;
    for (const AlarmGroup& g : groups_) {
        const std::string where = "alarm.xml: alarm group \"" + g.name + "\"";
        if (g.name.empty())
            ctx.finding(where + " has no name");
        if (!names.insert(g.name).second)
            ctx.finding("alarm.xml: duplicate alarm group \"" + g.name + "\"");
        ctx.rawValue(where + " name", g.name);

        std::unordered_set<std::string> keys;
        for (const AlarmDataItem& d : g.data) {
            const std::string dwhere = where + " data \"" + d.dbname + "." + d.dataname + "\"";
            std::string key = d.dbname;
            key.push_back('\0'); // "a.b"+"c" is not "a"+"b.c"
            key.append(d.dataname);
            if (!keys.insert(std::move(key)).second)
                ctx.finding("alarm.xml: duplicate data \"" + d.dbname + "." + d.dataname +
                            "\" in alarm group \"" + g.name + "\"");
            ctx.rawValue(dwhere + " dbname", d.dbname);
            ctx.rawValue(dwhere + " dataname", d.dataname);
            ctx.rawValue(dwhere + " priority", d.priority);
            ctx.rawValue(dwhere + " status_var", d.status_var);
            ctx.reference(dwhere, d.dbname, d.dataname);
            ctx.joinedReference(dwhere + " status_var", d.status_var);
            for (int i = 0; i < kAlarmSlotCount; ++i) {
                const AlarmCondition& c = d.slots[i];
                if (!c.set)
                    continue;
                const std::string swhere = dwhere + " " + kAlarmSlotTags[i];
                ctx.rawValue(swhere + " enable_var", c.enable_var);
                ctx.rawValue(swhere + " value_var", c.value_var);
                ctx.rawValue(swhere + " info", c.info);
                ctx.rawValue(swhere + " restore_info", c.restore_info);
            }
        }
    }
}

} // namespace rq

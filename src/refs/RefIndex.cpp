#include "refs/RefIndex.h"

#include "core/DataTypes.h"
#include "sections/alarm/AlarmSection.h"
#include "sections/datalog/DataLogSection.h"
#include "sections/device/DeviceSection.h"
#include "sections/fbd/FbdSection.h"
#include "sections/history/HistorySection.h"
#include "sections/hmidb/HmiDbSection.h"
#include "sections/param/ParamSection.h"

#include <charconv>

namespace rq {

namespace {

std::string quoted(std::string_view what, std::string_view name) {
    std::string s(what);
    s += " \"";
    s += name;
    s += '"';
    return s;
}

std::string key(std::string_view db, std::string_view data) {
    std::string k;
    k.reserve(db.size() + data.size() + 1);
    k += db;
    k += '\0'; // a zero byte cannot occur in a name: "a.b"+"c" is not "a"+"b.c"
    k += data;
    return k;
}

} // namespace

std::string RefUse::line() const {
    std::string s = file;
    s += ": ";
    s += where;
    s += ": ";
    s += attribute;
    return s;
}

bool RefIndex::isJoinedReference(std::string_view text) {
    if (text.find('.') == std::string_view::npos)
        return false;
    double value;
    const char* end = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(text.data() + (text.front() == '+'), end, value);
    return !(ec == std::errc() && ptr == end);
}

std::pair<std::string_view, std::string_view> RefIndex::itemOf(const RefUse& use) {
    if (use.joined) {
        std::string_view t = *use.joined;
        std::size_t dot = t.find('.');
        if (dot == std::string_view::npos)
            return {t, {}};
        return {t.substr(0, dot), t.substr(dot + 1)};
    }
    return {*use.db, *use.data};
}

void RefIndex::add(RefUse use) {
    auto [db, data] = itemOf(use);
    if (only_ && (db != onlyDb_ || data != onlyData_))
        return;
    byItem_[key(db, data)].push_back(static_cast<std::uint32_t>(uses_.size()));
    uses_.push_back(std::move(use));
}

void RefIndex::build(const RefSections& s) {
    uses_.clear();
    byItem_.clear();
    // A pair with both names empty, or an empty text, is no reference.
    // `node` and `row`: where the section's editor shows the record (RefUse).
    const void* node = nullptr;
    std::ptrdiff_t row = -1;
    auto pair = [&](const char* file, std::string where, const char* attribute, std::string& db,
                    std::string& data, bool checked = true) {
        if (!db.empty() || !data.empty())
            add({file, std::move(where), attribute, &db, &data, nullptr, checked, node, row});
    };
    auto joined = [&](const char* file, std::string where, const char* attribute, std::string& text,
                      bool checked = true) {
        if (!text.empty())
            add({file, std::move(where), attribute, nullptr, nullptr, &text, checked, node, row});
    };

    if (s.hmidb) {
        auto walk = [&](auto& self, HmiIoGroup& group, const std::string& path) -> void {
            node = &group;
            row = 0;
            for (HmiIoItem& item : group.items) {
                pair("hmidb.xml", path + quoted("data", item.name), "dbname/dataname", item.dbname,
                     item.dataname);
                ++row;
            }
            for (HmiIoGroup& g : group.groups)
                self(self, g, path + quoted("group", g.name) + " ");
        };
        walk(walk, s.hmidb->io, "");
    }
    if (s.device) {
        for (LinkItem& l : s.device->links()) {
            const std::string lw = quoted("link", l.name);
            node = &l;
            row = -1;
            joined("device.xml", lw, "status_var", l.status_var);
            joined("device.xml", lw, "control_var", l.control_var);
            for (DeviceItem& d : l.devices) {
                const std::string dw = lw + " " + quoted("device", d.name);
                node = &d;
                row = -1;
                joined("device.xml", dw, "status_var", d.status_var);
                joined("device.xml", dw, "control_var", d.control_var);
                std::size_t n = 0;
                for (DeviceDataItem& p : d.data) {
                    row = static_cast<std::ptrdiff_t>(n);
                    const std::string pw = dw + " data " + std::to_string(++n);
                    joined("device.xml", pw, "dataname", p.dataname);
                    joined("device.xml", pw, "status_var", p.status_var);
                }
            }
        }
    }
    if (s.param) {
        std::size_t n = 0;
        node = nullptr;
        for (ParamItem& p : s.param->items) {
            row = static_cast<std::ptrdiff_t>(n);
            pair("param.xml", "parameter " + std::to_string(++n), "dbname/dataname", p.dbname,
                 p.dataname);
        }
    }
    if (s.datalog) {
        for (DataLog& log : s.datalog->logs) {
            const std::string lw = quoted("log", log.name);
            node = &log;
            row = -1;
            // The period variable is typed; only a "DB.DATA" text names an item.
            if (isJoinedReference(log.period_var))
                joined("datalog.xml", lw, "period_var", log.period_var, false);
            joined("datalog.xml", lw, "control_var", log.control_var);
            if (log.kind != DataLogKind::Variables)
                continue;
            std::size_t n = 0;
            for (DataRef& r : log.data) {
                row = static_cast<std::ptrdiff_t>(n);
                pair("datalog.xml", lw + " data " + std::to_string(++n), "dbname/dataname",
                     r.dbname, r.dataname);
            }
        }
    }
    if (s.history) {
        for (HistoryRecord& r : s.history->records()) {
            const std::string rw = quoted("record", r.name);
            node = &r;
            std::size_t n = 0;
            for (HistoryData& d : r.data) {
                row = static_cast<std::ptrdiff_t>(n);
                const std::string dw = rw + " data " + std::to_string(++n);
                pair("history.xml", dw, "dbname/dataname", d.dbname, d.dataname);
                joined("history.xml", dw, "trigvarname", d.trigvarname);
                joined("history.xml", dw, "queryvarname", d.queryvarname);
            }
        }
    }
    if (s.alarm) {
        for (AlarmGroup& g : s.alarm->groups()) {
            const std::string gw = quoted("group", g.name);
            node = &g;
            row = 0;
            for (AlarmDataItem& d : g.data) {
                const std::string dw = gw + " " + quoted("data", d.dbname + "." + d.dataname);
                pair("alarm.xml", dw, "dbname/dataname", d.dbname, d.dataname);
                joined("alarm.xml", dw, "status_var", d.status_var);
                for (int i = 0; i < kAlarmSlotCount; ++i) {
                    AlarmCondition& c = d.slots[i];
                    if (!c.set)
                        continue;
                    const std::string sw = dw + " " + kAlarmSlotTags[i];
                    joined("alarm.xml", sw, "enable_var", c.enable_var, false);
                    // A limit is a number or a variable.
                    if (isJoinedReference(c.value_var))
                        joined("alarm.xml", sw, "value_var", c.value_var, false);
                }
                ++row;
            }
        }
    }
    if (s.fbd) {
        for (FbdItem& b : s.fbd->blocks()) {
            const std::string bw = quoted("block", b.name);
            node = &b;
            row = 0; // the enabling EN, then the parameters
            // The section's check looks the enabling item up only when both names are given.
            pair("fbd.xml", bw + " " + quoted("param", FbdSection::kEnableParam), "dbname/varname",
                 b.enable.dbname, b.enable.dataname,
                 !b.enable.dbname.empty() && !b.enable.dataname.empty());
            for (FbdParam& p : b.params) {
                ++row;
                pair("fbd.xml", bw + " " + quoted("param", p.name), "dbname/varname", p.dbname,
                     p.varname);
            }
        }
    }
}

std::vector<const RefUse*> RefIndex::usesOf(std::string_view db, std::string_view data) const {
    std::vector<const RefUse*> out;
    auto it = byItem_.find(key(db, data));
    if (it == byItem_.end())
        return out;
    out.reserve(it->second.size());
    for (std::uint32_t i : it->second)
        out.push_back(&uses_[i]);
    return out;
}

std::size_t renameUses(const RefIndex& index, std::string_view db, std::string_view data,
                       const std::string& newName) {
    std::vector<const RefUse*> uses = index.usesOf(db, data);
    for (const RefUse* u : uses) {
        if (u->joined)
            *u->joined = std::string(db) + "." + newName;
        else
            *u->data = newName;
    }
    return uses.size();
}

} // namespace rq

#include "sections/rtdb/RtdbSection.h"

#include "core/FileUtil.h"

#include <unordered_set>

namespace rq {

void RtdbSection::clear() {
    while (root_.childCount() > 0)
        root_.removeChild(root_.childCount() - 1);
}

DataNode* RtdbSection::findDatabase(std::string_view name) const {
    for (const auto& db : root_.children())
        if (db->name() == name)
            return db.get();
    return nullptr;
}

bool RtdbSection::hasData(std::string_view dbname, std::string_view dataname) const {
    // Database names are unique as read and as added; a rename may still make two
    // alike, so every database of that name is asked.
    for (const auto& db : root_.children())
        if (db->name() == dbname && db->hasItemNamed(dataname))
            return true;
    return false;
}

namespace {

struct Counter {
    std::size_t groups = 0, data = 0, aliases = 0;
    void count(const DataNode& node) {
        for (const DataItem& item : node.items())
            ++(item.isAlias() ? aliases : data);
        for (const auto& g : node.children()) {
            ++groups;
            count(*g);
        }
    }
};

std::string quoted(std::string_view s) {
    std::string out = "\"";
    out += s;
    out += '"';
    return out;
}

// The checks of one database: unescaped values, the shared namespace, aliases.
class DatabaseChecker {
public:
    DatabaseChecker(CheckContext& ctx, const DataNode& db) : ctx_(ctx), db_(db) {}

    void run() {
        raw("database " + quoted(db_.name()) + " name", db_.name());
        node(db_);
    }

private:
    void node(const DataNode& n) {
        for (const auto& g : n.children()) {
            raw(in() + "data group " + quoted(g->name()) + " name", g->name());
            name(g->name());
            node(*g);
        }
        for (const DataItem& item : n.items()) {
            if (item.isAlias())
                alias(item);
            else
                data(item);
            name(item.name);
        }
    }

    void data(const DataItem& item) {
        auto field = [&](const char* attr, std::string_view value) {
            if (needsReport(value))
                raw(in() + "data " + quoted(item.name) + " " + attr, value);
        };
        field("name", item.name);
        field("type", item.type);
        field("length", item.length);
        field("init", item.init);
        field("description", item.description);
        if (item.type.empty())
            ctx_.finding("rtdb.xml: " + in() + "data " + quoted(item.name) +
                         " has no type and is dropped when the project is opened again");
    }

    void alias(const DataItem& item) {
        if (needsReport(item.name))
            raw(in() + "alias " + quoted(item.name) + " aliasname", item.name);
        if (needsReport(item.target))
            raw(in() + "alias " + quoted(item.name) + " name", item.target);
        if (!db_.hasItemNamed(item.target))
            ctx_.finding("rtdb.xml: " + in() + "alias " + quoted(item.name) + ": target " +
                         quoted(item.target) + " is not in the database");
    }

    // A name used more than once in the database's namespace, reported once.
    void name(std::string_view n) {
        const RtdbNameUse* use = db_.nameIndex()->find(n);
        if (use && use->total() > 1 && reported_.insert(std::string(n)).second)
            ctx_.finding("rtdb.xml: duplicate name " + quoted(n) + " in database " +
                         quoted(db_.name()));
    }

    static bool needsReport(std::string_view v) {
        return v.find_first_of("\"<&") != std::string_view::npos;
    }
    void raw(const std::string& where, std::string_view value) {
        if (needsReport(value))
            ctx_.rawValue("rtdb.xml: " + where, value);
    }
    std::string in() const { return "database " + quoted(db_.name()) + ": "; }

    CheckContext& ctx_;
    const DataNode& db_;
    std::unordered_set<std::string> reported_;
};

} // namespace

std::vector<std::pair<std::string, std::size_t>> RtdbSection::counts() const {
    Counter c;
    for (const auto& db : root_.children())
        c.count(*db);
    return {{"databases", root_.childCount()},
            {"groups", c.groups},
            {"data", c.data},
            {"aliases", c.aliases}};
}

void RtdbSection::check(CheckContext& ctx) const {
    std::unordered_set<std::string_view> names;
    for (const auto& db : root_.children()) {
        if (!names.insert(db->name()).second)
            ctx.finding("rtdb.xml: duplicate database " + quoted(db->name()));
        DatabaseChecker(ctx, *db).run();
    }
}

std::string systemDatabasePath(const std::string& programDir) {
    return joinPath(joinPath(programDir, "conffile"), "rtdb.xml");
}

std::unique_ptr<const RtdbSection> loadSystemDatabase(const std::string& programDir,
                                                      ReadContext& ctx) {
    auto section = std::make_unique<RtdbSection>();
    if (!section->read(systemDatabasePath(programDir), ctx))
        return nullptr;
    return section;
}

} // namespace rq

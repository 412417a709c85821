#pragma once
// The real-time database section, rtdb.xml: the ordered list of databases of the
// project, its reader and writer, and the system database read from the program
// directory in the same format.

#include "core/ConfigSection.h"
#include "sections/rtdb/RtdbModel.h"

#include <memory>
#include <string>
#include <string_view>

namespace rq {

class RtdbSection : public ConfigSection {
public:
    RtdbSection() = default;

    const char* fileName() const override { return "rtdb.xml"; }
    void clear() override;
    bool read(const std::string& path, ReadContext& ctx) override;
    void write(std::string& out) const override;
    std::vector<std::pair<std::string, std::size_t>> counts() const override;
    void check(CheckContext& ctx) const override;

    // The same reading on bytes in memory (`name` is used in messages only).
    bool readMemory(std::string_view bytes, const std::string& name, ReadContext& ctx);

    // The section's own node; its children are the databases.
    DataNode& root() { return root_; }
    const DataNode& root() const { return root_; }
    std::size_t databaseCount() const { return root_.childCount(); }
    DataNode& database(std::size_t index) const { return root_.child(index); }
    // The first database of that name, null when none.
    DataNode* findDatabase(std::string_view name) const;

    // Whether a database of that name holds a data item or alias of that name
    // (anywhere in its groups). O(1) in the size of the database.
    bool hasData(std::string_view dbname, std::string_view dataname) const;

private:
    bool readStream(const struct XmlInput& input, ReadContext& ctx);
    DataNode root_;
};

// conffile/rtdb.xml under the program directory.
std::string systemDatabasePath(const std::string& programDir);

// Reads the system database into a new section, which callers hold read-only.
// Null (with ctx.error set) when the file cannot be read.
std::unique_ptr<const RtdbSection> loadSystemDatabase(const std::string& programDir,
                                                      ReadContext& ctx);

} // namespace rq

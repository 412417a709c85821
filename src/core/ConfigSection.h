#pragma once
// One section file of a project: its in-memory records, its reader and its writer.
// The project opens and saves the thirteen files through this interface, in the
// fixed order of SectionTable.h.

#include "core/MessageSink.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace rq {

class HmiDeviceCatalog;
class IoDriverCatalog;

// A record that a reader left out under its reading rules (a second database of
// the same name with all its content, an item of unknown type, ...). The next save
// writes the file without it.
struct DroppedRecord {
    std::string file;    // the file's name; set by the project when it opens the file
    std::string element; // which element, e.g. "rtdb \"db1\""
    std::string reason;
};

// What a reader may need besides the path.
struct ReadContext {
    MessageSink& sink; // messages a reader shows
    const HmiDeviceCatalog* hmiCatalog = nullptr;
    const IoDriverCatalog* ioCatalog = nullptr;
    std::string error; // one-line reason of a failed read
    std::vector<DroppedRecord> dropped = {};

    // Records what the reader leaves out; the reading rule itself is unchanged.
    void drop(std::string element, std::string reason) {
        dropped.push_back({{}, std::move(element), std::move(reason)});
    }
};

// Collects what would keep a project from reopening or from working on the device.
class CheckContext {
public:
    virtual ~CheckContext() = default;
    // Whether a database (of the project or the system database) holds the data
    // (data or alias name).
    virtual bool hasRealtimeData(std::string_view dbname, std::string_view dataname) const = 0;

    // A value written without escaping: reports it when it holds '"', '<' or '&'.
    // `where` names the file and the record, e.g. "device.xml: link \"bus1\" name".
    void rawValue(const std::string& where, std::string_view value);
    // A reference by two names: reports it when no database holds it. Both names
    // empty is no reference and passes.
    void reference(const std::string& where, std::string_view dbname, std::string_view dataname);
    // A reference in the one-text form "DB.DATA"; empty passes.
    void joinedReference(const std::string& where, std::string_view text);
    void finding(std::string line) { findings_.push_back(std::move(line)); }

    const std::vector<std::string>& findings() const { return findings_; }

private:
    std::vector<std::string> findings_;
};

class ConfigSection {
public:
    virtual ~ConfigSection() = default;

    // The file name in the project directory, e.g. "rtdb.xml".
    virtual const char* fileName() const = 0;
    // Back to the empty form of a new project.
    virtual void clear() = 0;
    // Replaces the section with the file's content. False (with ctx.error set) when
    // the file cannot be read, does not parse or has the wrong root; the section is
    // then left as its reader's rules say (usually empty).
    virtual bool read(const std::string& path, ReadContext& ctx) = 0;
    // Appends the whole file, UTF-8, CR LF line ends. Never fails.
    virtual void write(std::string& out) const = 0;
    // Record counts shown by `rqpcli info`, e.g. {{"databases", 2}, {"data", 140}}.
    virtual std::vector<std::pair<std::string, std::size_t>> counts() const = 0;
    // Adds findings for `rqpcli check`.
    virtual void check(CheckContext& ctx) const = 0;
};

} // namespace rq

#pragma once
// Every place of a project that names a real-time data item, by item: HMI I/O data,
// link and device status and control variables, data points, parameters, data
// logs, history records, alarms and function block parameters. Built in one pass
// after the project is opened; looking up one item is one hash look-up.
//
// A use points at the strings of the section model that hold the reference, so
// that a rename can change them in place. The index is valid until the sections
// are changed or cleared; build a new one after any edit.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace rq {

class AlarmSection;
class DataLogSection;
class DeviceSection;
class FbdSection;
class HistorySection;
class HmiDbSection;
class ParamSection;

// The sections that refer to real-time data. Any of them may be null.
struct RefSections {
    HmiDbSection* hmidb = nullptr;
    DeviceSection* device = nullptr;
    ParamSection* param = nullptr;
    DataLogSection* datalog = nullptr;
    HistorySection* history = nullptr;
    AlarmSection* alarm = nullptr;
    FbdSection* fbd = nullptr;
};

struct RefUse {
    const char* file;      // e.g. "device.xml"
    std::string where;     // e.g. link "bus1" device "plc1" data 3
    const char* attribute; // e.g. "status_var", or "dbname/dataname" for a pair
    // The reference as stored: a pair (database name in `db`, data name in `data`)
    // or one text "DB.DATA" (in `joined`, `data` is null).
    std::string* db = nullptr;
    std::string* data = nullptr;
    std::string* joined = nullptr;
    // Whether the section's own check already reports this use when its item does
    // not exist (or deliberately does not look it up).
    bool checkedBySection = true;
    // Where the section's editor shows the use: the node of the record that holds
    // it (the record's address, as the editor's node key; null for the section's
    // own node) and the row of that node's list (-1: the node itself).
    const void* node = nullptr;
    std::ptrdiff_t row = -1;

    std::string line() const; // "FILE: where: attribute"
};

class RefIndex {
public:
    RefIndex() = default;
    explicit RefIndex(const RefSections& sections) { build(sections); }
    // Only the uses of DB.DATA, for a rename of that one item; build() then keeps
    // only those too.
    RefIndex(const RefSections& sections, std::string_view db, std::string_view data)
        : only_(true), onlyDb_(db), onlyData_(data) {
        build(sections);
    }
    // Replaces the index with every use in `sections`, in file order.
    void build(const RefSections& sections);

    // The uses of DB.DATA (exact, case-sensitive; an alias is its own item), in
    // file order. Empty when the item is not used.
    std::vector<const RefUse*> usesOf(std::string_view db, std::string_view data) const;
    // Every use, in file order.
    const std::vector<RefUse>& uses() const { return uses_; }
    // The item a use names.
    static std::pair<std::string_view, std::string_view> itemOf(const RefUse& use);
    std::size_t itemCount() const { return byItem_.size(); }

    // Whether a limit or period text names a variable ("DB.DATA") rather than a
    // number or a bare name.
    static bool isJoinedReference(std::string_view text);

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view s) const noexcept {
            return std::hash<std::string_view>{}(s);
        }
    };
    void add(RefUse use);
    bool only_ = false; // keeps only the uses of onlyDb_.onlyData_
    std::string onlyDb_, onlyData_;
    std::vector<RefUse> uses_;
    std::unordered_map<std::string, std::vector<std::uint32_t>, Hash, std::equal_to<>> byItem_;
};

// Renames DB.DATA to DB.NEWNAME in every use of `index` (pairs change their data
// name, texts their part after the first full stop). Returns the number of uses
// changed.
std::size_t renameUses(const RefIndex& index, std::string_view db, std::string_view data,
                       const std::string& newName);

} // namespace rq

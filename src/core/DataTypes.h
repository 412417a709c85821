#pragma once
// The data type table of the real-time database and the reference to one
// real-time variable, shared by every section that points at real-time data.

#include <string>
#include <string_view>

namespace rq {

struct DataTypeRow {
    const char* keyword; // what files store
    const char* shown;   // what lists and combo boxes show
    int size;            // bytes; 0 = the user gives the length
};

class DataTypeTable {
public:
    static constexpr int kCount = 11;
    static const DataTypeRow& row(int index); // index must be in 0..10

    // Size of a keyword; 0 when unknown.
    static int sizeOfKeyword(std::string_view keyword);
    // Index of a shown text; -1 when unknown.
    static int indexOfShown(std::string_view shown);
    // Index of a keyword; -1 when unknown.
    static int indexOfKeyword(std::string_view keyword);
    // Keyword / shown text of an index; empty outside 0..10.
    static std::string keywordAt(int index);
    static std::string shownAt(int index);
    // Shown text of a keyword; empty when unknown.
    static std::string shownOfKeyword(std::string_view keyword);
};

// A real-time variable by database name and data name (which may be an alias).
struct DataRef {
    std::string dbname;
    std::string dataname;

    bool empty() const { return dbname.empty() && dataname.empty(); }
    bool operator==(const DataRef&) const = default;

    // The one-text form "DB.DATA" used by some fields.
    std::string joined() const { return dbname + "." + dataname; }
    // Splits a one-text reference at its first full stop. Text without a full stop
    // gives an empty data name.
    static DataRef split(std::string_view text);
};

} // namespace rq

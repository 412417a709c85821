#pragma once
// The data logs (datalog.xml): logs the controller runtime records of real-time
// data, either of a whole database or of chosen variables.

#include "core/ConfigSection.h"
#include "core/DataTypes.h"

#include <string>
#include <string_view>
#include <vector>

namespace rq {

enum class DataLogKind {
    Database = 12,  // a whole real-time database, source "rtdb"
    Variables = 13, // chosen variables, source "rtdb_data"
};

struct DataLog {
    DataLogKind kind = DataLogKind::Variables;
    std::string name;
    std::string period = "1000"; // default record period, milliseconds
    std::string period_var;      // variable giving the period, may be empty
    std::string control_var;     // control variable, may be empty
    std::string size = "100";    // record data size
    std::string dbname;          // the logged database (Database logs)
    std::vector<DataRef> data;   // the logged variables (Variables logs)

    // "rtdb" or "rtdb_data", following the kind.
    const char* source() const;
};

class DataLogSection : public ConfigSection {
public:
    const char* fileName() const override { return "datalog.xml"; }
    void clear() override { logs.clear(); }
    bool read(const std::string& path, ReadContext& ctx) override;
    void write(std::string& out) const override;
    std::vector<std::pair<std::string, std::size_t>> counts() const override;
    void check(CheckContext& ctx) const override;

    // Index of the log with exactly this name, or -1.
    int findLog(std::string_view name) const;

    std::vector<DataLog> logs;
};

} // namespace rq

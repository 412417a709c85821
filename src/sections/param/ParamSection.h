#pragma once
// The parameters (param.xml): real-time data items that the runtime sets to an
// initial value at start.

#include "core/ConfigSection.h"

#include <string>
#include <string_view>
#include <vector>

namespace rq {

struct ParamItem {
    std::string dbname;   // real-time data reference: database name
    std::string dataname; //                            data name
    std::string value;    // initial value as typed, not checked against the type
};

class ParamSection : public ConfigSection {
public:
    const char* fileName() const override { return "param.xml"; }
    void clear() override { items.clear(); }
    bool read(const std::string& path, ReadContext& ctx) override;
    void write(std::string& out) const override;
    std::vector<std::pair<std::string, std::size_t>> counts() const override;
    void check(CheckContext& ctx) const override;

    // Index of the first record with exactly this pair, or -1 (the editor finds
    // records by the pair).
    int findItem(std::string_view dbname, std::string_view dataname) const;

    std::vector<ParamItem> items;
};

} // namespace rq

#pragma once
// The function block section (fbd.xml): block instances of the fixed classes of
// FbdClassCatalog, each with an enabling reference, an optional member kind and its
// parameter bindings to real-time data.

#include "core/ConfigSection.h"
#include "core/DataTypes.h"
#include "core/MessageSink.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rq {

struct FbdParam {
    std::string name;    // a parameter name of the block's class
    std::string dbname;  // database name
    std::string varname; // data name
};

struct FbdItem {
    std::string name;       // unique among the blocks; the tree label
    std::string blockname;  // class keyword
    DataRef enable;         // boolean item enabling the block; empty = always enabled
    std::string memberKind; // member keyword, for classes with member kinds; may be empty
    std::vector<FbdParam> params;
};

class FbdSection : public ConfigSection {
public:
    // The parameter lines the writer adds in front of the bindings.
    static constexpr const char* kEnableParam = "EN";
    static constexpr const char* kTypeParam = "TYPE";
    // The always-true system item written for a block without enabling reference.
    static constexpr const char* kSystemDb = "system";
    static constexpr const char* kAlwaysTrue = "Logic_True";
    static constexpr const char* kDuplicateMessage = "The Function block already exist!";

    const char* fileName() const override { return "fbd.xml"; }
    void clear() override { blocks_.clear(); }
    bool read(const std::string& path, ReadContext& ctx) override;
    void write(std::string& out) const override;
    std::vector<std::pair<std::string, std::size_t>> counts() const override;
    void check(CheckContext& ctx) const override;

    const std::vector<FbdItem>& blocks() const { return blocks_; }
    std::vector<FbdItem>& blocks() { return blocks_; }
    // The block labelled `name` (exact, case-sensitive); nullptr when none.
    const FbdItem* find(std::string_view name) const;
    // The message that refuses a block named `name`: "The Function block already
    // exist!" when a block of that name exists already.
    std::optional<std::string> duplicateMessage(std::string_view name) const;
    // Appends the block unless a block of that name exists already; then shows the
    // duplicate message (stop icon) and returns false.
    bool add(FbdItem item, MessageSink& sink);

private:
    std::vector<FbdItem> blocks_;
};

} // namespace rq

#pragma once
// What the real-time database editor needs to know about the uses of its data in
// the other sections, and the questions it asks with them: deleting used data
// lists the uses and asks whether to delete anyway; renaming used data (or a
// database) offers to update the references in the same step.
//
// The uses come from the project's reference index (refs/RefIndex.h) through
// RtdbReferences; the editor works without one (no uses, no questions).

#include "core/EditCommand.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rq {

class DataNode;

// One use of an item: the item ("DB.DATA") and where it is used
// ("FILE: where: attribute").
struct DataUse {
    std::string item;
    std::string line;
    bool operator==(const DataUse&) const = default;
};

class RtdbReferences {
public:
    virtual ~RtdbReferences() = default;
    // The uses of DB.DATA, in file order.
    virtual std::vector<DataUse> usesOf(std::string_view db, std::string_view data) = 0;
    // The uses of any item of database DB (whether the item exists or not).
    virtual std::vector<DataUse> usesOfDatabase(std::string_view db) = 0;
    // The step that makes every use of DB.DATA name DB.NEWNAME; null when none.
    virtual std::unique_ptr<EditCommand> renameData(const std::string& db, const std::string& data,
                                                    const std::string& newName) = 0;
    // The step that makes every use of an item of DB name database NEWDB; null when
    // none.
    virtual std::unique_ptr<EditCommand> renameDatabase(const std::string& db,
                                                        const std::string& newDb) = 0;
};

namespace rtdbtext {
// The listing keeps this many uses; "and N more" stands for the rest.
inline constexpr std::size_t kUsesShown = 10;
} // namespace rtdbtext

// The uses of the items named `names` of `node` (a database or group): their
// references and the aliases standing for them ("rtdb.xml: alias "A": target"),
// except aliases among `names`.
std::vector<DataUse> usesOfItems(RtdbReferences& refs, const DataNode& node,
                                 const std::vector<std::string>& names);
// The uses of every item of a database or group and of the groups below it.
std::vector<DataUse> usesOfNode(RtdbReferences& refs, const DataNode& node);

// The uses, one line each, at most kUsesShown, then "and N more". The item stands
// before each line when the uses are of more than one item.
std::string usesListing(const std::vector<DataUse>& uses);

// The question before deleting used data (Yes deletes); nothing when unused.
std::optional<std::string> deleteUsesQuestion(const std::vector<DataUse>& uses);
// The question after a rename of used data ITEM to NEWITEM, or of a database (both
// "DB" alone): Yes updates the references too; nothing when unused.
std::optional<std::string> renameUsesQuestion(const std::vector<DataUse>& uses,
                                              const std::string& item, const std::string& newItem,
                                              bool database);

} // namespace rq

#pragma once
// The step that makes the references to one real-time data item, or to every item
// of one database, name the item's or the database's new name, in all sections
// that refer to real-time data.
//
// The step keeps no pointer into the sections: it keeps the positions of the uses
// it changed in the reference index (file order), which depend only on the
// sections' records. The history undoes and redoes steps in order, so the sections
// hold the same records whenever this step is undone or made again; each time the
// index is built anew and the same positions are changed back or forth.

#include "core/EditCommand.h"
#include "refs/RefIndex.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace rq {

class RenameReferences : public EditCommand {
public:
    // Every use of DB.DATA, to name DB.NEWNAME. Null when nothing in `index` (built
    // from `sections` as they are now) uses the item.
    static std::unique_ptr<RenameReferences> item(std::string name, const RefSections& sections,
                                                  const RefIndex& index, const std::string& db,
                                                  const std::string& data,
                                                  const std::string& newName);
    // Every use of an item of database DB (whether the item exists or not), to name
    // database NEWDB. Null when nothing uses the database.
    static std::unique_ptr<RenameReferences> database(std::string name, const RefSections& sections,
                                                      const RefIndex& index, const std::string& db,
                                                      const std::string& newDb);

    void redo() override { apply(from_, to_); }
    void undo() override { apply(to_, from_); }
    std::vector<int> sections() const override { return files_; }
    std::size_t count() const { return positions_.size(); }

private:
    RenameReferences(std::string name, const RefSections& sections, bool database, std::string db,
                     std::string from, std::string to);
    void collect(const RefIndex& index, const std::vector<const RefUse*>& uses);
    // Changes the uses at the kept positions that name `from` to name `to`.
    void apply(const std::string& from, const std::string& to);
    // A "DB.DATA" text with the renamed part replaced by `to`.
    std::string renamed(std::string_view text, const std::string& to) const;

    RefSections sections_;
    bool database_;  // the database part changes, else the data part
    std::string db_; // the database, for an item rename
    std::string from_, to_;
    std::vector<std::uint32_t> positions_;
    std::vector<int> files_; // the section indexes changed
};

} // namespace rq

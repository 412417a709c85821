#pragma once
// One step of a project's edit history: a change that a section command made to
// the model, with the name the Undo and Redo commands show ("Add Data"), able to
// make its change again and to revert it.
//
// A command holds the records it needs to revert itself (the items it removed, the
// old values it overwrote), never a copy of a whole section, so that undo and
// redo cost as much as the change itself.

#include <string>
#include <vector>

namespace rq {

class EditCommand {
public:
    // `section`: index of the section file the command changes (SectionTable.h).
    EditCommand(std::string name, int section) : name_(std::move(name)), section_(section) {}
    virtual ~EditCommand() = default;
    EditCommand(const EditCommand&) = delete;
    EditCommand& operator=(const EditCommand&) = delete;

    const std::string& name() const { return name_; }
    int section() const { return section_; }
    // Every section file the command changes: most change the one they were made
    // for; a step that spans several sections lists them all.
    virtual std::vector<int> sections() const { return {section_}; }

    // Makes the change (the first time, and again after undo).
    virtual void redo() = 0;
    // Reverts it: the model is as it was before redo.
    virtual void undo() = 0;

private:
    std::string name_;
    int section_;
};

} // namespace rq

#pragma once
// The steps that the HMI database commands push on the project's history. Groups
// are addressed by their path of positions below their fixed group, items by
// their positions in their group, which a linear history keeps valid; a step holds
// only what it took out or overwrote. Each step exists for both item kinds: Item
// is HmiIoItem (below "Real-time related data") or HmiMemoryItem (below "custom
// data").

#include "core/EditCommand.h"
#include "core/SectionTable.h"
#include "sections/hmidb/HmiDbSection.h"

#include <cstddef>
#include <string>
#include <vector>

namespace rq {

inline constexpr int kHmiDbSectionIndex = sectionIndexOf("hmidb.xml");

// Positions from a fixed group down to one of its groups; empty = the fixed group.
using HmiGroupPath = std::vector<std::size_t>;

template <class Item> HmiDataGroup<Item>& fixedGroup(HmiDbSection& s);
template <> inline HmiIoGroup& fixedGroup<HmiIoItem>(HmiDbSection& s) {
    return s.io;
}
template <> inline HmiMemoryGroup& fixedGroup<HmiMemoryItem>(HmiDbSection& s) {
    return s.memory;
}

// The group at `path` (every position must be valid).
template <class Item> HmiDataGroup<Item>& groupAt(HmiDbSection& s, const HmiGroupPath& path) {
    HmiDataGroup<Item>* g = &fixedGroup<Item>(s);
    for (std::size_t i : path)
        g = &g->groups[i];
    return *g;
}

// A new empty group appended below the group at `parent`.
template <class Item> class InsertHmiGroup : public EditCommand {
public:
    InsertHmiGroup(std::string name, HmiDbSection& s, HmiGroupPath parent, std::string groupName);
    void redo() override;
    void undo() override;
    // The path of the group put in.
    HmiGroupPath path() const;

private:
    HmiDbSection& s_;
    HmiGroupPath parent_;
    std::size_t index_;
    HmiDataGroup<Item> held_;
};

// A nested group taken out with all it holds; undo puts it back where it was.
template <class Item> class RemoveHmiGroup : public EditCommand {
public:
    // `path` is not empty: the fixed groups stay.
    RemoveHmiGroup(std::string name, HmiDbSection& s, HmiGroupPath path);
    void redo() override;
    void undo() override;

private:
    HmiDbSection& s_;
    HmiGroupPath path_;
    HmiDataGroup<Item> held_;
};

// A nested group's name.
template <class Item> class RenameHmiGroup : public EditCommand {
public:
    RenameHmiGroup(std::string name, HmiDbSection& s, HmiGroupPath path, std::string newName);
    void redo() override;
    void undo() override;

private:
    HmiDbSection& s_;
    HmiGroupPath path_;
    std::string other_; // the name not in the model
};

// One item appended to a group's list.
template <class Item> class AppendHmiData : public EditCommand {
public:
    AppendHmiData(std::string name, HmiDbSection& s, HmiGroupPath group, Item item);
    void redo() override;
    void undo() override;

private:
    HmiDbSection& s_;
    HmiGroupPath group_;
    Item item_;
};

// Items taken out by position; undo puts each back where it was.
template <class Item> class RemoveHmiData : public EditCommand {
public:
    // `rows` in increasing order without repeats, each below the list's size.
    RemoveHmiData(std::string name, HmiDbSection& s, HmiGroupPath group,
                  std::vector<std::size_t> rows);
    void redo() override;
    void undo() override;

private:
    HmiDbSection& s_;
    HmiGroupPath group_;
    std::vector<std::size_t> rows_;
    std::vector<Item> removed_;
};

// One item overwritten in place.
template <class Item> class ReplaceHmiData : public EditCommand {
public:
    ReplaceHmiData(std::string name, HmiDbSection& s, HmiGroupPath group, std::size_t index,
                   Item item);
    void redo() override;
    void undo() override;

private:
    HmiDbSection& s_;
    HmiGroupPath group_;
    std::size_t index_;
    Item other_; // the value not in the model: the new one before redo, the old after
};

} // namespace rq

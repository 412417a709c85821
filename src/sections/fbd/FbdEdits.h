#pragma once
// The steps that the function block commands push on the project's history.
// Blocks are addressed by their positions, which a linear history keeps valid; a
// step holds only what it took out or overwrote.

#include "core/EditCommand.h"
#include "core/SectionTable.h"
#include "sections/fbd/FbdSection.h"

#include <cstddef>

namespace rq {

inline constexpr int kFbdSectionIndex = sectionIndexOf("fbd.xml");

// One block appended as the last block.
class AppendBlock : public EditCommand {
public:
    AppendBlock(FbdSection& s, FbdItem item);
    void redo() override;
    void undo() override;

private:
    FbdSection& s_;
    FbdItem item_;
};

// One block taken out; undo puts it back in its place.
class RemoveBlock : public EditCommand {
public:
    RemoveBlock(FbdSection& s, std::size_t index);
    void redo() override;
    void undo() override;

private:
    FbdSection& s_;
    std::size_t index_;
    FbdItem removed_;
};

// A block's name and member kind overwritten.
class ChangeBlockSettings : public EditCommand {
public:
    ChangeBlockSettings(FbdSection& s, std::size_t index, std::string name, std::string memberKind);
    void redo() override;
    void undo() override;

private:
    FbdSection& s_;
    std::size_t index_;
    std::string name_;
    std::string memberKind_;
};

// The reference of one row of a block's list overwritten: row 0 is the enabling
// reference, row n the n-th binding.
class ReplaceBlockReference : public EditCommand {
public:
    ReplaceBlockReference(FbdSection& s, std::size_t block, std::size_t row, DataRef ref);
    void redo() override;
    void undo() override;

private:
    FbdSection& s_;
    std::size_t block_;
    std::size_t row_;
    DataRef other_;
};

} // namespace rq

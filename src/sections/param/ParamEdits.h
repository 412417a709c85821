#pragma once
// The steps that the parameter commands push on the project's history. Records
// are addressed by their positions, which a linear history keeps valid; a step
// holds only what it took out or overwrote.

#include "core/EditCommand.h"
#include "core/SectionTable.h"
#include "sections/param/ParamSection.h"

#include <cstddef>
#include <vector>

namespace rq {

inline constexpr int kParamSectionIndex = sectionIndexOf("param.xml");

// One record appended at the end of the list.
class AppendParam : public EditCommand {
public:
    AppendParam(std::string name, ParamSection& s, ParamItem item);
    void redo() override;
    void undo() override;

private:
    ParamSection& s_;
    ParamItem item_;
};

// Records taken out by position; undo puts each back where it was.
class RemoveParams : public EditCommand {
public:
    // `rows` in increasing order, each below the list's size.
    RemoveParams(std::string name, ParamSection& s, std::vector<std::size_t> rows);
    void redo() override;
    void undo() override;

private:
    ParamSection& s_;
    std::vector<std::size_t> rows_;
    std::vector<ParamItem> removed_;
};

// One record's three fields overwritten.
class ReplaceParam : public EditCommand {
public:
    ReplaceParam(std::string name, ParamSection& s, std::size_t index, ParamItem item);
    void redo() override;
    void undo() override;

private:
    ParamSection& s_;
    std::size_t index_;
    ParamItem other_;
};

} // namespace rq

#pragma once
// The steps that the history commands push on the project's history of edits.
// History records and their variables are addressed by their positions, which a
// linear history keeps valid; a step holds only what it took out or overwrote.

#include "core/EditCommand.h"
#include "core/SectionTable.h"
#include "sections/history/HistorySection.h"

#include <cstddef>
#include <vector>

namespace rq {

inline constexpr int kHistorySectionIndex = sectionIndexOf("history.xml");

// A history record put in at `index`; undo takes it out again.
class InsertHistoryRecord : public EditCommand {
public:
    InsertHistoryRecord(std::string name, HistorySection& s, std::size_t index,
                        HistoryRecord record);
    void redo() override;
    void undo() override;

private:
    HistorySection& s_;
    std::size_t index_;
    HistoryRecord held_;
};

// A history record taken out with its variables; undo puts it back.
class RemoveHistoryRecord : public EditCommand {
public:
    RemoveHistoryRecord(std::string name, HistorySection& s, std::size_t index);
    void redo() override;
    void undo() override;

private:
    HistorySection& s_;
    std::size_t index_;
    HistoryRecord held_;
};

// A history record's five settings overwritten (its variables stay).
class ReplaceHistoryRecord : public EditCommand {
public:
    ReplaceHistoryRecord(std::string name, HistorySection& s, std::size_t index,
                         const HistoryRecord& settings);
    void redo() override;
    void undo() override;

private:
    HistorySection& s_;
    std::size_t index_;
    HistoryRecord other_; // variables unused
};

// The variables of one history record: one appended, some removed by position,
// or one overwritten.
class AppendHistoryData : public EditCommand {
public:
    AppendHistoryData(std::string name, HistorySection& s, std::size_t record, HistoryData data);
    void redo() override;
    void undo() override;

private:
    HistorySection& s_;
    std::size_t record_;
    HistoryData data_;
};

class RemoveHistoryData : public EditCommand {
public:
    // `rows` in increasing order, each below the list's size.
    RemoveHistoryData(std::string name, HistorySection& s, std::size_t record,
                      std::vector<std::size_t> rows);
    void redo() override;
    void undo() override;

private:
    HistorySection& s_;
    std::size_t record_;
    std::vector<std::size_t> rows_;
    std::vector<HistoryData> removed_;
};

class ReplaceHistoryData : public EditCommand {
public:
    ReplaceHistoryData(std::string name, HistorySection& s, std::size_t record, std::size_t index,
                       HistoryData data);
    void redo() override;
    void undo() override;

private:
    HistorySection& s_;
    std::size_t record_, index_;
    HistoryData other_;
};

} // namespace rq

#pragma once
// The steps that the data log commands push on the project's history. Logs and
// their variables are addressed by position, which a linear history keeps valid;
// a step holds only what it took out or overwrote.

#include "core/EditCommand.h"
#include "core/SectionTable.h"
#include "sections/datalog/DataLogSection.h"

#include <cstddef>
#include <vector>

namespace rq {

inline constexpr int kDataLogSectionIndex = sectionIndexOf("datalog.xml");

// A log put in at `index` (undo takes it out again).
class InsertDataLog : public EditCommand {
public:
    InsertDataLog(std::string name, DataLogSection& s, std::size_t index, DataLog log);
    void redo() override;
    void undo() override;

private:
    DataLogSection& s_;
    std::size_t index_;
    DataLog held_; // the log while it is not in the section
};

// A log taken out with its variables.
class RemoveDataLog : public EditCommand {
public:
    RemoveDataLog(std::string name, DataLogSection& s, std::size_t index);
    void redo() override;
    void undo() override;

private:
    DataLogSection& s_;
    std::size_t index_;
    DataLog held_;
};

// A log's own fields (name, period, period variable, control variable, size,
// database) overwritten; its kind and variables stay.
class ChangeDataLogSettings : public EditCommand {
public:
    // `settings`: the new fields; its kind and variables are not used.
    ChangeDataLogSettings(std::string name, DataLogSection& s, std::size_t index, DataLog settings);
    void redo() override;
    void undo() override;

private:
    DataLogSection& s_;
    std::size_t index_;
    DataLog other_; // the fields not in the model: the new ones before redo, the old after
};

// One variable appended to a log's list.
class AppendLogData : public EditCommand {
public:
    AppendLogData(std::string name, DataLogSection& s, std::size_t log, DataRef ref);
    void redo() override;
    void undo() override;

private:
    DataLogSection& s_;
    std::size_t log_;
    DataRef ref_;
};

// Variables of a log taken out by position; undo puts each back where it was.
class RemoveLogData : public EditCommand {
public:
    // `rows` in increasing order, each below the log's variable count.
    RemoveLogData(std::string name, DataLogSection& s, std::size_t log,
                  std::vector<std::size_t> rows);
    void redo() override;
    void undo() override;

private:
    DataLogSection& s_;
    std::size_t log_;
    std::vector<std::size_t> rows_;
    std::vector<DataRef> removed_;
};

// One variable of a log overwritten in place.
class ReplaceLogData : public EditCommand {
public:
    ReplaceLogData(std::string name, DataLogSection& s, std::size_t log, std::size_t row,
                   DataRef ref);
    void redo() override;
    void undo() override;

private:
    DataLogSection& s_;
    std::size_t log_;
    std::size_t row_;
    DataRef other_;
};

} // namespace rq

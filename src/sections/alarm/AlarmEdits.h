#pragma once
// The steps that the alarm commands push on the project's history. Groups and
// alarm data are addressed by their positions, which a linear history keeps
// valid; a step holds only what it took out or overwrote.

#include "core/EditCommand.h"
#include "core/SectionTable.h"
#include "sections/alarm/AlarmSection.h"

#include <cstddef>
#include <string>
#include <vector>

namespace rq {

inline constexpr int kAlarmSectionIndex = sectionIndexOf("alarm.xml");

// The buffer size replaced by another (undo puts the old one back).
class ChangeAlarmLogSize : public EditCommand {
public:
    ChangeAlarmLogSize(AlarmSection& s, std::string size);
    void redo() override;
    void undo() override;

private:
    AlarmSection& s_;
    std::string other_; // the value not in the section now
};

// A new group appended as the last one.
class AppendAlarmGroup : public EditCommand {
public:
    AppendAlarmGroup(std::string name, AlarmSection& s, AlarmGroup group);
    void redo() override;
    void undo() override;

private:
    AlarmSection& s_;
    AlarmGroup group_; // held while undone
};

// A group taken out with its data; undo puts it back at its place.
class RemoveAlarmGroup : public EditCommand {
public:
    RemoveAlarmGroup(std::string name, AlarmSection& s, std::size_t index);
    void redo() override;
    void undo() override;

private:
    AlarmSection& s_;
    std::size_t index_;
    AlarmGroup held_;
};

// A group's name replaced (the dialog's OK or a label edit).
class RenameAlarmGroup : public EditCommand {
public:
    RenameAlarmGroup(std::string name, AlarmSection& s, std::size_t index, std::string newName);
    void redo() override;
    void undo() override;

private:
    AlarmSection& s_;
    std::size_t index_;
    std::string other_;
};

// One alarm data appended to a group.
class AppendAlarmData : public EditCommand {
public:
    AppendAlarmData(std::string name, AlarmSection& s, std::size_t group, AlarmDataItem item);
    void redo() override;
    void undo() override;

private:
    AlarmSection& s_;
    std::size_t group_;
    AlarmDataItem item_;
};

// Alarm data of a group taken out by position; undo puts each back where it was.
class RemoveAlarmData : public EditCommand {
public:
    // `rows` in increasing order, each below the group's data count.
    RemoveAlarmData(std::string name, AlarmSection& s, std::size_t group,
                    std::vector<std::size_t> rows);
    void redo() override;
    void undo() override;

private:
    AlarmSection& s_;
    std::size_t group_;
    std::vector<std::size_t> rows_;
    std::vector<AlarmDataItem> removed_;
};

// One alarm data overwritten in place.
class ReplaceAlarmData : public EditCommand {
public:
    ReplaceAlarmData(std::string name, AlarmSection& s, std::size_t group, std::size_t row,
                     AlarmDataItem item);
    void redo() override;
    void undo() override;

private:
    AlarmSection& s_;
    std::size_t group_;
    std::size_t row_;
    AlarmDataItem other_;
};

} // namespace rq

#pragma once
// The commands of the alarm editor. Each runs the whole flow (the dialog, the
// duplicate test after OK that opens the dialog again with what was typed, the
// delete question) and pushes its change as one step on the project's history
// (AlarmEdits.h). Groups are the nodes below "alarm  configuration"; the alarm
// data of the selected group are the rows of the list, found by their database
// and data name pair.

#include "core/MessageSink.h"
#include "core/UndoHistory.h"
#include "sections/alarm/AlarmForms.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace rq {

// The dialogs as the commands see them: modal, false on Cancel; on OK the form's
// validator runs and the dialog stays open while it refuses.
class AlarmDialogHost {
public:
    virtual ~AlarmDialogHost() = default;
    virtual bool configDialog(AlarmConfigForm& form) = 0;
    virtual bool groupDialog(AlarmGroupForm& form) = 0;
    virtual bool dataDialog(AlarmDataForm& form) = 0;
};

struct AlarmEditor {
    AlarmSection& section;
    AlarmDialogHost& dialogs;
    MessageSink& sink;
    UndoHistory& history;
};

// The position of a group given by its address (a node's key); nothing for any
// other address.
std::optional<std::size_t> alarmGroupIndex(const AlarmSection& s, const void* group);

// Opens "Alarm Configuration" on the stored size; true when OK changed it.
bool configureAlarmBuffer(const AlarmEditor& ed);

// Appends a group of the name typed; a name of another group is refused ("The alarm
// group already exist!"). Gives the new group's position.
std::optional<std::size_t> addAlarmGroup(const AlarmEditor& ed);
// "Setting Alarm Group" on the group's name; OK renames it, refusing another
// group's name like the add.
bool modifyAlarmGroup(const AlarmEditor& ed, std::size_t group);
// A label edited in the tree: an empty label is refused silently, a label the
// file cannot store or another group's name with its message.
bool renameAlarmGroupLabel(const AlarmEditor& ed, std::size_t group, const std::string& label);
// After the question, removes the group with its alarm data.
bool deleteAlarmGroup(const AlarmEditor& ed, std::size_t group);

// Appends an alarm data to the group; a pair the group holds is refused ("The data
// already exist!").
bool addAlarmData(const AlarmEditor& ed, std::size_t group);
// Opens the dialog on the record of the first selected row's pair (its first
// record in the group) and stores it back. A pair that another record of the
// group holds is refused with the add command's message.
bool modifyAlarmData(const AlarmEditor& ed, std::size_t group,
                     const std::vector<std::size_t>& rows);
// After the question, removes the alarm data of the selected rows.
bool deleteAlarmData(const AlarmEditor& ed, std::size_t group,
                     const std::vector<std::size_t>& rows);

} // namespace rq

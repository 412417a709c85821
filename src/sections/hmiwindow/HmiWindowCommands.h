#pragma once
// The commands of the windows editor: the windows of hmiwindow.xml are the rows of
// the list below the "windows" node. Each command runs the whole flow (the
// dialog, the tests after OK that open the dialog again with what was typed, the
// layout file, the delete question) and pushes its change as one step on the
// project's history (HmiWindowEdits.h). Windows are addressed by their rows.

#include "core/CommandLine.h"
#include "core/MessageSink.h"
#include "core/ProjectModel.h"
#include "core/UndoHistory.h"
#include "sections/hmiwindow/HmiWindowEdits.h"
#include "sections/hmiwindow/HmiWindowForms.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace rq {

// "Window Setting" as the commands see it: shown modally with the form's values,
// false on Cancel; on OK it runs validateWindowForm and, while that returns a
// message, shows it (stop icon) and stays open.
class WindowDialogHost {
public:
    virtual ~WindowDialogHost() = default;
    virtual bool windowDialog(WindowForm& form) = 0;
};

struct HmiWindowEditor {
    HmiWindowSection& section;
    WindowDialogHost& dialogs;
    MessageSink& sink;
    UndoHistory& history;
    const ProjectModel& project; // its directory and HMI type
    ProgramLauncher& launcher;   // starts the designer
    const std::string& programDir;
};

// Needs a project directory. Refuses a reserved file name as typed, then a name
// the list holds; with "Create File Auto" makes the layout file from the template
// at the HMI type's screen size unless a file of that name can be opened. A file
// that cannot be made is reported and the dialog opens again with what was typed.
bool addWindow(const HmiWindowEditor& ed);
// The first selected row's window: refuses a reserved file name; with "Create
// File Auto" makes a missing layout file, empty. No duplicate test.
bool modifyWindow(const HmiWindowEditor& ed, const std::vector<std::size_t>& rows);
// After the question, removes the windows of the selected rows; their layout
// files stay on disk.
bool deleteWindows(const HmiWindowEditor& ed, const std::vector<std::size_t>& rows);
// Starts the designer on the layout file of every selected row. A designer that
// cannot be started is reported (program and directory) and the rest are not
// tried. Changes nothing.
void editWindows(const HmiWindowEditor& ed, const std::vector<std::size_t>& rows);

// Shared by the commands: the selected rows below `count`, in increasing order,
// each once.
std::vector<std::size_t> selectedWindowRows(const std::vector<std::size_t>& rows,
                                            std::size_t count);
// Makes the layout file `fileName` in the project directory with `content` unless
// a file of that name can be opened: the file for the step when one was written,
// nothing when it was there already; a failure sets `message` to what to show.
std::optional<NewLayoutFile> makeLayoutFile(const HmiWindowEditor& ed, const std::string& fileName,
                                            const std::string& content, std::string* message);

} // namespace rq

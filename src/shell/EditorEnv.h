#pragma once
// What a section editor gets when the main window registers it: the project (its
// sections and its history), the message sink, the parent of its dialogs, the
// catalogs, the program directory (for the system database) and the launcher that
// starts the sibling programs (the window designer) from it.

#include "core/Catalogs.h"
#include "core/CommandLine.h"
#include "core/MessageSink.h"
#include "project/Project.h"

#include <string>

class QWidget;

namespace rqshell {

struct EditorEnv {
    rq::Project& project;
    rq::MessageSink& sink;
    QWidget* dialogParent;
    const rq::Catalogs& catalogs;
    std::string programDir;
    rq::ProgramLauncher& launcher;
};

} // namespace rqshell

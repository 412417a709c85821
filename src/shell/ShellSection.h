#pragma once
// A section object of the workspace: attaches its handlers to its fixed node of the
// project tree, puts its container nodes beneath it, fills the main view and runs
// its section commands.

#include "core/MessageSink.h"
#include "project/ProjectFlows.h"

#include <functional>

class QWidget;

namespace rqshell {

class CPrjTree;
class CRQPDevView;

// What a section object gets from the main window.
struct ShellContext {
    CPrjTree& tree;
    CRQPDevView& view;
    rq::MessageSink& sink;
    QWidget* dialogParent;
    std::function<void()> markModified;
    // Runs a command as the menus do (enabled state included).
    std::function<void(int)> runCommand;
};

class ShellSection {
public:
    virtual ~ShellSection() = default;
    virtual rq::SectionObject object() const = 0;
    // Emptying the tree: removes the section's child nodes (the fixed node stays).
    virtual void clearNodes() = 0;
    // After a project has been loaded: puts the child nodes back from the model.
    virtual void rebuildNodes() = 0;
    // Whether the section has built this one of its commands; the others stay
    // disabled.
    virtual bool handles(int command) const { return true; }
    // Runs one of the section's commands (sectionOfCommand(command) == object()).
    virtual void runCommand(int command) = 0;
    // A step of the history was undone or redone: the nodes and the list are shown
    // again from the model.
    virtual void historyChanged() { rebuildNodes(); }
};

} // namespace rqshell

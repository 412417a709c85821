#pragma once
// The real-time database in the workspace: the section node "real-time database"
// with a node per database and data group, the list of a node's items in the main
// view, and the commands of its menus.

#include "sections/rtdb/RtdbCommands.h"
#include "sections/rtdb/ui/RtdbDialogs.h"
#include "shell/ShellSection.h"
#include "shell/TreeNodeHandler.h"

#include <memory>

class QTreeWidgetItem;

namespace rqshell {

class RtdbTreeSection : public ShellSection {
public:
    RtdbTreeSection(rq::RtdbSection& rtdb, ShellContext ctx);
    ~RtdbTreeSection() override;

    rq::SectionObject object() const override { return rq::SectionObject::Rtdb; }
    void clearNodes() override;
    void rebuildNodes() override;
    void runCommand(int command) override;

    // The tree node of a database or group; the fixed node for the root.
    QTreeWidgetItem* itemOf(const rq::DataNode* node) const;
    // The node of the selected tree item when it belongs to this section.
    rq::DataNode* selectedNode() const;
    // The dialogs (tests replace them with a scripted host).
    void setDialogHost(rq::RtdbDialogHost* host) { dialogs_ = host; }

private:
    class NodeHandler;
    friend class NodeHandler;

    void showNode(const rq::DataNode* node);
    void rebuildAndSelect(const rq::DataNode* select);
    void addChildren(QTreeWidgetItem* parent, rq::DataNode& node);
    rq::RtdbEditor editor();

    rq::RtdbSection& rtdb_;
    ShellContext ctx_;
    std::unique_ptr<NodeHandler> handler_;
    RtdbQtDialogHost qtDialogs_;
    rq::RtdbDialogHost* dialogs_;
};

} // namespace rqshell

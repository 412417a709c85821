#include "sections/rtdb/RtdbEdits.h"

namespace rq {

ChangeNodeProperties::ChangeNodeProperties(std::string name, DataNode& node, std::string newName,
                                           bool newSync)
    : EditCommand(std::move(name), kRtdbSectionIndex), node_(node), oldName_(node.name()),
      newName_(std::move(newName)), oldSync_(node.sync()), newSync_(newSync) {}

void ChangeNodeProperties::redo() {
    node_.setName(newName_);
    node_.setSync(newSync_);
}

void ChangeNodeProperties::undo() {
    node_.setName(oldName_);
    node_.setSync(oldSync_);
}

} // namespace rq

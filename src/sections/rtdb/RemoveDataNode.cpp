#include "sections/rtdb/RtdbEdits.h"

namespace rq {

RemoveDataNode::RemoveDataNode(std::string name, DataNode& node)
    : EditCommand(std::move(name), kRtdbSectionIndex), parent_(*node.parent()),
      index_(static_cast<std::size_t>(node.parent()->indexOfChild(&node))), node_(&node) {}

void RemoveDataNode::redo() {
    held_ = parent_.takeChild(index_);
}

void RemoveDataNode::undo() {
    parent_.insertChild(index_, std::move(held_));
}

} // namespace rq

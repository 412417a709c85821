#include "sections/rtdb/RtdbEdits.h"

namespace rq {

InsertDataNode::InsertDataNode(std::string name, DataNode& parent, std::size_t index,
                               std::unique_ptr<DataNode> node)
    : EditCommand(std::move(name), kRtdbSectionIndex), parent_(parent), index_(index),
      held_(std::move(node)), node_(held_.get()) {}

void InsertDataNode::redo() {
    parent_.insertChild(index_, std::move(held_));
}

void InsertDataNode::undo() {
    held_ = parent_.takeChild(index_);
}

} // namespace rq

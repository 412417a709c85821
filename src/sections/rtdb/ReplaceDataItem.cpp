#include "sections/rtdb/RtdbEdits.h"

namespace rq {

ReplaceDataItem::ReplaceDataItem(std::string name, DataNode& node, std::size_t index, DataItem item)
    : EditCommand(std::move(name), kRtdbSectionIndex), node_(node), index_(index),
      other_(std::move(item)) {}

void ReplaceDataItem::redo() {
    DataItem current = node_.item(index_);
    node_.setItem(index_, std::move(other_));
    other_ = std::move(current);
}

void ReplaceDataItem::undo() {
    redo(); // swapping back is the same exchange
}

} // namespace rq

#include "sections/rtdb/RtdbEdits.h"

namespace rq {

AppendDataItems::AppendDataItems(std::string name, DataNode& node, std::vector<DataItem> items)
    : EditCommand(std::move(name), kRtdbSectionIndex), node_(node), start_(node.itemCount()),
      items_(std::move(items)) {}

// The items move between the step and the list: neither undo nor redo copies them.
void AppendDataItems::redo() {
    node_.appendItems(std::move(items_));
    items_.clear();
}

void AppendDataItems::undo() {
    items_ = node_.takeItemsFrom(start_);
}

} // namespace rq

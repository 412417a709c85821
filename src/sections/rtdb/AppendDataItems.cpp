#include "sections/rtdb/RtdbEdits.h"

namespace rq {

AppendDataItems::AppendDataItems(std::string name, DataNode& node, std::vector<DataItem> items)
    : EditCommand(std::move(name), kRtdbSectionIndex), node_(node), start_(node.itemCount()),
      items_(std::move(items)) {}

void AppendDataItems::redo() {
    node_.appendItems(items_);
}

void AppendDataItems::undo() {
    node_.truncateItems(start_);
}

} // namespace rq

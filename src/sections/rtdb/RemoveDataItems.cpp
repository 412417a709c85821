#include "sections/rtdb/RtdbEdits.h"

namespace rq {

RemoveDataItems::RemoveDataItems(std::string name, DataNode& node, std::vector<std::string> names)
    : EditCommand(std::move(name), kRtdbSectionIndex), node_(node), names_(std::move(names)) {}

void RemoveDataItems::redo() {
    removed_ = node_.takeItemsNamed(names_);
}

void RemoveDataItems::undo() {
    node_.restoreItems(removed_);
    removed_.clear();
}

} // namespace rq

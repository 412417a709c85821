#pragma once
// The steps that the real-time database commands push on the project's history.
// Each is fine-grained: it holds the nodes or items it took out and the values it
// overwrote, never a copy of the section. Node pointers stay valid across the
// history: a removed node is kept alive by the step that removed it.

#include "core/EditCommand.h"
#include "core/SectionTable.h"
#include "sections/rtdb/RtdbModel.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace rq {

inline constexpr int kRtdbSectionIndex = sectionIndexOf("rtdb.xml");

// A database or data group put in as the child `index` of `parent` (undo takes it
// out again).
class InsertDataNode : public EditCommand {
public:
    InsertDataNode(std::string name, DataNode& parent, std::size_t index,
                   std::unique_ptr<DataNode> node);
    void redo() override;
    void undo() override;
    DataNode* node() const { return node_; }

private:
    DataNode& parent_;
    std::size_t index_;
    std::unique_ptr<DataNode> held_;
    DataNode* node_;
};

// A database or data group taken out with all it holds.
class RemoveDataNode : public EditCommand {
public:
    RemoveDataNode(std::string name, DataNode& node);
    void redo() override;
    void undo() override;

private:
    DataNode& parent_;
    std::size_t index_;
    DataNode* node_;
    std::unique_ptr<DataNode> held_;
};

// A node's name and, for a database, its sync flag.
class ChangeNodeProperties : public EditCommand {
public:
    ChangeNodeProperties(std::string name, DataNode& node, std::string newName, bool newSync);
    void redo() override;
    void undo() override;

private:
    DataNode& node_;
    std::string oldName_, newName_;
    bool oldSync_, newSync_;
};

// Items appended to a node's list (one item, or a whole batch as one step).
class AppendDataItems : public EditCommand {
public:
    AppendDataItems(std::string name, DataNode& node, std::vector<DataItem> items);
    void redo() override;
    void undo() override;

private:
    DataNode& node_;
    std::size_t start_;
    std::vector<DataItem> items_;
};

// Every item of the given names removed from a node's list.
class RemoveDataItems : public EditCommand {
public:
    RemoveDataItems(std::string name, DataNode& node, std::vector<std::string> names);
    void redo() override;
    void undo() override;

private:
    DataNode& node_;
    std::vector<std::string> names_;
    std::vector<std::pair<std::size_t, DataItem>> removed_;
};

// One item overwritten in place.
class ReplaceDataItem : public EditCommand {
public:
    ReplaceDataItem(std::string name, DataNode& node, std::size_t index, DataItem item);
    void redo() override;
    void undo() override;

private:
    DataNode& node_;
    std::size_t index_;
    DataItem other_; // the value not in the model: the new one before redo, the old after
};

} // namespace rq

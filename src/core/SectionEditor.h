#pragma once
// The shared base of the section editors, without any toolkit.
//
// A section whose content is containers and items is edited the same way
// everywhere: containers are nodes below the section's fixed node of the project
// tree, the items of the selected node are rows of the main list, small modal
// dialogs add and change them. A section editor describes its part as data (its
// nodes, the columns and cells of each node kind, its menus, the keys of its list)
// and runs its commands on a selection; the shell (shell/EditorTreeSection.h) binds
// that to the tree and the list, refreshes them after every change and marks the
// project modified. Every change is pushed as a step on the project's history
// (UndoHistory.h), so that every editor has undo and redo.
//
// The helpers at the end are the flows every editor shares: the dialog that is
// shown again with what was typed while a duplicate test refuses it, the delete
// question, the first selected row.

#include "core/MessageSink.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rq {

// A node below the section's fixed node. `key` is the record the node stands for;
// it stays valid while the record is in the model.
struct EditorNode {
    void* key = nullptr;
    std::string label;
    int image = 0;
    std::vector<EditorNode> children;
};

struct EditorColumn {
    std::string title;
    int width = 100; // pixels; 0 = hidden
};

// What the main list shows for a node: the columns of the node's kind and the
// cells of its records, read by index (no copy of the records is made).
struct EditorList {
    int kind = 0; // the columns are set again when the kind shown changes
    std::vector<EditorColumn> columns;
    std::function<std::size_t()> rows;
    std::function<std::string_view(std::size_t row, int column)> cell;
};

// The commands that the list's keys give for a node: Insert adds, Enter (and a
// double-click) modifies, Delete deletes the selected rows; 0 = none.
struct EditorKeys {
    int add = 0;
    int modify = 0;
    int remove = 0;
};

// What a command acts on: the selected node of the section (null = the section's
// fixed node) and the selected rows of the list, in increasing order.
struct EditorSelection {
    void* node = nullptr;
    std::vector<std::size_t> rows;
};

// What a command did.
struct EditorResult {
    bool changed = false;    // the model changed: refresh, mark modified
    bool structural = false; // nodes were added, removed or renamed: rebuild the nodes
    bool reselect = false;   // select `select` after the rebuild (null = the fixed node)
    void* select = nullptr;

    static EditorResult none() { return {}; }
    static EditorResult rows() { return {true, false, false, nullptr}; }
    static EditorResult nodes(void* select) { return {true, true, true, select}; }
};

class SectionEditor {
public:
    virtual ~SectionEditor() = default;

    // The nodes below the section's fixed node, in model order.
    virtual std::vector<EditorNode> nodes() const = 0;
    // The nodes that belong to the section rather than to a project (fixed groups),
    // without their children: shown from the start and kept when the tree is
    // emptied. nodes() lists them too, first.
    virtual std::vector<EditorNode> fixedNodes() const { return {}; }
    // The context menus (shell/MenuResources.h numbers) of a node in the tree and
    // in the list; 0 = none.
    virtual int treeMenu(const void* node) const = 0;
    virtual int listMenu(const void* node) const = 0;
    // The list of a node (null = the fixed node).
    virtual EditorList list(const void* node) const = 0;
    virtual EditorKeys keys(const void* node) const = 0;
    // Label edits in the tree: whether the node may be renamed, and the rename
    // itself (true keeps the text; the step goes on the history).
    virtual bool canRename(const void* node) const { return false; }
    virtual bool rename(void* node, const std::string& text) { return false; }
    // Whether the editor has this one of the section's commands; the menus show
    // the others disabled.
    virtual bool handles(int command) const { return true; }
    // Runs one of the section's commands on the selection.
    virtual EditorResult run(int command, const EditorSelection& selection) = 0;
};

// The add and modify flow of every editor: shows the dialog (which itself keeps
// showing the first failing check of its fields) and, after OK, asks `refuse`
// whether the result is refused (a duplicate); a refusal shows its message and
// opens the dialog again with what was typed. False on Cancel.
template <class Form, class Show, class Refuse>
bool askUntilAccepted(MessageSink& sink, Form& form, Show show, Refuse refuse) {
    for (;;) {
        if (!show(form))
            return false;
        std::optional<std::string> message = refuse(form);
        if (!message)
            return true;
        sink.showMessage(*message, MessageIcon::Stop);
    }
}

// The first selected row, nothing when no row is selected or it is past `count`.
inline std::optional<std::size_t> firstSelectedRow(const std::vector<std::size_t>& rows,
                                                   std::size_t count) {
    std::optional<std::size_t> first;
    for (std::size_t r : rows)
        if (r < count && (!first || r < *first))
            first = r;
    return first;
}

// The delete question of containers and items (OK/Cancel): true for OK.
inline bool confirmDelete(MessageSink& sink, const std::string& question) {
    return sink.askOkCancel(question);
}

} // namespace rq

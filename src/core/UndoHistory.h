#pragma once
// The edit history of one project: the steps done, the steps undone, and the
// step at which the project was last saved (its clean state).
//
// Opening or creating a project clears the history; saving marks the current step
// clean; undoing or redoing back to the clean step makes the project unmodified
// again. A change made outside the history (the project's own fields) makes the
// saved state unreachable until the next save.

#include "core/EditCommand.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace rq {

class UndoHistory {
public:
    // Makes the change (redo) and keeps it as the latest step; the steps that were
    // undone are dropped.
    EditCommand& push(std::unique_ptr<EditCommand> command);

    bool canUndo() const { return index_ > 0; }
    bool canRedo() const { return index_ < steps_.size(); }
    // "Undo Add Data"; "Undo" when there is nothing to undo.
    std::string undoText() const;
    std::string redoText() const;

    // Reverts the latest step; null when there is none. Returns the step undone.
    EditCommand* undo();
    // Makes the next undone step again; null when there is none.
    EditCommand* redo();

    // Drops every step; the empty history is clean.
    void clear();
    // The current step is the saved state.
    void setClean() { clean_ = static_cast<long>(index_); }
    // A change outside the history: no step is the saved state any more.
    void leaveClean() { clean_ = -1; }
    bool isClean() const { return clean_ == static_cast<long>(index_); }

    std::size_t count() const { return steps_.size(); }

    // Called after every push, undo and redo with the step concerned.
    void setListener(std::function<void(const EditCommand&)> listener) {
        listener_ = std::move(listener);
    }
    std::size_t index() const { return index_; }
    // Changes with every push, undo, redo and clear: what was derived from the
    // model at one revision (a reference index) is stale at another.
    std::uint64_t revision() const { return revision_; }

private:
    std::vector<std::unique_ptr<EditCommand>> steps_;
    std::size_t index_ = 0; // steps_[0, index_) are done
    long clean_ = 0;
    std::uint64_t revision_ = 0;
    std::function<void(const EditCommand&)> listener_;
};

} // namespace rq

#include "core/UndoHistory.h"

namespace rq {

EditCommand& UndoHistory::push(std::unique_ptr<EditCommand> command) {
    command->redo();
    ++revision_;
    if (clean_ > static_cast<long>(index_))
        clean_ = -1; // the saved state was among the dropped steps
    steps_.resize(index_);
    steps_.push_back(std::move(command));
    index_ = steps_.size();
    if (listener_)
        listener_(*steps_.back());
    return *steps_.back();
}

std::string UndoHistory::undoText() const {
    return canUndo() ? "Undo " + steps_[index_ - 1]->name() : std::string("Undo");
}

std::string UndoHistory::redoText() const {
    return canRedo() ? "Redo " + steps_[index_]->name() : std::string("Redo");
}

EditCommand* UndoHistory::undo() {
    if (!canUndo())
        return nullptr;
    EditCommand* c = steps_[--index_].get();
    c->undo();
    ++revision_;
    if (listener_)
        listener_(*c);
    return c;
}

EditCommand* UndoHistory::redo() {
    if (!canRedo())
        return nullptr;
    EditCommand* c = steps_[index_++].get();
    c->redo();
    ++revision_;
    if (listener_)
        listener_(*c);
    return c;
}

void UndoHistory::clear() {
    steps_.clear();
    ++revision_;
    index_ = 0;
    clean_ = 0;
}

} // namespace rq

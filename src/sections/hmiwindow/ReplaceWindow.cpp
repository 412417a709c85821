#include "sections/hmiwindow/HmiWindowEdits.h"

#include <utility>

namespace rq {

ReplaceWindow::ReplaceWindow(std::string name, HmiWindowSection& s, std::size_t index,
                             HmiWindow window, std::optional<NewLayoutFile> file)
    : EditCommand(std::move(name), kHmiWindowSectionIndex), s_(s), index_(index),
      other_(std::move(window)), file_(std::move(file)) {}

void ReplaceWindow::redo() {
    std::swap(s_.windows[index_], other_);
    if (file_)
        file_->restore();
}

void ReplaceWindow::undo() {
    std::swap(s_.windows[index_], other_);
    if (file_)
        file_->remove();
}

} // namespace rq

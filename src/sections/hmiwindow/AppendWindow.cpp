#include "sections/hmiwindow/HmiWindowEdits.h"

namespace rq {

AppendWindow::AppendWindow(std::string name, HmiWindowSection& s, HmiWindow window,
                           std::optional<NewLayoutFile> file)
    : EditCommand(std::move(name), kHmiWindowSectionIndex), s_(s), window_(std::move(window)),
      file_(std::move(file)) {}

void AppendWindow::redo() {
    s_.windows.push_back(window_);
    if (file_)
        file_->restore();
}

void AppendWindow::undo() {
    s_.windows.pop_back();
    if (file_)
        file_->remove();
}

} // namespace rq

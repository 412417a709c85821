#pragma once
// The windows editor with its Qt dialog, as the main window registers it.

#include "sections/hmiwindow/HmiWindowSectionEditor.h"
#include "sections/hmiwindow/ui/HmiWindowDialogs.h"
#include "shell/EditorEnv.h"

#include <memory>

namespace rqshell {

namespace detail {
struct WindowQtDialogs {
    WindowQtDialogHost qtDialogs;
};
} // namespace detail

class HmiWindowQtEditor : private detail::WindowQtDialogs, public rq::HmiWindowSectionEditor {
public:
    explicit HmiWindowQtEditor(const EditorEnv& env);
};

std::unique_ptr<rq::SectionEditor> makeHmiWindowEditor(const EditorEnv& env);

} // namespace rqshell

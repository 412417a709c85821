#pragma once
// The real-time database editor with its Qt dialogs, as the main window registers
// it.

#include "sections/rtdb/RtdbSectionEditor.h"
#include "sections/rtdb/ui/RtdbDialogs.h"
#include "shell/EditorEnv.h"

#include <memory>

namespace rqshell {

namespace detail {
struct RtdbQtDialogs {
    RtdbQtDialogHost qtDialogs;
};
} // namespace detail

class RtdbQtEditor : private detail::RtdbQtDialogs, public rq::RtdbSectionEditor {
public:
    explicit RtdbQtEditor(const EditorEnv& env);
};

std::unique_ptr<rq::SectionEditor> makeRtdbEditor(const EditorEnv& env);

} // namespace rqshell

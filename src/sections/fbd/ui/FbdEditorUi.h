#pragma once
// The function block editor with its Qt dialogs, as the main window registers it.

#include "sections/fbd/FbdSectionEditor.h"
#include "sections/fbd/ui/FbdDialogs.h"
#include "shell/EditorEnv.h"

#include <memory>

namespace rqshell {

namespace detail {
struct FbdQtDialogs {
    FbdQtDialogHost qtDialogs;
};
} // namespace detail

class FbdQtEditor : private detail::FbdQtDialogs, public rq::FbdSectionEditor {
public:
    explicit FbdQtEditor(const EditorEnv& env);
};

std::unique_ptr<rq::SectionEditor> makeFbdEditor(const EditorEnv& env);

} // namespace rqshell

#pragma once
// The parameter editor with its Qt dialog, as the main window registers it.

#include "sections/param/ParamSectionEditor.h"
#include "sections/param/ui/ParamDialogs.h"
#include "shell/EditorEnv.h"

#include <memory>

namespace rqshell {

namespace detail {
struct ParamQtDialogs {
    ParamQtDialogHost qtDialogs;
};
} // namespace detail

class ParamQtEditor : private detail::ParamQtDialogs, public rq::ParamSectionEditor {
public:
    explicit ParamQtEditor(const EditorEnv& env);
};

std::unique_ptr<rq::SectionEditor> makeParamEditor(const EditorEnv& env);

} // namespace rqshell

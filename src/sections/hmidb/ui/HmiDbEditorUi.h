#pragma once
// The HMI database editor with its Qt dialogs, as the main window registers it.

#include "sections/hmidb/HmiDbSectionEditor.h"
#include "sections/hmidb/ui/HmiDbDialogs.h"
#include "shell/EditorEnv.h"

#include <memory>

namespace rqshell {

namespace detail {
struct HmiDbQtDialogs {
    HmiDbQtDialogHost qtDialogs;
};
} // namespace detail

class HmiDbQtEditor : private detail::HmiDbQtDialogs, public rq::HmiDbSectionEditor {
public:
    explicit HmiDbQtEditor(const EditorEnv& env);
};

std::unique_ptr<rq::SectionEditor> makeHmiDbEditor(const EditorEnv& env);

} // namespace rqshell

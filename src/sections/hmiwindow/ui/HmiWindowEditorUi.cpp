#include "sections/hmiwindow/ui/HmiWindowEditorUi.h"

namespace rqshell {

HmiWindowQtEditor::HmiWindowQtEditor(const EditorEnv& env)
    : detail::WindowQtDialogs{WindowQtDialogHost(env.dialogParent, env.sink)},
      rq::HmiWindowSectionEditor(env.project.hmiwindow, qtDialogs, env.sink,
                                 env.project.doc.history(), env.project.model(), env.launcher,
                                 env.programDir) {}

std::unique_ptr<rq::SectionEditor> makeHmiWindowEditor(const EditorEnv& env) {
    return std::make_unique<HmiWindowQtEditor>(env);
}

} // namespace rqshell

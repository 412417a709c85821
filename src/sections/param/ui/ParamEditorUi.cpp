#include "sections/param/ui/ParamEditorUi.h"

#include "sections/rtdb/ui/RtdbBrowseDialog.h"

namespace rqshell {

ParamQtEditor::ParamQtEditor(const EditorEnv& env)
    : detail::ParamQtDialogs{ParamQtDialogHost(env.dialogParent, env.sink, env.project.rtdb,
                                               systemDatabase(env.programDir))},
      rq::ParamSectionEditor(env.project.param, qtDialogs, env.sink, env.project.doc.history()) {}

std::unique_ptr<rq::SectionEditor> makeParamEditor(const EditorEnv& env) {
    return std::make_unique<ParamQtEditor>(env);
}

} // namespace rqshell

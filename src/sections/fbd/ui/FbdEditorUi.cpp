#include "sections/fbd/ui/FbdEditorUi.h"

#include "sections/rtdb/ui/RtdbBrowseDialog.h"

namespace rqshell {

FbdQtEditor::FbdQtEditor(const EditorEnv& env)
    : detail::FbdQtDialogs{FbdQtDialogHost(env.dialogParent, env.sink, env.project.rtdb,
                                           systemDatabase(env.programDir))},
      rq::FbdSectionEditor(env.project.fbd, qtDialogs, env.sink, env.project.doc.history()) {}

std::unique_ptr<rq::SectionEditor> makeFbdEditor(const EditorEnv& env) {
    return std::make_unique<FbdQtEditor>(env);
}

} // namespace rqshell

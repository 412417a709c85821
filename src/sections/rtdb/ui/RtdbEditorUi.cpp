#include "sections/rtdb/ui/RtdbEditorUi.h"

namespace rqshell {

RtdbQtEditor::RtdbQtEditor(const EditorEnv& env)
    : detail::RtdbQtDialogs{RtdbQtDialogHost(env.dialogParent, env.sink)},
      rq::RtdbSectionEditor(env.project.rtdb, qtDialogs, env.sink, env.project.doc.history()) {
    setReferences(&env.project.references);
}

std::unique_ptr<rq::SectionEditor> makeRtdbEditor(const EditorEnv& env) {
    return std::make_unique<RtdbQtEditor>(env);
}

} // namespace rqshell

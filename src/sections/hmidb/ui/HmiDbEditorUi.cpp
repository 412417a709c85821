#include "sections/hmidb/ui/HmiDbEditorUi.h"

#include "sections/rtdb/ui/RtdbBrowseDialog.h"

namespace rqshell {

HmiDbQtEditor::HmiDbQtEditor(const EditorEnv& env)
    : detail::HmiDbQtDialogs{HmiDbQtDialogHost(env.dialogParent, env.sink, env.project.rtdb,
                                               systemDatabase(env.programDir))},
      rq::HmiDbSectionEditor(env.project.hmidb, qtDialogs, env.sink, env.project.doc.history()) {}

std::unique_ptr<rq::SectionEditor> makeHmiDbEditor(const EditorEnv& env) {
    return std::make_unique<HmiDbQtEditor>(env);
}

} // namespace rqshell

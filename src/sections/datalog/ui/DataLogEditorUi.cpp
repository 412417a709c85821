#include "sections/datalog/ui/DataLogEditorUi.h"

#include "sections/rtdb/ui/RtdbBrowseDialog.h"

namespace rqshell {

DataLogQtEditor::DataLogQtEditor(const EditorEnv& env)
    : detail::DataLogQtDialogs{DataLogQtDialogHost(env.dialogParent, env.sink, env.project.rtdb,
                                                   systemDatabase(env.programDir))},
      rq::DataLogSectionEditor(env.project.datalog, qtDialogs, env.sink,
                               env.project.doc.history()) {}

std::unique_ptr<rq::SectionEditor> makeDataLogEditor(const EditorEnv& env) {
    return std::make_unique<DataLogQtEditor>(env);
}

} // namespace rqshell

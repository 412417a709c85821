#include "sections/history/ui/HistoryEditorUi.h"

#include "sections/rtdb/ui/RtdbBrowseDialog.h"

namespace rqshell {

HistoryQtEditor::HistoryQtEditor(const EditorEnv& env)
    : detail::HistoryQtDialogs{HistoryQtDialogHost(env.dialogParent, env.sink, env.project.rtdb,
                                                   systemDatabase(env.programDir))},
      rq::HistorySectionEditor(env.project.history, qtDialogs, env.sink,
                               env.project.doc.history()) {}

std::unique_ptr<rq::SectionEditor> makeHistoryEditor(const EditorEnv& env) {
    return std::make_unique<HistoryQtEditor>(env);
}

} // namespace rqshell

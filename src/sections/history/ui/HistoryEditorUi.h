#pragma once
// The history records editor with its Qt dialogs, as the main window registers it.

#include "sections/history/HistorySectionEditor.h"
#include "sections/history/ui/HistoryDialogs.h"
#include "shell/EditorEnv.h"

#include <memory>

namespace rqshell {

namespace detail {
struct HistoryQtDialogs {
    HistoryQtDialogHost qtDialogs;
};
} // namespace detail

class HistoryQtEditor : private detail::HistoryQtDialogs, public rq::HistorySectionEditor {
public:
    explicit HistoryQtEditor(const EditorEnv& env);
};

std::unique_ptr<rq::SectionEditor> makeHistoryEditor(const EditorEnv& env);

} // namespace rqshell

#pragma once
// The data log editor with its Qt dialogs, as the main window registers it.

#include "sections/datalog/DataLogSectionEditor.h"
#include "sections/datalog/ui/DataLogDialogs.h"
#include "shell/EditorEnv.h"

#include <memory>

namespace rqshell {

namespace detail {
struct DataLogQtDialogs {
    DataLogQtDialogHost qtDialogs;
};
} // namespace detail

class DataLogQtEditor : private detail::DataLogQtDialogs, public rq::DataLogSectionEditor {
public:
    explicit DataLogQtEditor(const EditorEnv& env);
};

std::unique_ptr<rq::SectionEditor> makeDataLogEditor(const EditorEnv& env);

} // namespace rqshell

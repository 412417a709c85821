#pragma once
// "Export…" and "Import…" of the list's context menu in the sections that have a
// table (see exchange/ProjectExchange.h): a file dialog, then for an import the
// merge shown in "Import" before anything changes; applying it is one step of the
// project's history.

#include "core/MessageSink.h"
#include "exchange/TableMerge.h"
#include "project/Project.h"
#include "project/ProjectFlows.h"

#include <QDialog>
#include <string>

class QWidget;

namespace rqshell {

// The table of a section object: "rtdb", "hmidb", ...; empty when it has none.
std::string tableSectionOf(rq::SectionObject object);

// "Import": the counts of a merge and every refused row with its line and reason.
// Apply makes the accepted rows (refused rows are left out); Cancel changes nothing.
class CImportMergeDialog : public QDialog {
public:
    CImportMergeDialog(const rq::TableMerge& merge, const QString& file, QWidget* parent = nullptr);
};

// Asks for a file and writes the section's table to it; failures go to the sink.
void exportSectionTable(QWidget* parent, rq::Project& project, const std::string& section,
                        rq::MessageSink& sink);
// Asks for a file, shows its merge and, after Apply, pushes the merge as one step.
// True when the model changed.
bool importSectionTable(QWidget* parent, rq::Project& project, const std::string& section,
                        rq::MessageSink& sink);

} // namespace rqshell

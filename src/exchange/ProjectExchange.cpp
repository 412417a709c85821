#include "exchange/ProjectExchange.h"

#include "core/FileUtil.h"
#include "core/SectionSave.h"
#include "project/Project.h"
#include "sections/alarm/AlarmCsv.h"
#include "sections/datalog/DataLogCsv.h"
#include "sections/device/DeviceCsv.h"
#include "sections/history/HistoryCsv.h"
#include "sections/hmidb/HmiDbCsv.h"
#include "sections/param/ParamCsv.h"
#include "sections/rtdb/RtdbCsv.h"

#include <future>

namespace rq {

const std::vector<std::string>& tableSectionNames() {
    static const std::vector<std::string> names = {"rtdb",    "hmidb",   "device", "param",
                                                   "datalog", "history", "alarm"};
    return names;
}

int tableSectionIndex(std::string_view name) {
    for (const std::string& n : tableSectionNames())
        if (n == name)
            for (int i = 1; i < kSectionCount; ++i)
                if (std::string_view(kSectionFiles[i]) == n + ".xml")
                    return i;
    return -1;
}

std::unique_ptr<TableExchange> makeSectionTable(Project& project, std::string_view name) {
    if (name == "rtdb")
        return makeRtdbTable(project.rtdb);
    if (name == "hmidb")
        return makeHmiDbTable(project.hmidb);
    if (name == "device")
        return makeDeviceTable(project.device, project.doc.catalogs().io);
    if (name == "param")
        return makeParamTable(project.param);
    if (name == "datalog")
        return makeDataLogTable(project.datalog);
    if (name == "history")
        return makeHistoryTable(project.history);
    if (name == "alarm")
        return makeAlarmTable(project.alarm);
    return nullptr;
}

TableMerge mergeSectionText(Project& project, std::string_view section, std::string_view csvText,
                            bool replace) {
    TableMerge merge;
    std::unique_ptr<TableExchange> table = makeSectionTable(project, section);
    if (!table) {
        merge.error = "no table for section \"" + std::string(section) + "\"";
        return merge;
    }
    return mergeTable(*table, csvText, replace, "Import");
}

ImportResult importSection(Project& project, std::string_view section, std::string_view csvText,
                           const ImportOptions& options) {
    ImportResult result;
    const int index = tableSectionIndex(section);
    const std::string& dir = project.model().projectDirectory;
    const std::string file = index > 0 ? kSectionFiles[index] : "";
    // Only the imported rows may differ: a file that a save would change anyway
    // (written by another program, an older layout) is left to 'resave'. The
    // comparison looks at the section as it is before the import, which the parse
    // and the merge only read, so it runs beside them.
    std::future<bool> fileAsSaved;
    if (index > 0 && !options.dryRun && !project.doc.sectionUnreadable(index))
        fileAsSaved = std::async(std::launch::async, [&project, index, path = joinPath(dir, file)] {
            std::string disk, why;
            return !readWholeFile(path, disk, &why) ||
                   disk == sectionFileBytes(project.doc, index, disk.size());
        });
    result.merge = mergeSectionText(project, section, csvText, options.replace);
    const bool asSaved = fileAsSaved.valid() && fileAsSaved.get();
    if (!result.merge.ok())
        return result;
    if (!result.merge.refused.empty() && !options.skipInvalid) {
        result.error = std::to_string(result.merge.refused.size()) +
                       " row(s) refused; nothing is written (--skip-invalid writes the others)";
        return result;
    }
    if (options.dryRun || !result.merge.changes())
        return result;

    if (project.doc.sectionUnreadable(index)) {
        result.error = file + " could not be read when the project was opened; nothing is written";
        return result;
    }
    if (!asSaved) {
        result.error = file + ": a save would change more than the imported rows; run 'rqpcli "
                              "resave' first; nothing is written";
        return result;
    }
    result.merge.step->redo();
    project.doc.markSectionEdited(index);
    std::string why;
    if (!project.doc.saveSection(index, dir, &why)) {
        result.merge.step->undo();
        result.error = joinPath(dir, file) + ": " + why + "; nothing is written";
        return result;
    }
    result.written = true;
    return result;
}

} // namespace rq

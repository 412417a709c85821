#include "sections/hmiwindow/HmiWindowCommands.h"

#include <algorithm>

namespace rq {

std::vector<std::size_t> selectedWindowRows(const std::vector<std::size_t>& rows,
                                            std::size_t count) {
    std::vector<std::size_t> out;
    for (std::size_t r : rows)
        if (r < count)
            out.push_back(r);
    std::sort(out.begin(), out.end());
    out.erase(std::unique(out.begin(), out.end()), out.end());
    return out;
}

void editWindows(const HmiWindowEditor& ed, const std::vector<std::size_t>& rows) {
    for (std::size_t r : selectedWindowRows(rows, ed.section.windows.size())) {
        const std::string line =
            designerCommandLine(ed.project.projectDirectory, ed.section.windows[r].filename);
        std::string error;
        if (!ed.launcher.launch(ed.programDir, line, &error)) {
            ed.sink.showMessage(error, MessageIcon::Stop);
            return;
        }
    }
}

} // namespace rq

#include "sections/hmiwindow/HmiWindowSection.h"

#include "sections/hmiwindow/WindowFiles.h"

#include <string_view>
#include <unordered_set>

namespace rq {

int HmiWindowSection::findWindow(std::string_view name) const {
    for (std::size_t i = 0; i < windows.size(); ++i)
        if (windows[i].name == name)
            return static_cast<int>(i);
    return -1;
}

std::vector<std::pair<std::string, std::size_t>> HmiWindowSection::counts() const {
    return {{"windows", windows.size()}};
}

void HmiWindowSection::check(CheckContext& ctx) const {
    std::unordered_set<std::string_view> names;
    names.reserve(windows.size());
    for (const auto& w : windows) {
        const std::string where = "hmiwindow.xml: window \"" + w.name + "\" ";
        ctx.rawValue(where + "name", w.name);
        ctx.rawValue(where + "caption", w.caption);
        ctx.rawValue(where + "filename", w.filename);
        ctx.rawValue(where + "enable", w.enable);
        // The editor refuses both; a file edited by hand may still hold them.
        if (!names.insert(w.name).second)
            ctx.finding("hmiwindow.xml: duplicate window \"" + w.name + "\"");
        if (isReservedWindowFileName(w.filename))
            ctx.finding(where + "filename \"" + w.filename + "\" is reserved for a section file");
    }
}

} // namespace rq

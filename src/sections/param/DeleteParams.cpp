#include "core/SectionEditor.h"
#include "sections/param/ParamCommands.h"
#include "sections/param/ParamEdits.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace rq {

bool deleteParams(const ParamEditor& ed, const std::vector<std::size_t>& rows) {
    const auto& items = ed.section.items;
    std::vector<std::size_t> selected;
    for (std::size_t r : rows)
        if (r < items.size())
            selected.push_back(r);
    std::sort(selected.begin(), selected.end());
    selected.erase(std::unique(selected.begin(), selected.end()), selected.end());
    if (selected.empty())
        return false;
    if (!confirmDelete(ed.sink, paramtext::kDeleteData))
        return false;
    // Each selected row stands for its pair: a pair selected n times takes its
    // first n records.
    auto pairKey = [](const ParamItem& item) {
        std::string key = item.dbname;
        key += '\0'; // in neither name
        key += item.dataname;
        return key;
    };
    std::unordered_map<std::string, std::size_t> wanted;
    for (std::size_t r : selected)
        ++wanted[pairKey(items[r])];
    std::vector<std::size_t> remove;
    remove.reserve(selected.size());
    for (std::size_t i = 0; i < items.size() && remove.size() < selected.size(); ++i) {
        auto it = wanted.find(pairKey(items[i]));
        if (it != wanted.end() && it->second > 0) {
            --it->second;
            remove.push_back(i);
        }
    }
    ed.history.push(
        std::make_unique<RemoveParams>("Delete Parameter", ed.section, std::move(remove)));
    return true;
}

} // namespace rq

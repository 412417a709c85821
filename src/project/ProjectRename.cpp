#include "project/ProjectRename.h"

#include "core/DataTypes.h"
#include "core/FileUtil.h"
#include "core/SectionSave.h"
#include "project/ProjectRefs.h"
#include "sections/rtdb/RtdbForms.h"

#include <array>
#include <future>
#include <set>
#include <vector>

namespace rq {

namespace {

// The node that holds the item named `name` (data or alias) in `node` or below.
DataNode* holderOf(DataNode& node, std::string_view name, std::size_t& index) {
    int at = node.isDatabase() || node.isGroup() ? node.findItem(name) : -1;
    if (at >= 0) {
        index = static_cast<std::size_t>(at);
        return &node;
    }
    for (std::size_t i = 0; i < node.childCount(); ++i)
        if (DataNode* found = holderOf(node.child(i), name, index))
            return found;
    return nullptr;
}

// Renames the targets of the aliases standing for data `from` in `node` and below.
void renameAliasTargets(DataNode& node, const std::string& from, const std::string& to) {
    for (std::size_t i = 0; i < node.itemCount(); ++i) {
        const DataItem& item = node.item(i);
        if (item.isAlias() && item.target == from) {
            DataItem changed = item;
            changed.target = to;
            node.setItem(i, std::move(changed));
        }
    }
    for (std::size_t i = 0; i < node.childCount(); ++i)
        renameAliasTargets(node.child(i), from, to);
}

DataForm formOf(const DataItem& item, const std::string& name) {
    DataForm form;
    form.name = name;
    if (item.isAlias()) {
        form.alias = true;
        form.aliasText = item.target;
        return form;
    }
    form.typeIndex = DataTypeTable::indexOfKeyword(item.type);
    form.length = std::atoi(item.length.c_str());
    form.init = item.init;
    form.description = item.description;
    return form;
}

} // namespace

std::optional<std::string> renameRealtimeData(Project& project, const std::string& db,
                                              const std::string& data, const std::string& newName) {
    const std::string item = db + "." + data;
    DataNode* database = project.rtdb.findDatabase(db);
    std::size_t index = 0;
    DataNode* holder = database ? holderOf(*database, data, index) : nullptr;
    if (!holder)
        return "the project has no real-time data \"" + item + "\"";
    // A rename changes the name only: a stored initial value that its type would
    // refuse when typed (an older file's) does not stand in the way.
    DataForm form = formOf(holder->item(index), newName);
    form.init.clear();
    if (auto message = validateDataForm(form))
        return *message;
    if (database->nameInUse(newName))
        return std::string(rtdbtext::kDataExists);
    if (!project.doc.unreadableFiles().empty())
        return project.doc.unreadableFiles().front() +
               " (the references in it cannot be renamed; nothing is changed)";
    if (!project.doc.droppedRecords().empty()) {
        const DroppedRecord& d = project.doc.droppedRecords().front();
        return d.file + ": " + d.element + ": " + d.reason +
               " (a save would drop it; run 'rqpcli resave' first; nothing is changed)";
    }

    // Only the renamed names may differ: a file that a save would change anyway
    // (written by another program, older layout) is left to 'resave'. rtdb.xml,
    // which always changes, is compared while the uses are looked up, the other
    // files side by side after.
    const std::string& dir = project.model().projectDirectory;
    std::array<std::size_t, kSectionCount> sizes{}; // of the files on disk
    auto asSaved = [&](int i) {
        std::string disk, error;
        const bool same = readWholeFile(joinPath(dir, kSectionFiles[i]), disk, &error) &&
                          disk == sectionFileBytes(project.doc, i, disk.size());
        sizes[i] = disk.size();
        return same;
    };
    std::future<bool> rtdbAsSaved = std::async(std::launch::async, asSaved, 1);
    const RefIndex refs(refSectionsOf(project), db, data);
    std::set<int> others;
    for (const RefUse* use : refs.usesOf(db, data))
        for (int i = 2; i < kSectionCount; ++i)
            if (std::string_view(kSectionFiles[i]) == use->file)
                others.insert(i);
    const std::vector<int> checked(others.begin(), others.end());
    const std::vector<bool> othersAsSaved =
        sideBySide(checked.size(), [&](std::size_t k) { return asSaved(checked[k]); });
    std::vector<int> changed = {1};
    std::vector<bool> same = {rtdbAsSaved.get()};
    changed.insert(changed.end(), checked.begin(), checked.end());
    same.insert(same.end(), othersAsSaved.begin(), othersAsSaved.end());
    for (std::size_t k = 0; k < changed.size(); ++k)
        if (!same[k])
            return std::string(kSectionFiles[changed[k]]) +
                   ": a save would change more than the renamed names; run 'rqpcli resave' "
                   "first; nothing is changed";

    DataItem renamed = holder->item(index);
    const bool isData = !renamed.isAlias();
    renamed.name = newName;
    holder->setItem(index, std::move(renamed));
    if (isData)
        renameAliasTargets(*database, data, newName);
    renameUses(refs, db, data, newName);
    for (int i : changed)
        project.doc.markSectionEdited(i);

    // The new name holds nothing that keeps a file from reading back, so only a
    // write can fail here; the message then names the files written all the same.
    std::vector<std::string> errors(changed.size());
    const std::vector<bool> saved = sideBySide(changed.size(), [&](std::size_t k) {
        const std::size_t size = sizes[changed[k]];
        return writeSectionFile(changed[k], dir,
                                sectionFileBytes(project.doc, changed[k], size + size / 8),
                                &errors[k]);
    });
    project.model().currentSection = changed.back();
    std::string failures, written;
    for (std::size_t k = 0; k < changed.size(); ++k) {
        if (saved[k])
            written += std::string(" ") + kSectionFiles[changed[k]];
        else
            failures += (failures.empty() ? "" : "; ") + joinPath(dir, kSectionFiles[changed[k]]) +
                        ": " + errors[k];
    }
    if (!failures.empty())
        return failures + (written.empty() ? std::string("; nothing is changed")
                                           : "; already written with the new name:" + written);
    project.model().modified = false;
    return std::nullopt;
}

} // namespace rq

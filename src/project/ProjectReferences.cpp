#include "project/ProjectReferences.h"

#include "project/Project.h"
#include "project/ProjectRefs.h"
#include "refs/RenameReferences.h"

namespace rq {

namespace {

DataUse dataUse(const RefUse& u) {
    auto [db, data] = RefIndex::itemOf(u);
    std::string item(db);
    item += '.';
    item += data;
    return {std::move(item), u.line()};
}

} // namespace

std::uint64_t ProjectReferences::revision() const {
    return project_.doc.history().revision();
}

const RefIndex& ProjectReferences::index() {
    if (builtAt_ != revision()) {
        index_.build(refSectionsOf(project_));
        builtAt_ = revision();
    }
    return index_;
}

std::vector<DataUse> ProjectReferences::usesOf(std::string_view db, std::string_view data) {
    std::vector<DataUse> out;
    for (const RefUse* u : index().usesOf(db, data))
        out.push_back(dataUse(*u));
    return out;
}

std::vector<DataUse> ProjectReferences::usesOfDatabase(std::string_view db) {
    std::vector<DataUse> out;
    for (const RefUse& u : index().uses())
        if (RefIndex::itemOf(u).first == db)
            out.push_back(dataUse(u));
    return out;
}

std::unique_ptr<EditCommand> ProjectReferences::renameData(const std::string& db,
                                                           const std::string& data,
                                                           const std::string& newName) {
    return RenameReferences::item("Rename References", refSectionsOf(project_), index(), db, data,
                                  newName);
}

std::unique_ptr<EditCommand> ProjectReferences::renameDatabase(const std::string& db,
                                                               const std::string& newDb) {
    return RenameReferences::database("Rename References", refSectionsOf(project_), index(), db,
                                      newDb);
}

} // namespace rq

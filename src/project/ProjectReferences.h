#pragma once
// The reference index of an open project, kept for the editors: built when first
// asked for and built again when the project changed since (any step done, undone
// or redone, an open, a new project: every change of the history's revision), so
// that no pointer into the sections outlives the records it points at. Building
// it takes about 10 ms for 100,000 items.
//
// It answers the real-time database editor's questions about uses of its data
// (RtdbReferences) and gives the uses of one item to the workspace's reference
// list.

#include "refs/RefIndex.h"
#include "sections/rtdb/RtdbReferences.h"

#include <cstdint>
#include <optional>

namespace rq {

class Project;

class ProjectReferences : public RtdbReferences {
public:
    explicit ProjectReferences(Project& project) : project_(project) {}
    ProjectReferences(const ProjectReferences&) = delete;
    ProjectReferences& operator=(const ProjectReferences&) = delete;

    // The index of the project as it is now. Valid until the next change.
    const RefIndex& index();
    // The revision the index stands for (UndoHistory::revision()).
    std::uint64_t revision() const;
    // A change made outside the history: the next look-up builds the index anew.
    void invalidate() { builtAt_.reset(); }

    std::vector<DataUse> usesOf(std::string_view db, std::string_view data) override;
    std::vector<DataUse> usesOfDatabase(std::string_view db) override;
    std::unique_ptr<EditCommand> renameData(const std::string& db, const std::string& data,
                                            const std::string& newName) override;
    std::unique_ptr<EditCommand> renameDatabase(const std::string& db,
                                                const std::string& newDb) override;

private:
    Project& project_;
    RefIndex index_;
    std::optional<std::uint64_t> builtAt_;
};

} // namespace rq

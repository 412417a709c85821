#include "refs/RenameReferences.h"

#include "core/SectionTable.h"

#include <algorithm>
#include <string_view>

namespace rq {

namespace {

int sectionOfFile(std::string_view file) {
    for (int i = 1; i < kSectionCount; ++i)
        if (file == kSectionFiles[i])
            return i;
    return 0;
}

} // namespace

RenameReferences::RenameReferences(std::string name, const RefSections& sections, bool database,
                                   std::string db, std::string from, std::string to)
    : EditCommand(std::move(name), 0), sections_(sections), database_(database), db_(std::move(db)),
      from_(std::move(from)), to_(std::move(to)) {}

std::unique_ptr<RenameReferences>
RenameReferences::item(std::string name, const RefSections& sections, const RefIndex& index,
                       const std::string& db, const std::string& data, const std::string& newName) {
    std::unique_ptr<RenameReferences> step(
        new RenameReferences(std::move(name), sections, false, db, data, newName));
    step->collect(index, index.usesOf(db, data));
    return step->positions_.empty() ? nullptr : std::move(step);
}

std::unique_ptr<RenameReferences>
RenameReferences::database(std::string name, const RefSections& sections, const RefIndex& index,
                           const std::string& db, const std::string& newDb) {
    std::unique_ptr<RenameReferences> step(
        new RenameReferences(std::move(name), sections, true, {}, db, newDb));
    std::vector<const RefUse*> uses;
    for (const RefUse& u : index.uses())
        if (RefIndex::itemOf(u).first == db)
            uses.push_back(&u);
    step->collect(index, uses);
    return step->positions_.empty() ? nullptr : std::move(step);
}

std::string RenameReferences::renamed(std::string_view text, const std::string& to) const {
    const std::size_t dot = text.find('.');
    if (database_)
        return dot == std::string_view::npos ? to : to + std::string(text.substr(dot));
    return std::string(text.substr(0, dot + 1)) + to;
}

void RenameReferences::collect(const RefIndex& index, const std::vector<const RefUse*>& uses) {
    const RefUse* first = index.uses().data();
    for (const RefUse* u : uses) {
        // A limit or period text is a use only while it does not read as a number:
        // one that would (database "1", data "5") is left as it is.
        const std::string_view attribute = u->attribute;
        if (u->joined && (attribute == "period_var" || attribute == "value_var") &&
            !RefIndex::isJoinedReference(renamed(*u->joined, to_)))
            continue;
        positions_.push_back(static_cast<std::uint32_t>(u - first));
        const int file = sectionOfFile(u->file);
        if (std::find(files_.begin(), files_.end(), file) == files_.end())
            files_.push_back(file);
    }
    std::sort(files_.begin(), files_.end());
}

void RenameReferences::apply(const std::string& from, const std::string& to) {
    const RefIndex index(sections_);
    const std::vector<RefUse>& uses = index.uses();
    for (std::uint32_t at : positions_) {
        if (at >= uses.size())
            continue;
        const RefUse& u = uses[at];
        auto [db, data] = RefIndex::itemOf(u);
        // A position that no longer names the renamed item is left alone.
        if (database_ ? db != from : (db != db_ || data != from))
            continue;
        if (u.joined)
            *u.joined = renamed(*u.joined, to);
        else
            *(database_ ? u.db : u.data) = to;
    }
}

} // namespace rq

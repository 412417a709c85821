#include "project/ProjectCheck.h"

#include "core/FileUtil.h"
#include "core/Xml.h"
#include "project/Project.h"
#include "project/ProjectRefs.h"

namespace rq {

namespace {

class ProjectCheckContext : public CheckContext {
public:
    ProjectCheckContext(const RtdbSection& rtdb, const RtdbSection* system)
        : rtdb_(rtdb), system_(system) {}
    bool hasRealtimeData(std::string_view db, std::string_view data) const override {
        return rtdb_.hasData(db, data) || (system_ && system_->hasData(db, data));
    }

private:
    const RtdbSection& rtdb_;
    const RtdbSection* system_;
};

// The HMI type as the project file names it: the model keeps only a catalog entry,
// so a name the catalog lacks is read from the file itself.
void checkHmiType(const Project& project, CheckContext& ctx) {
    const ProjectModel& m = project.model();
    if (m.hmiType)
        return;
    std::string named;
    XmlDocument doc;
    if (doc.load(joinPath(m.projectDirectory, "rqrun.xml"), "rqrun", nullptr))
        named = ReadAttrText(doc.root(), "devicename");
    if (named.empty())
        ctx.finding("rqrun.xml: no HMI type is set; the project cannot be downloaded");
    else
        ctx.finding("rqrun.xml: the HMI type \"" + named +
                    "\" is not in the HMI device catalog (hmidevice.xml)");
}

} // namespace

std::vector<std::string> checkProject(const Project& project, const RtdbSection* systemDatabase) {
    ProjectCheckContext ctx(project.rtdb, systemDatabase);
    for (const std::string& line : project.doc.unreadableFiles())
        ctx.finding(line + " (the file cannot be read; Save leaves it as it is)");
    for (const DroppedRecord& d : project.doc.droppedRecords())
        ctx.finding(d.file + ": " + d.element + ": " + d.reason +
                    " (left out on reading; a save drops it from the file)");
    const ProjectModel& m = project.model();
    ctx.rawValue("rqrun.xml: project name", m.name);
    ctx.rawValue("rqrun.xml: project description", m.description);
    ctx.rawValue("rqrun.xml: slave IP address", m.slaveIp);
    checkHmiType(project, ctx);
    for (int i = 1; i < kSectionCount; ++i)
        project.doc.section(i).check(ctx);
    // The references that the sections' own checks do not look up.
    const RefIndex refs(refSectionsOf(project));
    for (const RefUse& use : refs.uses()) {
        if (use.checkedBySection)
            continue;
        auto [db, data] = RefIndex::itemOf(use);
        if (!ctx.hasRealtimeData(db, data))
            ctx.finding(std::string(use.file) + ": " + use.where + " " + use.attribute +
                        ": no database holds the real-time data \"" + std::string(db) + "." +
                        std::string(data) + "\"");
    }
    return ctx.findings();
}

} // namespace rq

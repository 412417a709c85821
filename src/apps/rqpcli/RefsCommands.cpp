// Reference commands: refs (every use of one real-time data item) and rename (the
// item with every use).

#include "CliSupport.h"
#include "Command.h"
#include "core/DataTypes.h"
#include "project/ProjectRefs.h"
#include "project/ProjectRename.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <utility>

using namespace rqcli;

namespace {

// The item argument "DB.DATA"; false after printing the usage error.
bool itemArgument(const Command& command, const std::string& item, rq::DataRef& ref) {
    ref = rq::DataRef::split(item);
    if (item.find('.') != std::string::npos && !ref.dbname.empty() && !ref.dataname.empty())
        return true;
    std::cerr << "rqpcli " << command.name << ": give the item as DB.DATA, not '" << item << "'\n"
              << "usage: rqpcli " << command.usage << "\n";
    return false;
}

int runRefs(const std::vector<std::string>& args) {
    Options opt({}, {"json"});
    int status;
    const Command& command = commandNamed("refs");
    if (!parseOrExit(command, opt, args, 2, 2, &status))
        return status;
    const std::string& item = opt.positional()[1];
    rq::DataRef ref;
    if (!itemArgument(command, item, ref))
        return kExitUsage;
    auto project = openProject(opt.positional()[0], rq::OpenPurpose::Inspect);
    if (!project)
        return kExitFailure;
    const rq::RefIndex index(rq::refSectionsOf(std::as_const(*project)));
    const std::vector<const rq::RefUse*> uses = index.usesOf(ref.dbname, ref.dataname);
    if (opt.flag("json")) {
        nlohmann::ordered_json out;
        out["item"] = item;
        nlohmann::ordered_json& list = out["uses"];
        list = nlohmann::ordered_json::array();
        for (const rq::RefUse* u : uses)
            list.push_back({{"file", u->file}, {"where", u->where}, {"attribute", u->attribute}});
        std::cout << out.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace)
                  << "\n";
    } else {
        for (const rq::RefUse* u : uses)
            std::cout << u->line() << "\n";
    }
    if (uses.empty()) {
        fail(item + " is not used");
        return kExitFailure;
    }
    return kExitOk;
}

int runRename(const std::vector<std::string>& args) {
    Options opt({}, {});
    int status;
    const Command& command = commandNamed("rename");
    if (!parseOrExit(command, opt, args, 3, 3, &status))
        return status;
    rq::DataRef ref;
    if (!itemArgument(command, opt.positional()[1], ref))
        return kExitUsage;
    auto project = openProject(opt.positional()[0]);
    if (!project)
        return kExitFailure;
    if (auto message =
            rq::renameRealtimeData(*project, ref.dbname, ref.dataname, opt.positional()[2]))
        return fail(*message);
    return kExitOk;
}

CommandRegistration regRefs({"refs", "refs DIR DB.DATA [--json]",
                             "lists every use of one real-time data item, one line "
                             "'FILE: where: attribute' each; exit 1 when it is not used",
                             runRefs});
CommandRegistration regRename({"rename", "rename DIR DB.DATA NEWNAME",
                               "renames a real-time data item of the project and every use of "
                               "it; writes only the files that change",
                               runRename});

} // namespace

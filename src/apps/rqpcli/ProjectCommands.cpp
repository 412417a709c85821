// Project commands: new, info, resave, check, password.

#include "CliSupport.h"
#include "Command.h"
#include "core/FileUtil.h"
#include "core/HmiDeviceCatalog.h"
#include "project/ProjectCheck.h"
#include "project/ProjectFlows.h"
#include "sections/rtdb/RtdbSection.h"

#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>

using namespace rqcli;

namespace {

// New then Save, with the project dialog's checks and messages.
int runNew(const std::vector<std::string>& args) {
    Options opt({"hmi-type", "description", "ip"}, {});
    int status;
    if (!parseOrExit(commandNamed("new"), opt, args, 2, 2, &status))
        return status;
    const std::string& parent = opt.positional()[0];
    const std::string& name = opt.positional()[1];
    if (name.empty())
        return fail("Please input project name!");
    if (parent.empty())
        return fail("Please choose project path!");
    const rq::HmiDeviceType* type = catalogs().hmi.FindByName(opt.value("hmi-type").value_or(""));
    if (!type || opt.value("hmi-type").value_or("").empty())
        return fail("Please HMI type!");
    if (auto message = rq::checkProjectFields(name, opt.value("description").value_or(""),
                                              opt.value("ip").value_or("")))
        return fail(*message);
    rq::Project project(catalogs(), consoleSink());
    project.doc.clear();
    if (!project.doc.createDirectories(parent, name))
        return kExitFailure; // the sink printed "Create directory failed!"
    rq::ProjectModel& m = project.model();
    m.name = name;
    m.description = opt.value("description").value_or("");
    m.slaveIp = opt.value("ip").value_or("");
    m.hmiType = type;
    m.projectDirectory = rq::joinPath(std::filesystem::absolute(parent).string(), name);
    m.modified = true;
    if (!saveProject(project))
        return kExitFailure;
    std::cout << m.projectDirectory << "\n";
    return kExitOk;
}

int runInfo(const std::vector<std::string>& args) {
    Options opt({}, {"json"});
    int status;
    if (!parseOrExit(commandNamed("info"), opt, args, 1, 1, &status))
        return status;
    auto project = openProject(opt.positional()[0], rq::OpenPurpose::Inspect);
    if (!project)
        return kExitFailure;
    const rq::ProjectModel& m = project->model();
    std::vector<std::pair<std::string, std::string>> fields = {
        {"name", m.name},
        {"description", m.description},
        {"directory", m.projectDirectory},
        {"hmi_type", m.hmiType ? m.hmiType->name : ""},
        {"hmi_display", m.hmiType ? m.hmiType->display : ""},
        {"slave_ip", m.slaveIp},
        {"download_password", m.downloadPassword.empty() ? "no" : "yes"},
        {"defines", m.defines},
        {"libs", m.libs},
        {"libs_linux", m.libs_linux},
        {"include", m.include},
    };
    if (opt.flag("json")) {
        nlohmann::ordered_json out;
        for (const auto& [k, v] : fields)
            out[k] = v;
        nlohmann::ordered_json& sections = out["sections"];
        sections = nlohmann::ordered_json::object();
        for (int i = 1; i < rq::kSectionCount; ++i) {
            const rq::ConfigSection& s = project->doc.section(i);
            nlohmann::ordered_json counts = nlohmann::ordered_json::object();
            for (const auto& [k, n] : s.counts())
                counts[k] = n;
            sections[s.fileName()] = std::move(counts);
        }
        std::cout << out.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace)
                  << "\n";
        return kExitOk;
    }
    for (const auto& [k, v] : fields)
        std::cout << k << ": " << v << "\n";
    for (int i = 1; i < rq::kSectionCount; ++i) {
        const rq::ConfigSection& s = project->doc.section(i);
        std::cout << s.fileName() << ":";
        for (const auto& [k, n] : s.counts())
            std::cout << " " << k << "=" << n;
        std::cout << "\n";
    }
    return kExitOk;
}

int runResave(const std::vector<std::string>& args) {
    Options opt({}, {});
    int status;
    if (!parseOrExit(commandNamed("resave"), opt, args, 1, 1, &status))
        return status;
    auto project = openProject(opt.positional()[0]);
    if (!project)
        return kExitFailure;
    // What the readers left out is gone from the files after the save: say so.
    for (const rq::DroppedRecord& d : project->doc.droppedRecords())
        fail("warning: " + d.file + ": " + d.element + ": " + d.reason +
             "; left out of the saved file");
    bool saved = saveProject(*project);
    return saved && project->doc.droppedRecords().empty() ? kExitOk : kExitFailure;
}

int runCheck(const std::vector<std::string>& args) {
    Options opt({}, {});
    int status;
    if (!parseOrExit(commandNamed("check"), opt, args, 1, 1, &status))
        return status;
    auto project = openProject(opt.positional()[0], rq::OpenPurpose::Inspect, true);
    if (!project)
        return kExitFailure;
    rq::ReadContext ctx{consoleSink(), &catalogs().hmi, &catalogs().io, {}};
    auto system = rq::loadSystemDatabase(catalogs().programDir, ctx);
    std::vector<std::string> findings = rq::checkProject(*project, system.get());
    for (const auto& f : findings)
        std::cout << f << "\n";
    return findings.empty() ? kExitOk : kExitFailure;
}

int runPassword(const std::vector<std::string>& args) {
    Options opt({"password"}, {"stdin"});
    int status;
    if (!parseOrExit(commandNamed("password"), opt, args, 1, 1, &status))
        return status;
    bool fromStdin = opt.flag("stdin");
    if (fromStdin == opt.value("password").has_value()) {
        std::cerr << "rqpcli password: give either --password TEXT or --stdin\n"
                  << "usage: rqpcli " << commandNamed("password").usage << "\n";
        return kExitUsage;
    }
    std::string password;
    if (fromStdin) {
        std::getline(std::cin, password);
        if (!password.empty() && password.back() == '\r')
            password.pop_back();
        // An empty line or no input at all is most likely a mistake in a script;
        // removing the password takes an explicit --password "".
        if (password.empty())
            return fail("no password on standard input; the password is left as it is "
                        "(--password \"\" removes it)");
    } else {
        password = *opt.value("password");
    }
    auto project = openProject(opt.positional()[0]);
    if (!project)
        return kExitFailure;
    project->model().downloadPassword = password;
    project->model().modified = true;
    return saveProject(*project) ? kExitOk : kExitFailure;
}

CommandRegistration
    regNew({"new", "new PARENT NAME --hmi-type TYPE [--description TEXT] [--ip ADDR]",
            "creates PARENT/NAME with data/, hisdata/ and the thirteen project files", runNew});
CommandRegistration regInfo({"info", "info DIR [--json]",
                             "prints the project's fields and the record counts of each section",
                             runInfo});
CommandRegistration regResave({"resave", "resave DIR",
                               "opens the project and saves all thirteen files again", runResave});
CommandRegistration regCheck({"check", "check DIR",
                              "lists what would keep the project from reopening or from working "
                              "on the device; exit 1 when anything is found",
                              runCheck});
CommandRegistration regPassword({"password", "password DIR (--password TEXT | --stdin)",
                                 "sets the project's download password and saves", runPassword});

} // namespace

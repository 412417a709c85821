// Build and deployment commands: compile, compile-module, build-package, download,
// upgrade, upload, logo. Transfers draw their progress on a terminal (not with
// --quiet). Each prints the text its dialog would show (standard
// output on success, standard error otherwise). Device operations exit with their
// transfer result (0 to 4), a check that fails before any transfer with 10; an
// upload whose package does not unwrap exits with 3.

#include "CliSupport.h"
#include "Command.h"
#include "core/FileUtil.h"
#include "core/HmiDeviceCatalog.h"
#include "deploy/compile/CompileSession.h"
#include "deploy/logo/LogoDownloadJob.h"
#include "deploy/transfer/DeployJobs.h"

#include <filesystem>
#include <iostream>

using namespace rqcli;
namespace fs = std::filesystem;

namespace {

// The toolchain runs in the program directory, so every path handed to it is
// absolute.
std::string absolutePath(const std::string& path) {
    std::error_code ec;
    fs::path p = fs::absolute(path, ec);
    std::string s = (ec ? fs::path(path) : p.lexically_normal()).string();
    while (s.size() > 1 && s.back() == '/')
        s.pop_back();
    return s;
}

void printMessage(const rq::TransferOutcome& o) {
    if (o.message.empty())
        return;
    (o.succeeded ? std::cout : std::cerr) << o.message << "\n";
}

// Exit status of a device operation.
int deviceExit(const rq::TransferOutcome& o, const rq::TransferJob* job = nullptr) {
    printMessage(o);
    if (!o.succeeded && !o.detail.empty())
        std::cerr << "rqpcli: " << o.detail << "\n";
    if (o.checkFailed)
        return kExitCheckFailed;
    if (!o.succeeded && job && !job->scriptErrors().empty())
        std::cerr << job->scriptErrors();
    if (o.result < 0)
        return o.succeeded ? kExitOk : kExitFailure;
    if (o.result == rq::kTransferOk && !o.succeeded)
        return rq::kLocalFileError;
    return o.result;
}

std::unique_ptr<rq::Project> open(const std::string& dir) {
    return openProject(absolutePath(dir));
}

int finishCompile(rq::CompileSession& session, const std::optional<std::string>& problem) {
    if (problem) {
        std::cerr << *problem << "\n";
        return kExitCheckFailed;
    }
    if (!session.started())
        return fail("Unable to start " + session.lastCommandLine());
    session.waitFinished(std::chrono::hours(24 * 365));
    session.stop();
    const int code = session.exitCode();
    std::cout << session.status() << "\n" << session.output() << "\n";
    return code == 0 ? kExitOk : kExitFailure;
}

int runCompile(const std::vector<std::string>& args) {
    Options opt({}, {"show-command"});
    int status;
    if (!parseOrExit(commandNamed("compile"), opt, args, 1, 1, &status))
        return status;
    auto project = open(opt.positional()[0]);
    if (!project)
        return kExitFailure;
    const rq::ProjectModel& m = project->model();
    rq::CompileSession session;
    auto problem =
        session.compileProject(project->doc, {m.defines, m.libs, m.include, m.libs_linux});
    // The toolchain line, for running it by hand (it runs in the program directory).
    if (opt.flag("show-command") && !problem)
        std::cerr << session.lastCommandLine() << "\n";
    return finishCompile(session, problem);
}

int runCompileModule(const std::vector<std::string>& args) {
    Options opt({}, {});
    int status;
    if (!parseOrExit(commandNamed("compile-module"), opt, args, 2, 2, &status))
        return status;
    auto project = open(opt.positional()[0]);
    if (!project)
        return kExitFailure;
    const std::string& name = opt.positional()[1];
    for (const auto& module : project->modules.modules()) {
        if (module.name != name)
            continue;
        rq::CompileSession session;
        auto problem = session.compileModule(project->model().projectDirectory,
                                             {module.name, module.defines, module.srcfiles});
        return finishCompile(session, problem);
    }
    return fail("no module named \"" + name + "\" in modules.xml", kExitCheckFailed);
}

int runBuildPackage(const std::vector<std::string>& args) {
    Options opt({}, {});
    int status;
    if (!parseOrExit(commandNamed("build-package"), opt, args, 1, 1, &status))
        return status;
    auto project = open(opt.positional()[0]);
    if (!project)
        return kExitFailure;
    rq::BuildPackageJob job(rq::DeployProject::from(project->model()), rq::programDirectory(),
                            nullptr);
    return deviceExit(job.run(), &job);
}

int runDownload(const std::vector<std::string>& args) {
    Options opt({"ip"}, {"quiet"});
    int status;
    if (!parseOrExit(commandNamed("download"), opt, args, 1, 1, &status))
        return status;
    auto project = open(opt.positional()[0]);
    if (!project)
        return kExitFailure;
    const std::string ip = opt.value("ip").value_or(project->model().slaveIp);
    TerminalProgress progress(opt.flag("quiet"));
    rq::ProjectDownloadJob job(rq::DeployProject::from(project->model()), ip,
                               rq::programDirectory(), &progress);
    const rq::TransferOutcome o = job.run();
    progress.finish();
    return deviceExit(o, &job);
}

int runUpgrade(const std::vector<std::string>& args) {
    Options opt({}, {"quiet"});
    int status;
    if (!parseOrExit(commandNamed("upgrade"), opt, args, 2, 2, &status))
        return status;
    TerminalProgress progress(opt.flag("quiet"));
    rq::UpgradeDownloadJob job(opt.positional()[0], opt.positional()[1], &progress);
    const rq::TransferOutcome o = job.run();
    progress.finish();
    return deviceExit(o, &job);
}

int runUpload(const std::vector<std::string>& args) {
    Options opt({"password"}, {"quiet"});
    int status;
    if (!parseOrExit(commandNamed("upload"), opt, args, 2, 2, &status))
        return status;
    const std::string target = absolutePath(opt.positional()[1]);
    // The dialog picks an existing folder; here a new one is made for the user.
    std::error_code ec;
    fs::create_directories(target, ec);
    TerminalProgress progress(opt.flag("quiet"));
    rq::UploadJob job(target, opt.positional()[0], opt.value("password").value_or(""), {}, nullptr,
                      rq::programDirectory(), &progress);
    const rq::TransferOutcome o = job.run();
    progress.finish();
    const int exit = deviceExit(o, &job);
    // The dialog then opens the uploaded project; here that shows it is whole.
    if (o.succeeded && !open(target))
        std::cerr << job.scriptErrors();
    return exit;
}

int runLogo(const std::vector<std::string>& args) {
    Options opt({"ip"}, {"quiet"});
    int status;
    if (!parseOrExit(commandNamed("logo"), opt, args, 2, 2, &status))
        return status;
    auto project = open(opt.positional()[0]);
    if (!project)
        return kExitFailure;
    const rq::ProjectModel& m = project->model();
    const int width = m.hmiType ? m.hmiType->screenWidth : 0;
    const int height = m.hmiType ? m.hmiType->screenHeight : 0;
    TerminalProgress progress(opt.flag("quiet"));
    rq::LogoDownloadJob job(rq::DeployProject::from(m), width, height,
                            opt.value("ip").value_or(m.slaveIp), absolutePath(opt.positional()[1]),
                            rq::programDirectory(), &progress);
    const rq::TransferOutcome o = job.run();
    progress.finish();
    return deviceExit(o, &job);
}

CommandRegistration regCompile({"compile", "compile DIR [--show-command]",
                                "compiles the project's user library (RqGenDll.sh); "
                                "--show-command prints the toolchain line on standard error",
                                runCompile});
CommandRegistration regCompileModule({"compile-module", "compile-module DIR NAME",
                                      "compiles one user module of modules.xml (RqGenMdl.sh)",
                                      runCompileModule});
CommandRegistration regBuildPackage({"build-package", "build-package DIR",
                                     "builds download/rqupdate.rqp (download.sh, then wrapping)",
                                     runBuildPackage});
CommandRegistration regDownload({"download", "download DIR [--ip ADDR] [--quiet]",
                                 "downloads the project's package to the device", runDownload});
CommandRegistration regUpgrade({"upgrade", "upgrade FILE IP [--quiet]",
                                "downloads an upgrade package to the device", runUpgrade});
CommandRegistration regUpload({"upload", "upload IP TARGET [--password P] [--quiet]",
                               "uploads the device's project into TARGET", runUpload});
CommandRegistration regLogo({"logo", "logo DIR BMP [--ip ADDR] [--quiet]",
                             "downloads a 24-bit bitmap as the device's start-up image", runLogo});

} // namespace

// Spreadsheet commands: export (a section as a CSV table) and import (a CSV table
// merged into a section).

#include "CliSupport.h"
#include "Command.h"
#include "core/FileUtil.h"
#include "exchange/ProjectExchange.h"

#include <iostream>

using namespace rqcli;

namespace {

// The section argument; false after printing the usage error.
bool sectionArgument(const Command& command, const std::string& section) {
    if (rq::tableSectionIndex(section) >= 0)
        return true;
    std::cerr << "rqpcli " << command.name << ": no table for section '" << section
              << "'; the sections are:";
    for (const std::string& name : rq::tableSectionNames())
        std::cerr << " " << name;
    std::cerr << "\nusage: rqpcli " << command.usage << "\n";
    return false;
}

// "-o FILE" is "--output FILE".
std::vector<std::string> longOptions(std::vector<std::string> args) {
    for (std::string& a : args)
        if (a == "-o")
            a = "--output";
    return args;
}

int runExport(const std::vector<std::string>& args) {
    Options opt({"output"}, {});
    int status;
    const Command& command = commandNamed("export");
    if (!parseOrExit(command, opt, longOptions(args), 2, 2, &status))
        return status;
    const std::string& section = opt.positional()[1];
    if (!sectionArgument(command, section))
        return kExitUsage;
    auto project = openProject(opt.positional()[0], rq::OpenPurpose::Inspect);
    if (!project)
        return kExitFailure;
    const std::string text = rq::exportTable(*rq::makeSectionTable(*project, section));
    if (auto file = opt.value("output")) {
        std::string error;
        if (!rq::writeFileAtomic(*file, text, &error))
            return fail(*file + ": " + error);
        return kExitOk;
    }
    std::cout << text << std::flush;
    return std::cout ? kExitOk : kExitFailure;
}

int runImport(const std::vector<std::string>& args) {
    Options opt({}, {"dry-run", "replace", "skip-invalid"});
    int status;
    const Command& command = commandNamed("import");
    if (!parseOrExit(command, opt, args, 3, 3, &status))
        return status;
    const std::string& section = opt.positional()[1];
    if (!sectionArgument(command, section))
        return kExitUsage;
    const std::string& file = opt.positional()[2];
    std::string text, error;
    if (!rq::readWholeFile(file, text, &error))
        return fail(file + ": " + error);
    auto project = openProject(opt.positional()[0]);
    if (!project)
        return kExitFailure;
    rq::ImportOptions options;
    options.dryRun = opt.flag("dry-run");
    options.replace = opt.flag("replace");
    options.skipInvalid = opt.flag("skip-invalid");
    const rq::ImportResult result = rq::importSection(*project, section, text, options);
    const rq::TableMerge& m = result.merge;
    if (!m.ok())
        return fail(file + ": " + m.error);
    std::cout << "added: " << m.added << "\nchanged: " << m.changed
              << "\nunchanged: " << m.unchanged << "\n";
    if (options.replace)
        std::cout << "removed: " << m.removed << "\n";
    std::cout << "refused: " << m.refused.size() << "\n";
    for (const rq::RefusedRow& r : m.refused)
        std::cout << file << ":" << r.line << ": " << r.reason << "\n";
    if (!result.error.empty())
        return fail(result.error);
    if (options.dryRun)
        std::cout << "dry run: nothing is written\n";
    else if (result.written)
        std::cout << "written: " << section << ".xml\n";
    else
        std::cout << "nothing to write\n";
    return kExitOk;
}

CommandRegistration regExport({"export", "export DIR SECTION [-o FILE.csv]",
                               "writes a section (rtdb, hmidb, device, param, datalog, history, "
                               "alarm) as a CSV table with a header line; to standard output "
                               "without -o",
                               runExport});
CommandRegistration regImport(
    {"import", "import DIR SECTION FILE.csv [--dry-run] [--replace] [--skip-invalid]",
     "merges a CSV table into a section: new rows added, changed rows updated, rows absent "
     "kept (removed with --replace); any refused row writes nothing unless --skip-invalid",
     runImport});

} // namespace

// rqpcli: the command-line program. Option parsing lives in each command; this
// file only finds the command named by the first words.

#include "Command.h"

#include "RqVersion.h"

#include <iostream>
#include <string>
#include <vector>

using namespace rqcli;

static void printUsage(std::ostream& out) {
    out << "usage: rqpcli COMMAND [ARGS...]\n       rqpcli --version\n\ncommands:\n";
    for (const auto& c : commands())
        out << "  " << c.usage << "\n      " << c.summary << "\n";
    out << "\n'rqpcli COMMAND --help' describes one command.\n";
}

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.empty()) {
        printUsage(std::cerr);
        return kExitUsage;
    }
    if (args[0] == "--version") {
        std::cout << "rqpcli " << RQ_VERSION << "\n";
        return kExitOk;
    }
    if (args[0] == "--help" || args[0] == "-h" || args[0] == "help") {
        printUsage(std::cout);
        return kExitOk;
    }
    // The longest command name that the leading words spell wins ("device put"
    // before "device").
    const Command* best = nullptr;
    std::size_t bestWords = 0;
    for (const auto& c : commands()) {
        std::size_t words = 1;
        for (char ch : c.name)
            words += ch == ' ';
        if (words > args.size() || words <= bestWords)
            continue;
        std::string spelled = args[0];
        for (std::size_t i = 1; i < words; ++i)
            spelled += " " + args[i];
        if (spelled == c.name) {
            best = &c;
            bestWords = words;
        }
    }
    if (!best) {
        // A group word ("package", "device") without a known subcommand: list the
        // group's commands.
        std::vector<const Command*> group;
        for (const auto& c : commands())
            if (c.name.compare(0, args[0].size() + 1, args[0] + " ") == 0)
                group.push_back(&c);
        if (!group.empty()) {
            if (args.size() > 1)
                std::cerr << "rqpcli " << args[0] << ": unknown subcommand '" << args[1] << "'\n";
            else
                std::cerr << "rqpcli " << args[0] << ": a subcommand is needed\n";
            std::cerr << "usage:\n";
            for (const Command* c : group)
                std::cerr << "  rqpcli " << c->usage << "\n      " << c->summary << "\n";
            return kExitUsage;
        }
        std::cerr << "rqpcli: unknown command '" << args[0] << "'\n";
        printUsage(std::cerr);
        return kExitUsage;
    }
    return best->run(std::vector<std::string>(args.begin() + bestWords, args.end()));
}

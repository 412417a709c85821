#include "Command.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <stdexcept>

namespace rqcli {

static std::vector<Command>& registry() {
    static std::vector<Command> all;
    return all;
}

const std::vector<Command>& commands() {
    return registry();
}

CommandRegistration::CommandRegistration(Command command) {
    registry().push_back(std::move(command));
}

const Command& commandNamed(const std::string& name) {
    for (const auto& c : registry())
        if (c.name == name)
            return c;
    throw std::logic_error("no command " + name);
}

Options::Options(std::vector<std::string> valued, std::vector<std::string> flags)
    : valued_(std::move(valued)), flags_(std::move(flags)) {}

bool Options::parse(const std::vector<std::string>& args, std::size_t minPositional,
                    std::size_t maxPositional) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--help" || a == "-h") {
            help_ = true;
            return true;
        }
        if (a.size() > 2 && a.compare(0, 2, "--") == 0) {
            std::string name = a.substr(2);
            std::string inlineValue;
            bool hasInline = false;
            if (auto eq = name.find('='); eq != std::string::npos) {
                inlineValue = name.substr(eq + 1);
                name = name.substr(0, eq);
                hasInline = true;
            }
            if (std::find(valued_.begin(), valued_.end(), name) != valued_.end()) {
                if (hasInline) {
                    values_[name] = inlineValue;
                } else if (i + 1 < args.size()) {
                    values_[name] = args[++i];
                } else {
                    error_ = "option --" + name + " needs a value";
                    return false;
                }
            } else if (!hasInline &&
                       std::find(flags_.begin(), flags_.end(), name) != flags_.end()) {
                setFlags_.push_back(name);
            } else {
                error_ = "unknown option " + a;
                return false;
            }
        } else {
            positional_.push_back(a);
        }
    }
    if (positional_.size() < minPositional) {
        error_ = "missing arguments";
        return false;
    }
    if (positional_.size() > maxPositional) {
        error_ = "too many arguments";
        return false;
    }
    return true;
}

std::optional<std::string> Options::value(const std::string& name) const {
    auto it = values_.find(name);
    if (it == values_.end())
        return std::nullopt;
    return it->second;
}

bool Options::flag(const std::string& name) const {
    return std::find(setFlags_.begin(), setFlags_.end(), name) != setFlags_.end();
}

int fail(const std::string& text, int status) {
    std::cerr << "rqpcli: " << text << "\n";
    return status;
}

// The positions of the positional arguments that the usage names DIR (a project
// directory) or TARGET (the directory an upload unpacks into): words of the synopsis after the
// command's name, outside brackets and parentheses, an option's value word skipped.
static std::vector<std::pair<std::size_t, std::string>> directoryPositions(const Command& command) {
    std::vector<std::pair<std::size_t, std::string>> positions;
    std::size_t words = 1;
    for (char ch : command.name)
        words += ch == ' ';
    std::vector<std::string> tokens;
    std::string token;
    for (char ch : command.usage + " ") {
        if (ch == ' ') {
            if (!token.empty())
                tokens.push_back(token);
            token.clear();
        } else {
            token += ch;
        }
    }
    int depth = 0;
    std::size_t index = 0;
    for (std::size_t i = words; i < tokens.size(); ++i) {
        const std::string& t = tokens[i];
        bool opens = t.front() == '[' || t.front() == '(';
        if (opens || depth > 0) {
            for (char ch : t)
                depth += (ch == '[' || ch == '(') - (ch == ']' || ch == ')');
            continue;
        }
        if (t.compare(0, 2, "--") == 0) {
            ++i; // its value
            continue;
        }
        if (t == "DIR" || t == "TARGET")
            positions.emplace_back(index, t);
        ++index;
    }
    return positions;
}

bool parseOrExit(const Command& command, Options& options, const std::vector<std::string>& args,
                 std::size_t minPositional, std::size_t maxPositional, int* exitStatus) {
    auto usageError = [&](const std::string& reason) {
        std::cerr << "rqpcli " << command.name << ": " << reason << "\n"
                  << "usage: rqpcli " << command.usage << "\n";
        *exitStatus = kExitUsage;
        return false;
    };
    if (!options.parse(args, minPositional, maxPositional))
        return usageError(options.error());
    // An empty directory would be taken as the current one.
    if (!options.helpRequested())
        for (const auto& [i, name] : directoryPositions(command))
            if (i < options.positional().size() && options.positional()[i].empty())
                return usageError(name + " must not be empty");
    if (options.helpRequested()) {
        std::cout << "usage: rqpcli " << command.usage << "\n" << command.summary << "\n";
        *exitStatus = kExitOk;
        return false;
    }
    return true;
}

} // namespace rqcli

#include "core/InstanceRequest.h"

namespace rq {

std::string instanceRequest(std::string_view directory) {
    if (directory.empty())
        return "activate\n";
    std::string line = "open ";
    for (char c : directory) {
        if (c == '\\')
            line += "\\\\";
        else if (c == '\n')
            line += "\\n";
        else
            line += c;
    }
    return line + "\n";
}

std::optional<InstanceCall> parseInstanceRequest(std::string_view bytes) {
    const size_t end = bytes.find('\n');
    if (end == std::string_view::npos)
        return std::nullopt;
    const std::string_view line = bytes.substr(0, end);
    if (line == "activate")
        return InstanceCall{};
    if (line.substr(0, 5) != "open " || line.size() == 5)
        return std::nullopt;
    std::string dir;
    for (size_t i = 5; i < line.size(); ++i) {
        if (line[i] != '\\') {
            dir += line[i];
            continue;
        }
        if (++i == line.size())
            return std::nullopt;
        if (line[i] == 'n')
            dir += '\n';
        else if (line[i] == '\\')
            dir += '\\';
        else
            return std::nullopt;
    }
    return InstanceCall{std::move(dir)};
}

} // namespace rq

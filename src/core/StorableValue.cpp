#include "core/StorableValue.h"

namespace rq {

std::string unstorableCharactersIn(std::string_view value) {
    std::string found;
    for (char c : kUnstorableCharacters)
        if (value.find(c) != std::string_view::npos) {
            if (!found.empty())
                found += ", ";
            found += '\'';
            found += c;
            found += '\'';
        }
    return found;
}

std::optional<std::string> checkStorableValue(std::string_view fieldLabel, std::string_view value) {
    std::string found = unstorableCharactersIn(value);
    if (found.empty())
        return std::nullopt;
    return "The field \"" + std::string(fieldLabel) + "\" must not hold " + found +
           ": the project file stores it as it is and could not be read again.";
}

} // namespace rq

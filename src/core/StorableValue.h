#pragma once
// The one check of every field whose value the writers store as it is, unescaped:
// a '"', '<' or '&' in such a value makes a file that never reads back. Every
// entry point (dialogs, rqpcli) refuses such a value with the message below, which
// names the field; the section dialogs call it from their validators.

#include <optional>
#include <string>
#include <string_view>

namespace rq {

// The characters a value stored unescaped must not hold.
inline constexpr std::string_view kUnstorableCharacters = "\"<&";

// The unstorable characters that the value holds, quoted and in the order '"', '<',
// '&' ("'\"', '&'"), empty when there are none.
std::string unstorableCharactersIn(std::string_view value);

// Nothing when the value can be stored; otherwise the message to show, naming the
// field by its label (as the dialog shows it, without the colon), e.g.
// `The field "Description" must not hold '<': the project file stores it as it is
// and could not be read again.`
std::optional<std::string> checkStorableValue(std::string_view fieldLabel, std::string_view value);

} // namespace rq

#pragma once
// What a second start of rqpdev tells the running one over the single-instance
// channel: come to the front, and open the project directory it was given. One
// line: "activate", or "open " and the directory with '\' and line feeds escaped
// ("\\", "\n"), so that any path travels whole.

#include <optional>
#include <string>
#include <string_view>

namespace rq {

// The bytes a second start sends; an empty directory asks only to come forward.
std::string instanceRequest(std::string_view directory);

struct InstanceCall {
    std::optional<std::string> open; // the directory to open, if any
};

// The request held by the bytes received so far: nothing while the line is not
// complete or when it is not a request.
std::optional<InstanceCall> parseInstanceRequest(std::string_view bytes);

} // namespace rq

// Finding programs without a shell. Thread: any; looks at the folders anew at every call.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// The folders of a list like PATH, in its order, empty ones among them.
[[nodiscard]] std::vector<std::string> splitSearchPath(std::string_view list);

/// The path of the first program `name` in `folders`, those that are no absolute paths left out; empty when
/// there is none.
[[nodiscard]] std::string findProgram(std::string_view name, const std::vector<std::string>& folders);

}  // namespace corvane

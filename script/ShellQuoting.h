// Two text transformations between a plain path and the form in which it may stand unquoted on a shell's
// command line. Pure functions on UTF-8; any thread; neither fails.
#pragma once

#include <string>

namespace corvane {

/// A backslash before each character that the shell would interpret. Not idempotent, and the backslash
/// itself is not escaped.
[[nodiscard]] std::string escapeStringForTerminal(std::string text);

/// Takes those backslashes out again. A backslash before any other character stays.
[[nodiscard]] std::string stripEscapes(std::string text);

}  // namespace corvane

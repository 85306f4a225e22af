// Names of applications as people write them. Pure functions; any thread.
#pragma once

#include <string>
#include <string_view>

namespace corvane::osascript {

/// `name` for comparing: ASCII letters in lower case, without blanks and hyphens.
[[nodiscard]] std::string comparable(std::string_view name);

/// True when both name the same application. A name with nothing to compare is no application's.
[[nodiscard]] bool isSameName(std::string_view one, std::string_view other);

/// ASCII letters in lower case, all else as it is.
[[nodiscard]] std::string lowerCase(std::string_view text);

}  // namespace corvane::osascript

// The file by which an application tells a desktop its name and how it is started. Pure; any thread.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::osascript {

/// The keys of the file's group "Desktop Entry" with their values, escapes replaced. Lines that are none are
/// left out; of a repeated key the first counts.
using DesktopEntry = std::map<std::string, std::string, std::less<>>;
[[nodiscard]] DesktopEntry parseDesktopEntry(std::string_view text);

/// The value of `key`; empty when it is absent.
[[nodiscard]] std::string valueOf(const DesktopEntry& entry, std::string_view key);

/// The program and arguments of the value of "Exec", without the places for files and the like, which are for
/// callers that have some to open. Outside of quotes a backslash takes the next character as it is, and
/// single quotes are quotes: not promised to authors, but used by them. Nothing when a quote is not closed, a
/// place is of no known kind, or no program is left.
[[nodiscard]] std::optional<std::vector<std::string>> parseExec(std::string_view exec);

}  // namespace corvane::osascript

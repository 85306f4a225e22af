// The few sentences that this command understands, read from text. Pure; any thread.
//
//     tell application "NAME"                 tell application "NAME" to STATEMENT
//       STATEMENT
//     end tell
//
// STATEMENT is quit, activate, shut down, or set working offline to true or false. Words are read without
// regard to case, blanks between them do not matter, and in NAME \" and \\ stand for a quote and a backslash.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::osascript {

enum class Action { quit, activate, workOffline, workOnline, shutDown };

/// Where something stands in the script: byte offsets, the end exclusive.
struct Range {
  std::size_t begin = 0;
  std::size_t end = 0;
  bool operator==(const Range&) const = default;
};

struct Statement {
  std::string application;
  Action action;
  Range range;
};

struct SyntaxError {
  std::string message;
  Range range;
};

struct Script {
  std::vector<Statement> statements;   ///< in the order of execution; to be performed only without an error
  std::optional<SyntaxError> problem;  ///< the first one
};

/// Reads any bytes, in time and memory proportional to their number. Lines end with a line feed, a carriage
/// return or both.
[[nodiscard]] Script parseScript(std::string_view source);

}  // namespace corvane::osascript

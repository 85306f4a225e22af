// Doing what a statement says. Thread: one at a time.
#pragma once

#include <optional>
#include <string>

#include "tools/osascript/Script.h"

namespace corvane::osascript {

struct Failure {
  std::string message;  ///< a sentence in UTF-8
  int code;             ///< the number by which scripts know this kind of failure
};

/// Performs `statement` and returns without waiting for the application to do what it was asked. Nothing on
/// success, to which belongs quitting what is installed but does not run.
[[nodiscard]] std::optional<Failure> perform(const Statement& statement);

}  // namespace corvane::osascript

// Switching the machine off through the system's manager of sessions. Thread: any; waits for its answer.
#pragma once

#include <string>
#include <vector>

#include "process/Spawn.h"

namespace corvane::osascript {

/// The commands that can ask for it, best first, as far as their programs are in `folders`. They ask nobody
/// for a password.
[[nodiscard]] std::vector<LaunchCommand> powerOffCommands(const std::vector<std::string>& folders);

/// Runs them until one is accepted. Empty then; otherwise why the machine stays on.
[[nodiscard]] std::string powerOff(const std::vector<std::string>& folders);

}  // namespace corvane::osascript

// The user's running programs, as the system lists them under /proc. Thread: any.
#pragma once

#include <sys/types.h>
#include <string_view>
#include <vector>

namespace corvane::osascript {

/// The processes of this user whose command or executable file has the name of `application`, whole names
/// compared. Never among them: this process, those that it descends from, and the system's first one.
[[nodiscard]] std::vector<pid_t> processesOf(std::string_view application);

}  // namespace corvane::osascript

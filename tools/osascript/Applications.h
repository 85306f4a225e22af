// The applications that can be started on this machine. Thread: any; reads the folders anew at every call.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "process/Spawn.h"

namespace corvane::osascript {

struct Application {
  LaunchCommand command;
  std::string folder;  ///< where it is to be started; empty when it does not say
};

/// The application that calls itself `name`: by a desktop entry's name, its file's name or its window class,
/// in this order of preference, else a program on PATH whose name is `name` in lower case with its blanks as
/// hyphens or left out. Folders and PATH are those of `environment`, which is also the application's. Nothing
/// when there is none that can be started without a terminal.
[[nodiscard]] std::optional<Application> findApplication(std::string_view name,
                                                         const std::vector<std::string>& environment);

}  // namespace corvane::osascript

// Opening a file as the user's desktop would. One source file per system. Thread: main.
#pragma once

#include <string>

namespace corvane {

/// Starts the desktop's own viewer for `path` and does not wait for it. False when there is none.
[[nodiscard]] bool openWithDesktop(const std::string& path);

}  // namespace corvane

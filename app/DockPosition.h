// Where the user keeps the Dock. Thread: main.
#pragma once

#include <string>

#include "app/ProgressWindow.h"
#include "app/PropertyLists.h"

namespace corvane {

enum class DockPosition { bottom = 0, left = 1, right = 2 };

/// Reads the Dock's preferences below `libraryFolder`; at the bottom when they cannot be read or do not say.
[[nodiscard]] DockPosition getDockPosition(PropertyLists& lists, const std::string& libraryFolder);

/// The point that the progress window is attached to, so that it stands beside the Dock.
[[nodiscard]] ScreenPoint windowPoint(DockPosition dock);

}  // namespace corvane

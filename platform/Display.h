// Whether there is a display to show a window on. One source file per system. Thread: main.
#pragma once

namespace corvane {

/// True when the window system can be reached. Takes about a millisecond.
[[nodiscard]] bool isDisplayAvailable();

/// True when a window manager decorates windows. Only asked for when there is a display.
[[nodiscard]] bool isWindowManagerRunning();

}  // namespace corvane

// The windows of an application on the user's display. Thread: one at a time; every call connects anew.
//
// A window belongs to an application whose name is the window's class, or whose process it names as its
// owner. Only windows that can be seen or are minimized count.
#pragma once

#include <sys/types.h>
#include <string_view>
#include <vector>

namespace corvane::osascript {

/// Asks every window of `application` to close, as its close button would; the application decides what to
/// do. False when no window could be asked, or there is no display.
bool askWindowsToClose(std::string_view application, const std::vector<pid_t>& processes);

/// Asks the window manager to bring the windows of `application` to the front. False when it has none, or
/// there is no display.
bool raiseWindows(std::string_view application, const std::vector<pid_t>& processes);

}  // namespace corvane::osascript

// Whether somebody outside has asked this program to end: noted where a signal is handled, looked at where
// the program waits for others. Thread: any.
#pragma once

namespace corvane {

/// Notes the request. May be called by a signal handler.
void requestEnd() noexcept;

/// True from the request on.
[[nodiscard]] bool isEndRequested() noexcept;

/// Forgets an earlier request: for whoever handles signals from now on.
void forgetEndRequest() noexcept;

}  // namespace corvane

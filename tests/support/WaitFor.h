// Waiting for a condition instead of for a time.
#pragma once

#include <chrono>
#include <thread>

namespace corvane {

/// Looks every few milliseconds until `condition` holds; false when it does not within `limit`.
template <typename Condition>
[[nodiscard]] bool waitFor(const Condition& condition, std::chrono::milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

}  // namespace corvane

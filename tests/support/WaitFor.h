// Waiting for something that another process or thread brings about.
#pragma once

#include <chrono>
#include <thread>

namespace corvane {

/// Asks `condition` until it holds, for at most `limit`; false when it never did.
template <typename Condition>
[[nodiscard]] bool waitFor(Condition condition, std::chrono::milliseconds limit = std::chrono::seconds(10)) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

}  // namespace corvane

// The user's home folder on systems where the environment names it. Linux only. Thread: main.
#pragma once

#include <string>

namespace corvane {

/// Absolute, in UTF-8: the environment's, or that of the user's account; without a slash at its end;
/// empty when neither tells.
[[nodiscard]] std::string getHomeDirectory();

}  // namespace corvane

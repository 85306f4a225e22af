// The place from which users get back what they have thrown away. One source file per system. Thread: main.
#pragma once

#include <string>

namespace corvane {

/// Moves the file or folder at `path`, absolute and in UTF-8, to the Trash that the file managers of the
/// system show. On failure false, the cause in `problem`, and nothing has moved.
[[nodiscard]] bool moveToTrash(const std::string& path, std::string& problem);

}  // namespace corvane

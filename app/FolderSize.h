// The size of a folder as the system's disk usage tool sees it. Thread: main; blocks until the tool is done.
#pragma once

#include <optional>
#include <string>

namespace corvane {

/// The number before the first tab of the tool's output, in its own units; 0 when no number stands there.
/// Nothing when the output has no tab, as when the folder does not exist.
[[nodiscard]] std::optional<float> measureFolder(const std::string& path);

}  // namespace corvane

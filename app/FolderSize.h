// The size of a folder as the system's disk usage tool sees it. Thread: main; blocks until the tool
// is done, for a minute at most.
#pragma once

#include <optional>
#include <string>

namespace corvane {

/// The number before the first tab of what the tool has printed, in its own units; 0 when no number stands
/// there. Nothing when there is no tab, as in its complaints in whatever language.
[[nodiscard]] std::optional<float> folderSizeFrom(const std::string& output);

/// `size` in per cent of `whole`; infinite, negative or no number at all when `whole` is not positive.
[[nodiscard]] double percentageOf(float size, float whole);

/// Measures the folder at `path`. Nothing when the tool gave no size, as when there is no such folder
/// or it takes too long; the latter is logged.
[[nodiscard]] std::optional<float> measureFolder(const std::string& path);

}  // namespace corvane

// The companion application that schedules this program may have been thrown away; its user is then asked
// whether the rest is to go too. Thread: any.
#pragma once

#include <optional>
#include <string>

#include "app/Workspace.h"

namespace corvane {

/// True when the application is neither at the place that the configuration names nor at `usualPlace`.
[[nodiscard]] bool isApplicationMissing(const std::optional<std::string>& configuredPlace,
                                        const std::string& usualPlace);

/// The question: the first button completes the uninstallation, the second goes on with the backup.
[[nodiscard]] Alert missingApplicationAlert();

}  // namespace corvane

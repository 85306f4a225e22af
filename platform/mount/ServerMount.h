// Mounting server volumes on Linux. Thread: main, which waits.
//
// Nothing here waits for ever: a helper is ended after 30 seconds, and looking at a volume is given up after
// 30, so that a mount comes to an end within three minutes whatever the server does. A mounted volume
// stays mounted; the next run finds it.
#pragma once

#include <string>

#include "app/Volumes.h"

namespace corvane {

/// True when a volume stands in `volumes` (an absolute folder) under `name` and answers.
[[nodiscard]] bool isVolumeMounted(const std::string& volumes, const std::string& name);

/// Mounts `volume` on the folder of its name in `volumes`, which is made when missing. A volume that stands
/// there and answers with errors only is taken away first. On failure the error is an errno, and nothing new
/// stays behind: neither a half-made mount nor a folder.
[[nodiscard]] MountOutcome mountServerVolume(const std::string& volumes, const ServerVolume& volume);

}  // namespace corvane

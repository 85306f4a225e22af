// Mounting server volumes on Linux. Thread: main, which waits.
//
// Nothing here waits for ever: a helper is ended after 30 seconds, looking at a volume is given up after 30,
// and each command that takes one away is ended after 10. With at most three looks, one helper and four such
// commands, and some seconds until each has ended, a mount is over within four minutes whatever the server
// does, and within seconds when this program is asked to end. A mounted volume stays mounted; the next run
// finds it.
#pragma once

#include <string>

#include "app/Volumes.h"

namespace corvane {

/// True when a volume stands in `volumes` (an absolute folder) under `name` and answers.
[[nodiscard]] bool isVolumeMounted(const std::string& volumes, const std::string& name);

/// Mounts `volume` on the folder of its name in `volumes`, which is made when missing. A volume that stands
/// there and says that it lost its server is taken away first; nothing is mounted over anything else, nor
/// over a link. On failure the error is an errno, and nothing new
/// stays behind: neither a half-made mount nor a folder.
[[nodiscard]] MountOutcome mountServerVolume(const std::string& volumes, const ServerVolume& volume);

}  // namespace corvane

// How a shell script is started on a system whose /bin/sh may not know `let`.
//
// The scripts of this program count with `let`. A shell without it would go round their rotation loop for
// ever and delete every archive, so such a shell is never given one: a shell that counts runs the script
// under the name /bin/sh, with the script's bytes unchanged. Thread: main; the first call probes the shells
// and takes some milliseconds.
#pragma once

#include <string>
#include <vector>

#include "process/Spawn.h"

namespace corvane {

/// What the list of processes shows as the program, whichever shell it is.
inline constexpr const char* kShellName = "/bin/sh";

/// The command that runs the script at arguments[0] with the other arguments. `toolsFolder` is looked through
/// for commands after the folders of PATH, so that a system's own tools win.
[[nodiscard]] LaunchCommand commandForScript(const std::vector<std::string>& arguments,
                                             const std::string& toolsFolder);

}  // namespace corvane

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

struct ShellSetting {
  const char* name;
  const char* value;
};

/// What the environment of the script holds for the shell and for the commands whose output it takes apart.
inline constexpr ShellSetting kShellSettings[] = {
    // The ninth column of `ls -l` is the name: the user's own ways of writing dates and names must neither
    // move nor change it.
    {"TIME_STYLE", "+%m %d %H:%M"},
    {"QUOTING_STYLE", "literal"},
    // As `echo` of the system's own /bin/sh on macOS; shells other than bash do not look at it.
    {"BASHOPTS", "xpg_echo"},
};

/// The command that runs the script at arguments[0] with the other arguments. `toolsFolder` is looked through
/// for commands after the folders of PATH, so that a system's own tools win.
[[nodiscard]] LaunchCommand commandForScript(const std::vector<std::string>& arguments,
                                             const std::string& toolsFolder);

}  // namespace corvane

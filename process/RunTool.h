// Running one of the system's tools and waiting for it.
// Thread: any; blocks the caller until the tool has ended, its time is over, or this program is asked to end.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "process/Spawn.h"

namespace corvane {

enum class Capture { outputOnly, outputAndErrors };

/// How long a tool is waited for. Then it is ended with all that it started.
struct Patience {
  std::chrono::milliseconds limit = std::chrono::seconds(30);
  bool alsoWhenEnding = false;  ///< one that must be done although this program has been asked to end
};

struct ToolResult {
  int status = -1;      ///< exit status; 128 plus the signal that ended it; -1 when not started or not known
  std::string output;   ///< bytes as written, at most 64 MiB
  std::string problem;  ///< why it could not be started, or was not waited for any longer
  bool timedOut = false;
  bool interrupted = false;  ///< not started or ended early: this program has been asked to end
  bool complete = false;     ///< `output` is all that it wrote; not known of a tool that reads `input`
};

/// Waits until the tool has closed its output and ended.
[[nodiscard]] ToolResult runTool(const LaunchCommand& command, Capture capture = Capture::outputAndErrors,
                                 const Patience& patience = {});

/// Runs the program whose absolute path is the first of `arguments` with the others.
[[nodiscard]] ToolResult runTool(const std::vector<std::string>& arguments,
                                 Capture capture = Capture::outputAndErrors, const Patience& patience = {});

/// Runs a tool that reads `input`, of at most 4096 bytes, from its standard input, and waits for its end
/// only, not for that of its output: a daemon that it leaves behind does not matter.
[[nodiscard]] ToolResult runToolWithInput(LaunchCommand command, const std::string& input,
                                          const Patience& patience);

}  // namespace corvane

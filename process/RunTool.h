// Running one of the system's tools and waiting for it.
// Thread: any; blocks the caller until the tool has closed its output and ended.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "process/Spawn.h"

namespace corvane {

enum class Capture { outputOnly, outputAndErrors };

struct ToolResult {
  int status = -1;      ///< exit status; 128 plus the signal that ended it; -1 when not started or not known
  std::string output;   ///< bytes as written, at most 64 MiB
  std::string problem;  ///< why it could not be started
  bool timedOut = false;
  bool complete = false;  ///< `output` is all that it wrote; not known of a run with a time limit
};

[[nodiscard]] ToolResult runTool(const LaunchCommand& command, Capture capture = Capture::outputAndErrors);

/// Runs the program whose absolute path is the first of `arguments` with the others.
[[nodiscard]] ToolResult runTool(const std::vector<std::string>& arguments,
                                 Capture capture = Capture::outputAndErrors);

/// Runs a tool that reads `input`, of at most 4096 bytes, from its standard input, and waits for its end
/// only, not for that of its output: a daemon that it leaves behind does not matter. After `limit` the tool
/// is ended with all that it started, and `timedOut` is set.
[[nodiscard]] ToolResult runTool(LaunchCommand command, const std::string& input,
                                 std::chrono::milliseconds limit);

}  // namespace corvane

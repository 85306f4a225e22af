#include "process/RunTool.h"

#include "process/ChildProcess.h"
#include "process/PipeRead.h"

namespace corvane {
namespace {

constexpr std::size_t kMostOutput = 64 * 1024 * 1024;

}  // namespace

ToolResult runTool(const LaunchCommand& command, Capture capture) {
  Pipe pipe;
  if (!pipe.isOpen()) return {.problem = "cannot start " + command.program + ": no descriptors left"};
  const Spawned spawned = spawn(command, pipe.writeEnd, capture == Capture::outputAndErrors);
  pipe.closeWriteEnd();
  if (spawned.pid < 0) return {.problem = spawned.problem};
  ChildProcess tool(spawned.pid);
  ToolResult result;
  std::string chunk;
  for (readOnce(pipe.readEnd, chunk); !chunk.empty(); readOnce(pipe.readEnd, chunk)) {
    if (result.output.size() < kMostOutput) result.output += chunk;
  }
  result.status = tool.wait();
  return result;
}

ToolResult runTool(const std::vector<std::string>& arguments, Capture capture) {
  return runTool({arguments.front(), arguments, currentEnvironment()}, capture);
}

}  // namespace corvane

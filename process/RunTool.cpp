#include "process/RunTool.h"

#include <poll.h>
#include <unistd.h>

#include "process/ChildProcess.h"
#include "process/PipeRead.h"

namespace corvane {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostOutput = 64 * 1024 * 1024;
constexpr std::size_t kMostInput = 4096;
constexpr int kPollMilliseconds = 5;

ToolResult noDescriptors(const LaunchCommand& command) {
  return {.problem = "cannot start " + command.program + ": no descriptors left"};
}

// So little that the pipe takes it all before anybody reads.
bool fillPipe(Pipe& pipe, const std::string& input) {
  const bool filled = input.size() <= kMostInput && ::write(pipe.writeEnd, input.data(), input.size()) ==
                                                        static_cast<ssize_t>(input.size());
  pipe.closeWriteEnd();
  return filled;
}

// What a tool writes, for as long as somebody listens.
class Output {
 public:
  Output(int descriptor, std::string& text) : descriptor_(descriptor), text_(text) {}

  /// Waits for more for at most `milliseconds`; false when nothing came.
  bool collect(int milliseconds) {
    pollfd waiting{descriptor_, POLLIN, 0};
    if (::poll(&waiting, 1, milliseconds) <= 0) return false;
    readOnce(descriptor_, chunk_);
    if (chunk_.empty()) descriptor_ = -1;
    if (text_.size() < kMostOutput) text_ += chunk_;
    return !chunk_.empty() && text_.size() < kMostOutput;
  }

 private:
  int descriptor_;
  std::string& text_;
  std::string chunk_;
};

}  // namespace

ToolResult runTool(const LaunchCommand& command, Capture capture) {
  Pipe pipe;
  if (!pipe.isOpen()) return noDescriptors(command);
  const Spawned spawned = spawn(command, pipe.writeEnd, capture == Capture::outputAndErrors);
  pipe.closeWriteEnd();
  if (spawned.pid < 0) return {.problem = spawned.problem};
  ChildProcess tool(spawned.pid);
  ToolResult result;
  std::string chunk;
  bool isRead = readOnce(pipe.readEnd, chunk);
  bool fits = true;
  for (; !chunk.empty(); isRead = readOnce(pipe.readEnd, chunk)) {
    fits = fits && chunk.size() <= kMostOutput - result.output.size();
    if (fits) result.output += chunk;
  }
  result.complete = isRead && fits;
  result.status = tool.wait();
  return result;
}

ToolResult runTool(const std::vector<std::string>& arguments, Capture capture) {
  return runTool({arguments.front(), arguments, currentEnvironment()}, capture);
}

ToolResult runTool(LaunchCommand command, const std::string& input, std::chrono::milliseconds limit) {
  Pipe in;
  Pipe out;
  if (!in.isOpen() || !out.isOpen()) return noDescriptors(command);
  if (!fillPipe(in, input)) return {.problem = "cannot start " + command.program + ": too much to read"};
  command.input = in.readEnd;
  const Spawned spawned = spawn(command, out.writeEnd);
  out.closeWriteEnd();
  if (spawned.pid < 0) return {.problem = spawned.problem};
  ChildProcess tool(spawned.pid);
  ToolResult result;
  Output output(out.readEnd, result.output);
  const auto end = Clock::now() + limit;
  std::optional<int> status;
  while (!(status = tool.ended()) && Clock::now() < end) output.collect(kPollMilliseconds);
  result.timedOut = !status;
  if (result.timedOut) tool.terminate();
  while (output.collect(0)) {
  }
  result.status = status.value_or(-1);
  return result;
}

}  // namespace corvane

#include "process/RunTool.h"

#include <poll.h>
#include <unistd.h>

#include "process/ChildProcess.h"
#include "process/EndRequest.h"
#include "process/PipeRead.h"

namespace corvane {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostOutput = std::size_t{64} << 20;
constexpr std::size_t kMostInput = 4096;
constexpr int kPollMilliseconds = 5;
constexpr int kLastPollMilliseconds = 1;  // of a tool that has no more to say

ToolResult notStarted(const LaunchCommand& command, const std::string& cause) {
  return {.problem = "cannot start " + command.program + ": " + cause};
}

// So little that the pipe takes it all before anybody reads.
bool fillPipe(Pipe& pipe, const std::string& input) {
  const bool filled = input.size() <= kMostInput && ::write(pipe.writeEnd, input.data(), input.size()) ==
                                                        static_cast<ssize_t>(input.size());
  pipe.closeWriteEnd();
  return filled;
}

// What a tool writes, for as long as it is listened to.
class Output {
 public:
  Output(int descriptor, std::string& text) : descriptor_(descriptor), text_(text) {}

  /// Waits for more for at most `milliseconds`; false when nothing came, or nothing more is kept.
  bool collect(int milliseconds) {
    pollfd waiting{descriptor_, POLLIN, 0};
    if (::poll(&waiting, 1, milliseconds) <= 0) return false;
    isRead_ = readOnce(descriptor_, chunk_);
    if (chunk_.empty()) descriptor_ = -1;
    fits_ = fits_ && chunk_.size() <= kMostOutput - text_.size();
    if (fits_) text_ += chunk_;
    return fits_ && !chunk_.empty();
  }
  [[nodiscard]] bool hasEnded() const { return descriptor_ < 0; }
  [[nodiscard]] bool isComplete() const { return hasEnded() && isRead_ && fits_; }

 private:
  int descriptor_;
  std::string& text_;
  std::string chunk_;
  bool isRead_ = true;
  bool fits_ = true;
};

bool mayGoOn(const Patience& patience) { return patience.alsoWhenEnding || !isEndRequested(); }

void explain(ToolResult& result, const LaunchCommand& command, const Patience& patience) {
  const auto seconds = std::chrono::ceil<std::chrono::seconds>(patience.limit).count();
  result.problem = command.arguments.front() +
                   (result.interrupted ? " was interrupted"
                                       : " was not done within " + std::to_string(seconds) + " seconds");
}

// Waits for the tool, and for the end of its output too if `toItsEnd`.
ToolResult follow(const LaunchCommand& command, ChildProcess& tool, int pipe, const Patience& patience,
                  bool toItsEnd) {
  const auto end = Clock::now() + patience.limit;
  ToolResult result;
  Output output(pipe, result.output);
  std::optional<int> status;
  const auto isDone = [&] {
    if (toItsEnd && !output.hasEnded()) return false;
    status = tool.ended();
    return status.has_value();
  };
  while (!isDone() && !result.timedOut && !result.interrupted) {
    output.collect(output.hasEnded() ? kLastPollMilliseconds : kPollMilliseconds);
    result.timedOut = Clock::now() >= end;
    result.interrupted = !mayGoOn(patience);
  }
  if (status) {
    result.timedOut = result.interrupted = false;
  } else {
    tool.terminate();
    explain(result, command, patience);
  }
  while (!output.hasEnded() && output.collect(0)) {
  }
  result.complete = toItsEnd && output.isComplete();
  result.status = status.value_or(-1);
  return result;
}

ToolResult startAndFollow(const LaunchCommand& command, Capture capture, const Patience& patience,
                          bool toItsEnd) {
  if (!mayGoOn(patience)) {
    ToolResult result{.interrupted = true};
    explain(result, command, patience);
    return result;
  }
  Pipe pipe;
  if (!pipe.isOpen()) return notStarted(command, "no descriptors left");
  const Spawned spawned = spawn(command, pipe.writeEnd, capture == Capture::outputAndErrors);
  pipe.closeWriteEnd();
  if (spawned.pid < 0) return {.problem = spawned.problem};
  ChildProcess tool(spawned.pid);
  return follow(command, tool, pipe.readEnd, patience, toItsEnd);
}

}  // namespace

ToolResult runTool(const LaunchCommand& command, Capture capture, const Patience& patience) {
  return startAndFollow(command, capture, patience, true);
}

ToolResult runTool(const std::vector<std::string>& arguments, Capture capture, const Patience& patience) {
  return runTool({arguments.front(), arguments, currentEnvironment()}, capture, patience);
}

ToolResult runToolWithInput(LaunchCommand command, const std::string& input, const Patience& patience) {
  Pipe in;
  if (!in.isOpen()) return notStarted(command, "no descriptors left");
  if (!fillPipe(in, input)) return notStarted(command, "too much to read");
  command.input = in.readEnd;
  return startAndFollow(command, Capture::outputAndErrors, patience, false);
}

}  // namespace corvane

// The command as a script meets it, and processes for it to meet.
#pragma once

#include <gmock/gmock.h>
#include <signal.h>

#include <memory>
#include <string>
#include <vector>

#include "process/ChildProcess.h"
#include "process/Files.h"
#include "process/RunTool.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/WaitFor.h"

namespace corvane {

/// Runs the command with folders and programs of its own, without a display unless the test sets one.
class CommandTest : public testing::Test {
 protected:
  CommandTest() {
    set("HOME", scratch_.path());
    set("PATH", scratch_.path("bin:/usr/bin:/bin"));
    set("XDG_DATA_HOME", scratch_.path("data"));
    set("XDG_DATA_DIRS", scratch_.path("none"));
    set("DISPLAY", "");
  }
  void set(const std::string& name, const std::string& value) { setVariable(environment_, name, value); }

  ToolResult run(const std::vector<std::string>& lines, Capture capture = Capture::outputAndErrors) {
    LaunchCommand command{OSASCRIPT_PATH, {"osascript"}, environment_};
    for (const auto& line : lines) command.arguments.insert(command.arguments.end(), {"-e", line});
    return runTool(command, capture);
  }
  ToolResult tell(const std::string& name, const std::string& statement) {
    return run({"tell application \"" + name + "\"", statement, "end tell"});
  }

  ScratchFolder scratch_;
  // Names that no other test uses at the same time. The system keeps only 15 letters of the first.
  const std::string own_ = scratch_.path().substr(scratch_.path().size() - 6);
  const std::string standIn_ = "Corvane Stand-In " + own_;
  const std::string agent_ = "Corvane Agent " + own_;
  std::vector<std::string> environment_ = currentEnvironment();
};

inline std::string contentsOf(const std::string& path) {
  std::string problem;
  return readFile(path, 1 << 20, problem).value_or("");
}

/// What the system tells of a process in its file `name`.
inline std::string systemFile(pid_t pid, const std::string& name) {
  return contentsOf("/proc/" + std::to_string(pid) + "/" + name);
}

/// A process that bears a given name and does nothing for a while.
class StandIn {
 public:
  /// A program of that name and no other purpose.
  StandIn(const ScratchFolder& folder, const std::string& name)
      : StandIn({copyOf("/bin/sleep", folder, name), "30"}) {}
  explicit StandIn(const std::vector<std::string>& command) {
    Pipe unread;
    pid_ = spawn({command.front(), command, currentEnvironment()}, unread.writeEnd).pid;
    process_ = std::make_unique<ChildProcess>(pid_);
    // While it starts, the system lists it as a copy of this program, then without any arguments.
    const auto hasBegun = [&] {
      return !arguments().empty() && arguments() != contentsOf("/proc/self/cmdline");
    };
    EXPECT_TRUE(waitFor(hasBegun, std::chrono::seconds(10)));
  }
  [[nodiscard]] static std::string copyOf(const std::string& program, const ScratchFolder& folder,
                                          const std::string& name) {
    return folder.write(name, contentsOf(program), 0755);
  }
  [[nodiscard]] pid_t pid() const { return pid_; }
  [[nodiscard]] std::string arguments() const { return systemFile(pid_, "cmdline"); }

  /// By what it ended: a request of somebody else, or, when there was none, ours. Of signals that wait
  /// together the one with the smaller number is delivered first, so that theirs never goes unseen.
  [[nodiscard]] int endingSignal() {
    static_assert(SIGVTALRM > SIGTERM);
    ::kill(pid_, SIGVTALRM);
    return process_->wait() - 128;
  }

 private:
  pid_t pid_;
  std::unique_ptr<ChildProcess> process_;
};

}  // namespace corvane

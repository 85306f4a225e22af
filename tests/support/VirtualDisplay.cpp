#include "tests/support/VirtualDisplay.h"

#include <poll.h>
#include <unistd.h>
#include <chrono>

#include "process/Spawn.h"
#include "tests/support/WaitFor.h"
#include "tests/support/XScreen.h"

namespace corvane {
namespace {

constexpr auto patience = std::chrono::seconds(10);

// setpriv finds the program, and sees to it that it ends with this one even when this one is killed.
std::unique_ptr<ChildProcess> start(const std::vector<std::string>& program, int output,
                                    std::string& problem) {
  std::vector<std::string> arguments{"setpriv", "--pdeathsig", "TERM"};
  arguments.insert(arguments.end(), program.begin(), program.end());
  const auto spawned = spawn({"/usr/bin/setpriv", arguments, currentEnvironment()}, output, false);
  problem = spawned.problem;
  return spawned.pid < 0 ? nullptr : std::make_unique<ChildProcess>(spawned.pid);
}

// What arrives at `descriptor` up to the end of a line, of the data, or of our patience.
std::string readLine(int descriptor) {
  std::string line;
  const auto limit = std::chrono::steady_clock::now() + patience;
  while (!line.ends_with('\n')) {
    const auto left = limit - std::chrono::steady_clock::now();
    pollfd ready{descriptor, POLLIN, 0};
    char byte = 0;
    const auto wait = std::chrono::duration_cast<std::chrono::milliseconds>(left).count();
    if (wait <= 0 || ::poll(&ready, 1, static_cast<int>(wait)) != 1 || ::read(descriptor, &byte, 1) != 1) {
      return {};
    }
    line += byte;
  }
  line.pop_back();
  return line;
}

}  // namespace

VirtualDisplay::VirtualDisplay(int width, int height) {
  Pipe number;
  const auto size = std::to_string(width) + "x" + std::to_string(height) + "x24";
  server_ = start({"Xvfb", "-displayfd", "1", "-screen", "0", size, "-nolisten", "tcp", "-noreset"},
                  number.writeEnd, problem_);
  number.closeWriteEnd();
  if (!server_) return;
  name_ = ":" + readLine(number.readEnd);
  if (name_.size() == 1) problem_ = "Xvfb did not tell its display";
}

bool VirtualDisplay::startCompositor() {
  const XScreen screen(name_);
  Pipe unread;
  compositor_ = start({"xcompmgr", "-d", name_}, unread.writeEnd, problem_);
  return compositor_ && waitFor([&] { return screen.hasCompositor(); }, patience);
}

}  // namespace corvane

#include "tests/support/VirtualDisplay.h"

#include <fcntl.h>
#include <unistd.h>
#include <cstdlib>

#include "process/Spawn.h"
#include "tests/support/ScratchFolder.h"
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

}  // namespace

VirtualDisplay::VirtualDisplay(int width, int height) {
  const ScratchFolder folder;
  const int output = ::open(folder.write("number", "").c_str(), O_WRONLY | O_CLOEXEC);
  const auto size = std::to_string(width) + "x" + std::to_string(height) + "x24";
  server_ = start({"Xvfb", "-displayfd", "1", "-screen", "0", size, "-nolisten", "tcp", "-noreset"}, output,
                  problem_);
  ::close(output);
  if (!server_) return;
  if (!waitFor([&] { return folder.read("number").ends_with('\n'); }, patience))
    problem_ = "no display was told";
  name_ = ":" + std::to_string(std::atoi(folder.read("number").c_str()));
}

bool VirtualDisplay::startCompositor() {
  const XScreen screen(name_);
  Pipe unread;
  compositor_ = start({"xcompmgr", "-d", name_}, unread.writeEnd, problem_);
  return compositor_ && waitFor([&] { return screen.hasCompositor(); }, patience);
}

}  // namespace corvane

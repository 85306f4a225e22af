#include "tools/osascript/PowerOff.h"

#include "process/ProgramPath.h"
#include "process/RunTool.h"

namespace corvane::osascript {

std::vector<LaunchCommand> powerOffCommands(const std::vector<std::string>& folders) {
  std::vector<LaunchCommand> commands;
  for (const std::string program : {"systemctl", "loginctl"}) {
    const std::string path = findProgram(program, folders);
    if (!path.empty()) {
      commands.push_back({path, {program, "--no-ask-password", "poweroff"}, currentEnvironment()});
    }
  }
  return commands;
}

std::string powerOff(const std::vector<std::string>& folders) {
  std::string problem = "the system has no session manager";
  for (const auto& command : powerOffCommands(folders)) {
    const ToolResult result = runTool(command);
    if (result.status == 0) return {};
    const std::string said = result.output.substr(0, result.output.find('\n'));
    problem = result.status < 0 ? result.problem : command.arguments.front() + ": " + said;
  }
  return problem;
}

}  // namespace corvane::osascript

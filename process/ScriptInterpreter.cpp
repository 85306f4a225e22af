#include "process/ScriptInterpreter.h"

#include "process/RunTool.h"

namespace corvane {
namespace {

// What every candidate has to be able to do before it is trusted with a script.
constexpr const char* kProbe = "x=2; let x-=1; [ \"$x\" = 1 ]";

// For a machine on which no shell knows `let`: one is defined, then the script is read as it stands.
constexpr const char* kPrelude =
    "let() { for _l in \"$@\"; do _l=$(($_l)); done; [ \"$_l\" -ne 0 ]; }; . \"$0\"";

struct Shell {
  std::string program;
  std::vector<std::string> leading;  // arguments before the script's path
};

// Started under the name sh, every one of these behaves as a POSIX shell.
LaunchCommand commandFor(const Shell& shell, const std::vector<std::string>& arguments) {
  LaunchCommand command{shell.program, {kShellName}, currentEnvironment()};
  command.arguments.insert(command.arguments.end(), shell.leading.begin(), shell.leading.end());
  command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
  return command;
}

Shell chooseShell() {
  for (const char* program :
       {"/bin/sh", "/bin/bash", "/usr/bin/bash", "/bin/ksh93", "/bin/mksh", "/bin/zsh", "/bin/busybox"}) {
    Shell shell{program, {}};
    if (runTool(commandFor(shell, {"-c", kProbe})).status == 0) return shell;
  }
  return {"/bin/sh", {"-c", kPrelude}};
}

const Shell& scriptShell() {
  static const Shell shell = chooseShell();
  return shell;
}

}  // namespace

LaunchCommand commandForScript(const std::vector<std::string>& arguments, const std::string& toolsFolder) {
  LaunchCommand command = commandFor(scriptShell(), arguments);
  auto& environment = command.environment;
  // An empty entry would stand for the current folder.
  std::string path = variable(environment, "PATH", "");
  if (path.empty()) path = "/usr/bin:/bin:/usr/sbin:/sbin";
  setVariable(environment, "PATH", toolsFolder.empty() ? path : path + ":" + toolsFolder);
  for (const auto& [name, value] : kShellSettings) setVariable(environment, name, value);
  return command;
}

}  // namespace corvane

#include "process/OrphanedScript.h"

#include <unistd.h>
#include <algorithm>
#include <cstdlib>

#include "process/ChildProcess.h"
#include "process/Log.h"
#include "process/RunTool.h"
#include "process/ScriptInterpreter.h"

namespace corvane {
namespace {

// The shell that a line of the list stands for when it runs `path` and leads a process group; 0 otherwise.
pid_t shellIn(const std::string& line, const std::string& path) {
  char* end = nullptr;
  const auto pid = static_cast<pid_t>(std::strtol(line.c_str(), &end, 10));
  const std::string command = line.substr(static_cast<std::size_t>(end - line.c_str()));
  const bool runsIt =
      command.starts_with(std::string(" ") + kShellName + " ") && command.ends_with(" " + path);
  return runsIt && ::getpgid(pid) == pid ? pid : 0;
}

}  // namespace

void endOrphanedScripts(const std::string& path) {
  // In the locale of a crontab `ps` writes "?" for letters beyond ASCII.
  const ToolResult processes =
      runTool({"/usr/bin/env", "LC_ALL=C.UTF-8", "/bin/ps", "-wwx", "-o", "pid=", "-o", "args="});
  if (!processes.problem.empty()) log(processes.problem);
  const std::string& list = processes.output;
  for (std::size_t start = 0; start < list.size();) {
    const auto end = std::min(list.find('\n', start), list.size());
    if (const pid_t shell = shellIn(list.substr(start, end - start), path); shell > 1) {
      log("Ending the script of an earlier backup");
      ChildProcess(shell).terminate();
    }
    start = end + 1;
  }
}

}  // namespace corvane

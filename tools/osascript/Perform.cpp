#include "tools/osascript/Perform.h"

#include <signal.h>
#include <cerrno>
#include <string_view>

#include "tools/osascript/Applications.h"
#include "tools/osascript/Detached.h"
#include "tools/osascript/Names.h"
#include "tools/osascript/PowerOff.h"
#include "tools/osascript/ProcessList.h"
#include "tools/osascript/WindowList.h"

namespace corvane::osascript {
namespace {

using Outcome = std::optional<Failure>;

Failure notThere(const std::string& application) {
  std::string quoted;
  for (const char letter : application) {
    if (letter == '"' || letter == '\\') quoted += '\\';
    quoted += letter;
  }
  return {"Can’t get application \"" + quoted + "\".", -1728};
}

Failure refused(const std::string& application, const std::string& cause, int code) {
  return {application + " got an error: " + cause, code};
}

Outcome quit(const std::string& application) {
  const auto processes = processesOf(application);
  if (askWindowsToClose(application, processes)) return std::nullopt;
  if (processes.empty() && !findApplication(application, currentEnvironment())) return notThere(application);
  Outcome outcome;
  for (const pid_t process : processes) {
    const bool isForbidden = ::kill(process, SIGTERM) != 0 && errno != ESRCH;
    if (isForbidden) outcome = refused(application, "A privilege violation occurred.", -10004);
  }
  return outcome;
}

Outcome activate(const std::string& application) {
  const auto processes = processesOf(application);
  if (raiseWindows(application, processes) || !processes.empty()) return std::nullopt;
  auto found = findApplication(application, currentEnvironment());
  if (!found) return notThere(application);
  const std::string problem = startDetached(std::move(*found));
  if (problem.empty()) return std::nullopt;
  return refused(application, problem + ".", -10810);
}

// No application of this system can be told to; saying it was would let a live store be archived unnoticed.
Outcome setOffline(const std::string& application, const char* value) {
  if (!processesOf(application).empty()) {
    return refused(application, std::string("Can’t set working offline to ") + value + ".", -10006);
  }
  if (!findApplication(application, currentEnvironment())) return notThere(application);
  return refused(application, "Application isn’t running.", -600);
}

Outcome shutDown(const std::string& application) {
  if (!isSameName(application, "Finder")) return refused(application, "Can’t continue shut down.", -1708);
  const std::string problem = powerOff({"/usr/bin", "/bin", "/usr/sbin", "/sbin"});
  if (problem.empty()) return std::nullopt;
  return refused(application, problem + ".", -10000);
}

}  // namespace

std::optional<Failure> perform(const Statement& statement) {
  const auto& application = statement.application;
  switch (statement.action) {
    case Action::quit:
      return quit(application);
    case Action::activate:
      return activate(application);
    case Action::workOffline:
      return setOffline(application, "true");
    case Action::workOnline:
      return setOffline(application, "false");
    case Action::shutDown:
      return shutDown(application);
  }
  return std::nullopt;
}

}  // namespace corvane::osascript

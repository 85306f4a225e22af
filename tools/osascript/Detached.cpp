#include "tools/osascript/Detached.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>
#include <csignal>
#include <cstring>

#include "process/FileMask.h"
#include "process/Files.h"
#include "process/ScriptInterpreter.h"

namespace corvane::osascript {
namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (auto& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// Not where the script happens to stand: that can be a volume to be unmounted.
std::string workingFolder(const Application& application) {
  for (const auto& folder : {application.folder, variable(application.command.environment, "HOME", "")}) {
    if (folder.starts_with('/') && isFolder(folder) && ::access(folder.c_str(), X_OK) == 0) return folder;
  }
  return "/";
}

class Settings {
 public:
  explicit Settings(const std::string& folder) {
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    posix_spawn_file_actions_addchdir_np(&files, folder.c_str());
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~Settings() {
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
  }
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;

  posix_spawn_file_actions_t files{};
  posix_spawnattr_t attributes{};
};

}  // namespace

std::string startDetached(Application application) {
  auto& command = application.command;
  // Meant for the shell that runs the script; an application's own scripts are written for the usual
  // settings.
  for (const auto& [name, value] : kShellSettings) removeVariable(command.environment, name);
  removeVariable(command.environment, kFileMaskVariable);
  const Settings settings(workingFolder(application));
  const auto arguments = pointersTo(command.arguments);
  const auto environment = pointersTo(command.environment);
  const UsersFileMask mask;
  pid_t pid = -1;
  const int error = posix_spawn(&pid, command.program.c_str(), &settings.files, &settings.attributes,
                                arguments.data(), environment.data());
  return error == 0 ? "" : "cannot start " + command.program + ": " + std::strerror(error);
}

}  // namespace corvane::osascript

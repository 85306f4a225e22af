#include "process/Spawn.h"

#include <dirent.h>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

extern char** environ;

namespace corvane {
namespace {

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (const auto& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

class FileActions {
 public:
  FileActions() { posix_spawn_file_actions_init(&actions_); }
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;

  void open(int number, int flags) {
    posix_spawn_file_actions_addopen(&actions_, number, "/dev/null", flags, 0);
  }
  void duplicate(int from, int number) { posix_spawn_file_actions_adddup2(&actions_, from, number); }
  const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

// Own process group, so that it can be ended with all that it started; signals as at a login.
class Attributes {
 public:
  Attributes() {
    posix_spawnattr_init(&attributes_);
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &all);
    posix_spawnattr_setpgroup(&attributes_, 0);
    posix_spawnattr_setflags(&attributes_,
                             POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~Attributes() { posix_spawnattr_destroy(&attributes_); }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;
  const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

// Moves the process, since the systems' ways to have it done for the child only are too new.
class WorkingFolder {
 public:
  explicit WorkingFolder(const std::string& folder) {
    if (folder.empty()) return;
    before_ = ::open(".", O_RDONLY | O_CLOEXEC);
    hasMoved_ = ::chdir(folder.c_str()) == 0;
    if (!hasMoved_) problem_ = "cannot work in " + folder + ": " + std::strerror(errno);
  }
  // A folder to which there is no way back is left for one that is nobody's.
  ~WorkingFolder() {
    const bool isBack = !hasMoved_ || (before_ >= 0 && ::fchdir(before_) == 0);
    [[maybe_unused]] const bool isThere = isBack || ::chdir("/") == 0;
    if (before_ >= 0) ::close(before_);
  }
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;
  const std::string& problem() const { return problem_; }

 private:
  int before_ = -1;
  bool hasMoved_ = false;
  std::string problem_;
};

// Also those that this process was started with, or that a library opened: a program that outlived us would
// keep a volume busy with them.
void keepDescriptorsFromChildren() {
  DIR* folder = ::opendir("/dev/fd");
  if (!folder) return;
  while (const dirent* entry = ::readdir(folder)) {
    const int number = std::atoi(entry->d_name);
    if (number > STDERR_FILENO) ::fcntl(number, F_SETFD, FD_CLOEXEC);
  }
  ::closedir(folder);
}

std::string assignment(const std::string& name) { return name + "="; }

}  // namespace

std::vector<std::string> currentEnvironment() {
  std::vector<std::string> environment;
  for (char** entry = environ; entry && *entry; ++entry) environment.emplace_back(*entry);
  return environment;
}

void setVariable(std::vector<std::string>& environment, const std::string& name, const std::string& value) {
  removeVariable(environment, name);
  environment.push_back(assignment(name) + value);
}

void removeVariable(std::vector<std::string>& environment, const std::string& name) {
  std::erase_if(environment, [&](const std::string& entry) { return entry.starts_with(assignment(name)); });
}

std::string variable(const std::vector<std::string>& environment, const std::string& name,
                     const std::string& otherwise) {
  for (const auto& entry : environment) {
    if (entry.starts_with(assignment(name))) return entry.substr(name.size() + 1);
  }
  return otherwise;
}

Spawned spawn(const LaunchCommand& command, int output, bool withErrors) {
  FileActions files;
  if (command.input >= 0) {
    files.duplicate(command.input, STDIN_FILENO);
  } else {
    files.open(STDIN_FILENO, O_RDONLY);
  }
  files.duplicate(output, STDOUT_FILENO);
  if (withErrors) {
    files.duplicate(output, STDERR_FILENO);
  } else {
    files.open(STDERR_FILENO, O_WRONLY);
  }
  const WorkingFolder folder(command.folder);
  if (!folder.problem().empty()) return {-1, folder.problem()};
  keepDescriptorsFromChildren();
  const Attributes attributes;
  const auto arguments = pointersTo(command.arguments);
  const auto environment = pointersTo(command.environment);
  Spawned spawned;
  const int error = posix_spawn(&spawned.pid, command.program.c_str(), files.get(), attributes.get(),
                                arguments.data(), environment.data());
  if (error == 0) return spawned;
  return {-1, "cannot start " + command.program + ": " + std::strerror(error)};
}

Pipe::Pipe() {
  int ends[2];
  if (::pipe(ends) != 0) return;
  for (const int end : ends) ::fcntl(end, F_SETFD, FD_CLOEXEC);
  readEnd = ends[0];
  writeEnd = ends[1];
}

Pipe::~Pipe() {
  closeWriteEnd();
  if (readEnd >= 0) ::close(readEnd);
}

void Pipe::closeWriteEnd() {
  if (writeEnd >= 0) ::close(writeEnd);
  writeEnd = -1;
}

}  // namespace corvane

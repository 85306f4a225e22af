// Starting programs. Nothing here goes through a shell. Thread: any; but one that starts a program in another
// folder moves the whole process there and back.
#pragma once

#include <sys/types.h>
#include <string>
#include <vector>

namespace corvane {

struct LaunchCommand {
  std::string program;                   ///< absolute path
  std::vector<std::string> arguments;    ///< from the program's own name on
  std::vector<std::string> environment;  ///< "NAME=value"
  int input = -1;                        ///< descriptor that it reads from; nothing to read when negative
  std::string folder;                    ///< absolute, where it starts to work; ours when empty
};

/// This process's environment.
[[nodiscard]] std::vector<std::string> currentEnvironment();

/// Sets NAME in `environment`, in place of an earlier value.
void setVariable(std::vector<std::string>& environment, const std::string& name, const std::string& value);

/// Takes NAME away from `environment`.
void removeVariable(std::vector<std::string>& environment, const std::string& name);

/// The value of NAME, or `otherwise`.
[[nodiscard]] std::string variable(const std::vector<std::string>& environment, const std::string& name,
                                   const std::string& otherwise);

struct Spawned {
  pid_t pid = -1;       ///< to be waited for by the caller; -1 when nothing was started
  std::string problem;  ///< then the cause, naming the program
};

/// Starts `command` in a process group of its own, with default signal handling.
/// Standard output goes to `output`; standard error too, or to the null device when `withErrors` is false.
/// No other descriptor is inherited: all that this process holds are marked so, for good.
[[nodiscard]] Spawned spawn(const LaunchCommand& command, int output, bool withErrors = true);

/// A pipe whose ends no other program inherits.
struct Pipe {
  Pipe();
  ~Pipe();
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  /// False when the system had no more descriptors.
  [[nodiscard]] bool isOpen() const { return readEnd >= 0; }
  void closeWriteEnd();

  int readEnd = -1;
  int writeEnd = -1;
};

}  // namespace corvane

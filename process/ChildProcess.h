// A started program together with everything that it starts itself.
// Owner: whoever started it; destroying it ends the program. Thread: one at a time.
#pragma once

#include <sys/types.h>
#include <optional>

namespace corvane {

class ChildProcess {
 public:
  /// Takes over the program `pid`, which must lead a process group of its own.
  explicit ChildProcess(pid_t pid) : pid_(pid) {}
  ~ChildProcess() { terminate(); }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Asks the whole group to end, and ends by force what is still there two seconds later. When it returns,
  /// nothing of the group runs any more, so that its files can be removed. No effect on an ended program.
  void terminate();

  /// The answer of `wait` when the program has ended; nothing while it runs.
  [[nodiscard]] std::optional<int> ended();

  /// True when the program has ended, whatever it started may still run. Nothing is taken note of:
  /// `terminate` still has its effect.
  [[nodiscard]] bool leaderHasEnded() const;

  /// Waits for the program and answers its exit status, or 128 plus the signal that ended it; -1 when the
  /// system did not keep the status, as it does for a process that ignores SIGCHLD.
  [[nodiscard]] int wait();

  /// The signal that ended the program, when it has been waited for and was ended by one.
  [[nodiscard]] std::optional<int> fatalSignal() const;

 private:
  [[nodiscard]] bool groupIsGone();
  [[nodiscard]] std::optional<int> ask(int options);

  pid_t pid_;
  std::optional<int> status_;  // as waitpid answered it, once it has
  bool over_ = false;
};

}  // namespace corvane

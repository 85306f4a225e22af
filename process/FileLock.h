// A lock that one process at a time can hold, by a file that stays where it is. The kernel gives it back
// when the process ends, however it ends; programs that the process starts do not inherit it.
// Owner: who needs the lock, as long as it needs it. Thread: any.
#pragma once

#include <string>

namespace corvane {

class FileLock {
 public:
  enum class Outcome { acquired, heldByAnother, failed };

  FileLock() = default;
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

  /// Takes the lock at `path`, and makes the file (for the owner only) and its folder when missing; never
  /// waits. Holding it already is no obstacle. `problem` says why it failed.
  [[nodiscard]] Outcome acquire(const std::string& path, std::string& problem);

  /// Gives it back, if it is held.
  void release();

 private:
  int file_ = -1;
};

}  // namespace corvane

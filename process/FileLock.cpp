#include "process/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <cerrno>

#include "process/Files.h"

namespace corvane {

FileLock::~FileLock() { release(); }

void FileLock::release() {
  if (file_ >= 0) ::close(file_);
  file_ = -1;
}

FileLock::Outcome FileLock::acquire(const std::string& path, std::string& problem) {
  if (file_ >= 0) return Outcome::acquired;
  makeFolders(path.substr(0, path.find_last_of('/')));
  // Non-blocking, so that a named pipe of that name is refused and not waited for.
  constexpr int kFlags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  file_ = ::open(path.c_str(), kFlags, 0600);
  if (file_ >= 0 && ::flock(file_, LOCK_EX | LOCK_NB) == 0) return Outcome::acquired;
  const bool held = file_ >= 0 && errno == EWOULDBLOCK;
  if (!held) problem = errnoSentence("lock", path);
  release();
  return held ? Outcome::heldByAnother : Outcome::failed;
}

}  // namespace corvane

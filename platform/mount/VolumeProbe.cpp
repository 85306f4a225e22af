#include "platform/mount/VolumeProbe.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>
#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <iterator>

#include "process/ChildProcess.h"
#include "process/Spawn.h"

namespace corvane {
namespace {

// None of these says that a volume stands there and is out of order.
constexpr int kNothingThere[] = {ENOENT, ENOTDIR, EACCES, EPERM, ELOOP, ENAMETOOLONG};

constexpr int kDescriptors = 1024;

struct Answer {
  int error = 0;
  int device = 0;
};

// Only calls that are allowed between a fork and an exec: other threads may have held any lock.
Answer look(const char* folder, const char* above) {
  struct stat volume {};
  struct stat parent {};
  if (::stat(folder, &volume) != 0 || ::stat(above, &parent) != 0) return {errno};
  if (!S_ISDIR(volume.st_mode)) return {ENOTDIR};
  if (volume.st_dev == parent.st_dev) return {ENOENT};
  std::array<char, 4096> entries;
  const int descriptor = ::open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return {errno};
  if (::syscall(SYS_getdents64, descriptor, entries.data(), entries.size()) < 0) return {errno};
  return {0, static_cast<int>(minor(volume.st_dev))};
}

[[noreturn]] void answerThrough(int pipe, const char* folder, const char* above) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) std::signal(signal, SIG_DFL);
  ::setpgid(0, 0);
  // Should it be caught for good, it must not hold on to this process's lock, pipes or connections.
  for (int descriptor = 0; descriptor < kDescriptors; ++descriptor) {
    if (descriptor != pipe) ::close(descriptor);
  }
  const Answer answer = look(folder, above);
  [[maybe_unused]] const ssize_t written = ::write(pipe, &answer, sizeof answer);
  ::_exit(0);
}

// Signals do not shorten the wait.
bool answersWithin(int pipe, std::chrono::milliseconds limit) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + limit;
  pollfd waiting{pipe, POLLIN, 0};
  for (auto left = limit; left.count() >= 0;
       left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now())) {
    const int ready = ::poll(&waiting, 1, static_cast<int>(left.count()));
    if (ready > 0) return true;
    if (ready == 0 || errno != EINTR) return false;
  }
  return false;
}

VolumeLook read(const Answer& answer) {
  if (answer.error == 0) return {VolumeState::mounted, answer.device, 0};
  const bool nothing =
      std::find(std::begin(kNothingThere), std::end(kNothingThere), answer.error) != std::end(kNothingThere);
  return {nothing ? VolumeState::none : VolumeState::broken, 0, answer.error};
}

}  // namespace

VolumeLook lookAtVolume(const std::string& folder, std::chrono::milliseconds limit) {
  const std::string above = folder.substr(0, folder.find_last_of('/'));
  Pipe pipe;
  if (!pipe.isOpen()) return {VolumeState::none, 0, EMFILE};
  const pid_t pid = ::fork();
  if (pid < 0) return {VolumeState::none, 0, errno};
  if (pid == 0) answerThrough(pipe.writeEnd, folder.c_str(), above.c_str());
  ::setpgid(pid, pid);  // whoever comes first
  ChildProcess observer(pid);
  pipe.closeWriteEnd();
  Answer answer{ETIMEDOUT};
  if (answersWithin(pipe.readEnd, limit) && ::read(pipe.readEnd, &answer, sizeof answer) != sizeof answer) {
    answer = {EIO};
  }
  return read(answer);
}

}  // namespace corvane

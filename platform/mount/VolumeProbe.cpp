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
#include <cstdint>
#include <iterator>
#include <utility>

#include "process/ChildProcess.h"
#include "process/EndRequest.h"
#include "process/Spawn.h"

namespace corvane {
namespace {

using Clock = std::chrono::steady_clock;

// What a file system says that has lost its server or its disk.
constexpr int kLost[] = {ENOTCONN,     EIO,        ESTALE,    EHOSTDOWN,   EHOSTUNREACH, ECONNABORTED,
                         ECONNREFUSED, ECONNRESET, EREMOTEIO, ENETUNREACH, ENETDOWN,     ESHUTDOWN};

// What tells of this machine's want, or of the look itself, and not of the volume.
constexpr int kNoAnswer[] = {ETIMEDOUT, ENOMEM, ENFILE, EMFILE, EINTR, EAGAIN, ENOBUFS};

constexpr int kDescriptors = 1024;
constexpr int kPollMilliseconds = 50;
constexpr std::chrono::seconds kLastLook{2};

// Sent twice: first what is known without asking the volume.
struct Answer {
  int error = 0;
  int device = 0;
  bool isMountRoot = false;
  bool isLast = true;
};

// Only calls that are allowed between a fork and an exec in these: other threads may have held any lock.

// Whether something is mounted there, which no server is asked for; an error for a link.
Answer lookFromOutside(const char* folder) {
  struct statx status {};
  const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;
  if (::statx(AT_FDCWD, folder, flags, STATX_TYPE, &status) != 0) return {errno};
  if (S_ISLNK(status.stx_mode)) return {ELOOP};
  return {ETIMEDOUT, 0, (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0, false};
}

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

void send(const Answer& answer) {
  if (::write(STDIN_FILENO, &answer, sizeof answer) != sizeof answer) ::_exit(1);
}

[[noreturn]] void answerThrough(int pipe, const char* folder, const char* above) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_DFL);
  ::setpgid(0, 0);
  // Should it be caught for good, it must not hold on to this process's lock, pipes or connections.
  ::dup2(pipe, STDIN_FILENO);
  if (::syscall(SYS_close_range, 1U, ~0U, 0U) != 0) {
    for (int descriptor = 1; descriptor < kDescriptors; ++descriptor) ::close(descriptor);
  }
  const Answer outside = lookFromOutside(folder);
  send(outside);
  if (outside.isLast) ::_exit(0);
  Answer answer = look(folder, above);
  answer.isMountRoot = outside.isMountRoot;
  if (answer.isMountRoot && answer.error == ENOENT) answer.error = EBUSY;
  send(answer);
  ::_exit(0);
}

// Signals do not shorten the wait, but a program that has been asked to end waits little.
bool isReadableBefore(Clock::time_point end, int pipe) {
  pollfd waiting{pipe, POLLIN, 0};
  bool isEnding = false;
  for (;;) {
    if (!std::exchange(isEnding, isEndRequested()) && isEnding) end = std::min(end, Clock::now() + kLastLook);
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
    const int ready =
        ::poll(&waiting, 1, static_cast<int>(std::clamp<std::int64_t>(left, 0, kPollMilliseconds)));
    if (ready > 0 || left <= 0 || (ready < 0 && errno != EINTR)) return ready > 0;
  }
}

Answer answerBefore(Clock::time_point end, int pipe) {
  Answer answer{ETIMEDOUT, 0, false, false};
  while (!answer.isLast && isReadableBefore(end, pipe)) {
    if (::read(pipe, &answer, sizeof answer) == sizeof answer) continue;
    answer.error = EAGAIN;  // it ended in the middle of it
    answer.isLast = true;
  }
  return answer;
}

VolumeLook read(const Answer& answer) {
  const auto isOneOf = [&](const auto& errors) {
    return std::find(std::begin(errors), std::end(errors), answer.error) != std::end(errors);
  };
  VolumeState state = VolumeState::none;
  if (answer.error == 0) state = VolumeState::mounted;
  if (isOneOf(kLost)) state = VolumeState::broken;
  if (isOneOf(kNoAnswer)) state = VolumeState::noAnswer;
  return {state, answer.device, answer.error, answer.isMountRoot};
}

}  // namespace

VolumeLook lookAtVolume(const std::string& folder, std::chrono::milliseconds limit) {
  const std::string above = folder.substr(0, folder.find_last_of('/'));
  Pipe pipe;
  if (!pipe.isOpen()) return read({EMFILE});
  const pid_t pid = ::fork();
  if (pid < 0) return read({errno});
  if (pid == 0) answerThrough(pipe.writeEnd, folder.c_str(), above.c_str());
  ::setpgid(pid, pid);  // whoever comes first
  ChildProcess observer(pid);
  pipe.closeWriteEnd();
  return read(answerBefore(Clock::now() + limit, pipe.readEnd));
}

}  // namespace corvane

#include "process/Log.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>
#include <cerrno>
#include <ctime>

#include <array>
#include <cstdint>
#include <cstdio>

#include "process/ControlFilter.h"
#include "process/Files.h"
#include "process/Utf8Decoder.h"

namespace corvane {
namespace {

std::string stamp() {
  timeval now{};
  gettimeofday(&now, nullptr);
  tm local{};
  localtime_r(&now.tv_sec, &local);
  std::array<char, 32> day{};
  std::strftime(day.data(), day.size(), "%Y-%m-%d %H:%M:%S", &local);
  std::array<char, 96> text{};
  std::snprintf(text.data(), text.size(), "%s.%03d BackupEngine[%ld:%lx] ", day.data(),
                static_cast<int>(now.tv_usec / 1000), static_cast<long>(getpid()),
                (unsigned long)pthread_self());  // a number or a pointer, as the system has it
  return text.data();
}

}  // namespace

void log(std::string_view text) {
  std::string line = stamp();
  line += withoutControls(Utf8Decoder().decode(text));
  if (line.back() != '\n') line += '\n';
  writeAll(STDERR_FILENO, line);
}

bool reopenStandardError(const std::string& path) {
  makeFolders(path.substr(0, path.find_last_of('/')));
  // Non-blocking, so that a named pipe without a reader is refused and not waited for.
  const int file = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0600);
  if (file < 0) return false;
  // One that an earlier version left open to others; never a device that the name leads to.
  struct stat status {};
  if (::fstat(file, &status) == 0 && S_ISREG(status.st_mode)) ::fchmod(file, 0600);
  const bool reopened = ::dup2(file, STDERR_FILENO) >= 0;
  if (file != STDERR_FILENO) ::close(file);
  return reopened;
}

}  // namespace corvane

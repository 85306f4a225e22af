#include "tools/ditto/Source.h"

#include <fcntl.h>
#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace corvane::ditto {
namespace {

constexpr std::size_t kPiece = 262144;

ssize_t readPiece(int file, std::vector<char>& buffer) {
  ssize_t count = 0;
  do {
    count = ::read(file, buffer.data(), buffer.size());
  } while (count < 0 && errno == EINTR);
  return count;
}

bool isSame(const struct timespec& a, const struct timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

}  // namespace

Descriptor openSource(const std::string& path, struct stat& status, Report& report) {
  // Looked at before it is opened: opening a device may act on it.
  if (::stat(path.c_str(), &status) != 0) {
    report.failErrno(path);
    return Descriptor();
  }
  if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
    report.fail(path, "is neither a file nor a folder");
    return Descriptor();
  }
  Descriptor source(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (source.isOpen() && ::fstat(source.get(), &status) == 0) return source;
  report.failErrno(path);
  return Descriptor();
}

std::string ownName(const std::string& path) {
  const auto last = path.find_last_not_of('/');
  if (last == std::string::npos) return "";
  const auto slash = path.rfind('/', last);
  const std::size_t first = slash == std::string::npos ? 0 : slash + 1;
  std::string name = path.substr(first, last + 1 - first);
  if (name != "." && name != "..") return name;
  char* resolved = ::realpath(path.c_str(), nullptr);
  std::string real = resolved ? resolved : "";
  std::free(resolved);
  return real.substr(real.rfind('/') + 1);
}

Descriptor openFile(int folder, const char* name, struct stat& status, std::string& cause) {
  // Should a pipe or a device have taken the place of what was listed, opening must neither wait nor act.
  constexpr int kWithoutEffect = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  Descriptor file(::openat(folder, name, kWithoutEffect));
  if (!file.isOpen() || ::fstat(file.get(), &status) != 0) {
    cause = std::strerror(errno);
    return Descriptor();
  }
  if (S_ISREG(status.st_mode)) return file;
  cause = "is no longer a file";
  return Descriptor();
}

Descriptor openAgain(int opened, struct stat& status, std::string& cause) {
  Descriptor file(::fcntl(opened, F_DUPFD_CLOEXEC, 0));
  if (file.isOpen() && ::fstat(file.get(), &status) == 0) return file;
  cause = std::strerror(errno);
  return Descriptor();
}

bool readLink(int folder, const char* name, std::string& target, struct stat& status, std::string& cause) {
  target.resize(PATH_MAX + 1);
  const ssize_t length = ::readlinkat(folder, name, target.data(), target.size());
  if (length < 0 || ::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
    cause = std::strerror(errno);
    return false;
  }
  target.resize(static_cast<std::size_t>(length));
  if (S_ISLNK(status.st_mode)) return true;
  cause = "is no longer a link";
  return false;
}

bool isUnchanged(int file, const struct stat& opened, std::string& cause) {
  struct stat now {};
  if (::fstat(file, &now) != 0) {
    cause = std::strerror(errno);
    return false;
  }
  if (now.st_size == opened.st_size && isSame(now.st_mtim, opened.st_mtim) &&
      isSame(now.st_ctim, opened.st_ctim)) {
    return true;
  }
  cause = kChanged;
  return false;
}

Transfer readWhole(int file, const struct stat& opened, const TakeBytes& take, std::string& cause) {
  // One byte more than expected, to see at once that a small file has grown.
  std::vector<char> buffer(static_cast<std::size_t>(std::min<off_t>(opened.st_size + 1, kPiece)));
  off_t left = opened.st_size;
  while (true) {
    const ssize_t count = readPiece(file, buffer);
    if (count < 0) {
      cause = std::strerror(errno);
      return Transfer::unreadable;
    }
    if (count > left || (count == 0 && left > 0)) {
      cause = kChanged;
      return Transfer::unreadable;
    }
    if (count == 0) return isUnchanged(file, opened, cause) ? Transfer::done : Transfer::unreadable;
    if (!take({buffer.data(), static_cast<std::size_t>(count)})) {
      cause = std::strerror(errno);
      return Transfer::unwritable;
    }
    left -= count;
  }
}

}  // namespace corvane::ditto

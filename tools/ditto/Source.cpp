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

Transfer readWhole(int file, off_t size, const TakeBytes& take, std::string& cause) {
  // One byte more than expected, to see at once that a small file has grown.
  std::vector<char> buffer(static_cast<std::size_t>(std::min<off_t>(size + 1, kPiece)));
  off_t left = size;
  while (true) {
    const ssize_t count = readPiece(file, buffer);
    if (count < 0) {
      cause = std::strerror(errno);
      return Transfer::unreadable;
    }
    if (count > left || (count == 0 && left > 0)) {
      cause = "changed while it was read";
      return Transfer::unreadable;
    }
    if (count == 0) return Transfer::done;
    if (!take({buffer.data(), static_cast<std::size_t>(count)})) {
      cause = std::strerror(errno);
      return Transfer::unwritable;
    }
    left -= count;
  }
}

}  // namespace corvane::ditto
